// Windows on the screen: shown, hidden, blended, kept in front, moved by others; reports; windows of other programs.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>

#include "tests/desktop/stage.h"

// After those: X makes macros of names that they use.
#include <X11/extensions/shape.h>

namespace {

using platform::AW_ACTIVATE;
using platform::AW_BLEND;
using platform::AW_HIDE;
using testing::ElementsAre;

constexpr std::uint32_t keep_place = 0x53;  // no size, no move, no activation, show

class WindowsTest : public testing::Test {
 protected:
  explicit WindowsTest(bool compositor = false) : stage({.compositor = compositor}) { form.BackColor = 0x00FF00; }
  // Whether the middle of the form's place shows the form.
  bool seen() { return stage.pixel(TestForm::left + 100, TestForm::top + 75) == 0x00FF00; }

  Stage stage;
  TestForm form;
  platform::Windows& windows = stage.services().windows;
};

class BlendTest : public WindowsTest {
 protected:
  BlendTest() : WindowsTest(true) {}
};

TEST_F(WindowsTest, ShowAndHideSetVisibleAndAnAnimationDoesNot) {
  ASSERT_TRUE(windows.load(form));
  const platform::Handle handle = form.hWnd;
  EXPECT_NE(handle, 0U);
  EXPECT_FALSE(windows.on_screen(form));
  const auto expect = [&](bool visible, bool on_screen) {
    EXPECT_EQ(form.Visible, visible);
    EXPECT_EQ(windows.on_screen(form), on_screen);
    // A shown window is painted by now; where one was, the window manager clears up in its own time.
    EXPECT_TRUE(on_screen ? seen() : stage.until([&] { return !seen(); }));
    EXPECT_EQ(form.hWnd, handle) << "reports go to one window for the whole run";
  };
  windows.Show(form);
  expect(true, true);
  windows.Hide(form);
  expect(false, false);
  EXPECT_TRUE(windows.AnimateWindow(handle, 60000, AW_ACTIVATE | AW_BLEND)) << "and at once, where nothing blends";
  expect(false, true);
  form.Visible = true;
  EXPECT_TRUE(windows.AnimateWindow(handle, 60000, AW_HIDE | AW_BLEND));
  expect(true, false);
  EXPECT_FALSE(windows.AnimateWindow(0x1234567, 10, AW_HIDE));
}

TEST_F(BlendTest, ABlendTakesItsTimeAndLetsNothingOfTheProgramRun) {
  platform::Timer timer(form, "timer", 10, true);
  int ticks = 0;
  int keys = 0;
  timer.Elapsed = [&] { ++ticks; };
  form.KeyDown = [&](int&, int&) { ++keys; };
  ASSERT_TRUE(windows.load(form));
  stage.send(form.hWnd, form.hWnd, hook_report_atom, {hook_key_down, key_stroke});
  for (const std::uint32_t flags : {AW_ACTIVATE | AW_BLEND, AW_HIDE | AW_BLEND}) {
    const auto start = std::chrono::steady_clock::now();
    EXPECT_TRUE(windows.AnimateWindow(form.hWnd, 300, flags));
    EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(300));
    EXPECT_EQ(windows.on_screen(form), (flags & AW_HIDE) == 0);
    EXPECT_EQ(ticks + keys, 0);
    EXPECT_TRUE(test_support::eventually([&] { return seen() == windows.on_screen(form); }));
  }
  const auto opacity = stage.property(form.hWnd, "_NET_WM_WINDOW_OPACITY");
  EXPECT_TRUE(opacity.empty() || opacity.front() == 0xFFFFFFFF) << "the next show begins as this one ended";
  EXPECT_TRUE(stage.until([&] { return ticks > 0 && keys == 1; })) << "what waited is served afterwards";
}

TEST_F(WindowsTest, AWindowIsManagedFramelessAndKeptInFrontWhenAsked) {
  stage.show(form);
  const auto stays_above = [&] { return stage.has_state(form.hWnd, "_NET_WM_STATE_ABOVE"); };
  EXPECT_THAT(stage.property(DefaultRootWindow(stage.display), "_NET_CLIENT_LIST"), testing::Contains(form.hWnd));
  EXPECT_THAT(stage.property(form.hWnd, "_NET_FRAME_EXTENTS"), testing::Each(0U));
  EXPECT_FALSE(stays_above());
  EXPECT_TRUE(windows.SetWindowPos(form.hWnd, platform::HWND_TOPMOST, 0, 0, 0, 0, keep_place));
  EXPECT_TRUE(stage.until(stays_above));
  windows.Hide(form);
  windows.Show(form);
  EXPECT_TRUE(stage.until(stays_above)) << "the wish outlives the window's absence";
  EXPECT_TRUE(windows.SetWindowPos(form.hWnd, platform::HWND_NOTOPMOST, 0, 0, 0, 0, keep_place));
  EXPECT_TRUE(stage.until([&] { return !stays_above(); }));
  EXPECT_EQ(stage.place(form.hWnd), std::pair(TestForm::left, TestForm::top));
}

TEST_F(WindowsTest, WhatTheDesktopDoesToAWindowIsTold) {
  int asked = 0;
  form.CloseRequest = [&] { ++asked; };
  stage.show(form);
  constexpr long north_west_x_y = 1 | 1 << 8 | 1 << 9;
  stage.tell_manager(form.hWnd, "_NET_MOVERESIZE_WINDOW", {north_west_x_y, 500, 400});
  EXPECT_TRUE(stage.until([&] { return form.Left == 500 * 15.0F && form.Top == 400 * 15.0F; }));
  form.Left = 510 * 15.0F;
  stage.settle(form);
  EXPECT_EQ(form.Left, 510 * 15.0F);
  EXPECT_EQ(form.Top, 400 * 15.0F);

  stage.tell_manager(form.hWnd, "_NET_CLOSE_WINDOW");
  EXPECT_TRUE(stage.until([&] { return asked == 1; }));
  EXPECT_TRUE(windows.on_screen(form)) << "closing is the program's decision";

  constexpr long iconic = 3;
  stage.tell_manager(form.hWnd, "WM_CHANGE_STATE", {iconic});
  EXPECT_TRUE(stage.until([&] { return !windows.on_screen(form); })) << "minimised is not seen";
  windows.Show(form);
  EXPECT_TRUE(stage.until([&] { return windows.on_screen(form); }));
}

TEST_F(WindowsTest, ReportsArriveInOrderWhereverTheWindowIs) {
  std::vector<std::string> heard;
  const auto note = [&](const char* what) {
    return [&heard, what](int& code, int& shift) {
      heard.push_back(what + std::to_string(code) + (shift != 0 ? "!" : ""));
    };
  };
  form.KeyDown = note("down ");
  form.KeyUp = note("up ");
  ASSERT_TRUE(windows.load(form));
  const auto report = [&] {
    heard.clear();
    stage.send(form.hWnd, form.hWnd, hook_report_atom, {hook_key_down, key_control});
    stage.send(form.hWnd, form.hWnd, hook_report_atom, {7, key_stroke});  // no such kind
    stage.send(form.hWnd, form.hWnd, hook_report_atom, {hook_key_down, key_stroke});
    stage.send(form.hWnd, form.hWnd, hook_report_atom, {hook_key_up, key_control});
    stage.settle(form);
    return heard;
  };
  EXPECT_THAT(report(), ElementsAre("down 17", "down 67", "up 17")) << "never shown";
  windows.Show(form);
  EXPECT_THAT(report(), ElementsAre("down 17", "down 67", "up 17")) << "shown";
  windows.AnimateWindow(form.hWnd, 100, AW_HIDE | AW_BLEND);
  EXPECT_THAT(report(), ElementsAre("down 17", "down 67", "up 17")) << "hidden";
}

// A window of another program, with one inside.
struct Other {
  Other(Stage& stage, int x, int y, bool managed) {
    XSetWindowAttributes attributes{};
    attributes.override_redirect = managed ? False : True;
    const Window window = XCreateWindow(stage.display, DefaultRootWindow(stage.display), x, y, 200, 100, 0,
                                        CopyFromParent, InputOutput, nullptr, CWOverrideRedirect, &attributes);
    const Window child = XCreateSimpleWindow(stage.display, window, 50, 20, 100, 50, 0, 0, 0xFFFFFF);
    XMapWindow(stage.display, child);
    XMapWindow(stage.display, window);
    test_support::eventually([&] {
      XWindowAttributes now;
      return XGetWindowAttributes(stage.display, window, &now) != 0 && now.map_state == IsViewable;
    });
    outer = static_cast<platform::Handle>(window);
    inner = static_cast<platform::Handle>(child);
  }
  platform::Handle outer = 0, inner = 0;
};

TEST_F(WindowsTest, WindowsOfOthersAreFoundThroughFramesAndWhatLetsThePointerThrough) {
  const Other framed(stage, 300, 300, true);
  const Other bare(stage, 900, 300, false);
  const auto at = [&](const Other& other, int x, int y) {
    const auto [screen_x, screen_y] = stage.place(other.outer, x, y);
    return windows.WindowFromPoint({screen_x, screen_y});
  };
  EXPECT_EQ(at(framed, 60, 30), framed.inner);
  EXPECT_EQ(at(framed, 10, 10), framed.outer);
  EXPECT_EQ(at(framed, 100, -8), framed.outer) << "its title bar belongs to a window";
  EXPECT_EQ(at(bare, 60, 30), bare.inner);
  EXPECT_EQ(windows.WindowFromPoint({1900, 20}), 0U) << "nothing but the root";
  EXPECT_EQ(windows.GetParent(framed.inner), framed.outer);
  EXPECT_EQ(windows.GetParent(framed.outer), 0U) << "a frame is no parent";
  EXPECT_EQ(windows.GetParent(bare.inner), bare.outer);
  EXPECT_EQ(windows.GetParent(bare.outer), 0U);

  // A trail that is drawn over everything takes no input.
  const auto [x, y] = stage.place(framed.outer);
  const Other trail(stage, x, y, false);
  XShapeCombineRectangles(stage.display, trail.outer, ShapeInput, 0, 0, nullptr, 0, ShapeSet, Unsorted);
  EXPECT_EQ(at(framed, 60, 30), framed.inner);

  XDestroyWindow(stage.display, framed.outer);
  XSync(stage.display, False);
  EXPECT_EQ(windows.GetParent(framed.inner), 0U) << "gone meanwhile";
  stage.user->move_to(77, 88);
  EXPECT_EQ(windows.GetCursorPos().x, 77);
  EXPECT_EQ(windows.GetCursorPos().y, 88);
}

TEST_F(WindowsTest, OurOwnWindowIsFoundAndComesToTheForeground) {
  platform::PictureBox box(form, "box", twips(10, 10, 50, 50));
  stage.show(form);
  EXPECT_EQ(windows.WindowFromPoint({TestForm::left + 20, TestForm::top + 20}), form.hWnd);
  EXPECT_EQ(windows.GetParent(form.hWnd), 0U);
  const Other other(stage, 600, 300, true);
  const auto [x, y] = stage.place(other.outer, 10, 10);
  stage.user->move_to(x, y);
  stage.user->click(1);
  EXPECT_TRUE(stage.until([&] { return stage.active() == std::vector<unsigned long>{other.outer}; }));
  EXPECT_TRUE(windows.SetForegroundWindow(form.hWnd));
  EXPECT_TRUE(stage.until([&] { return stage.active() == std::vector<unsigned long>{form.hWnd}; }));
}

// The editor is moved by handing the press on its title to the window manager.
TEST_F(WindowsTest, AWindowCanBeHandedToTheWindowManagerToMove) {
  int hovers = 0;
  form.MouseDown = [&](const platform::MouseEvent&) {
    windows.PostMessageA(form.hWnd, 161, 2, 0);
    windows.ReleaseCapture();
  };
  form.MouseMove = [&](const platform::MouseEvent& event) { hovers += event.Button == 0 ? 1 : 0; };
  stage.show(form);
  stage.user->move_to(TestForm::left + 50, TestForm::top + 10);
  stage.user->press(1);
  // The window manager takes over some time after the press: until then the pointer moves on without the window.
  int step = 0;
  EXPECT_TRUE(stage.until([&] {
    stage.user->move_to(TestForm::left + 50 + ++step % 50, TestForm::top + 10);
    return stage.place(form.hWnd).first > TestForm::left;
  }));
  stage.user->move_to(TestForm::left + 250, TestForm::top + 110);
  EXPECT_TRUE(stage.until([&] { return stage.place(form.hWnd).second == TestForm::top + 100; }));
  stage.user->release(1);
  EXPECT_TRUE(stage.until([&] { return form.Top == (TestForm::top + 100) * 15.0F; })) << form.Top;
  EXPECT_EQ(form.Left, static_cast<float>(15 * stage.place(form.hWnd).first));
  hovers = 0;
  stage.user->move_to(TestForm::left + 255, TestForm::top + 115);
  EXPECT_TRUE(stage.until([&] { return hovers > 0; })) << "no button is held any more";
}

}  // namespace
