// Windows on the screen: shown, hidden, blended, kept in front, moved by others; reports; windows of other programs.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>

#include "tests/desktop/stage.h"

// After those: X makes macros of names that they use.
#include <X11/Xutil.h>
#include <X11/extensions/shape.h>

namespace {

using platform::AW_ACTIVATE;
using platform::AW_BLEND;
using platform::AW_HIDE;
using platform::HWND_NOTOPMOST;
using platform::HWND_TOPMOST;
using testing::ElementsAre;
using Milliseconds = std::chrono::duration<double, std::milli>;

constexpr std::uint32_t keep_place = 0x53;  // no size, no move, no activation, show

TestForm& painted(TestForm& form) {
  form.BackColor = 0x00FF00;
  return form;
}

// Whether the middle of the form's place shows the form.
bool seen(Stage& stage) {
  return stage.pixel(TestForm::left + 100, TestForm::top + 75) == 0x00FF00;
}

TEST(WindowsTest, ShowAndHideSetVisibleAndAnAnimationDoesNot) {
  Stage stage;
  TestForm form;
  painted(form);
  platform::Windows& windows = stage.services().windows;
  ASSERT_TRUE(windows.load(form));
  EXPECT_NE(form.hWnd, 0U);
  EXPECT_FALSE(form.Visible);
  EXPECT_FALSE(windows.on_screen(form));
  const platform::Handle handle = form.hWnd;

  windows.Show(form);
  EXPECT_TRUE(form.Visible);
  EXPECT_TRUE(windows.on_screen(form));
  EXPECT_TRUE(seen(stage)) << "painted when Show returns";
  windows.Hide(form);
  EXPECT_FALSE(form.Visible);
  EXPECT_FALSE(windows.on_screen(form));
  EXPECT_TRUE(stage.until([&] { return !seen(stage); }));

  EXPECT_TRUE(windows.AnimateWindow(form.hWnd, 60000, AW_ACTIVATE | AW_BLEND)) << "and at once, where nothing blends";
  EXPECT_FALSE(form.Visible);
  EXPECT_TRUE(windows.on_screen(form));
  EXPECT_TRUE(seen(stage));
  form.Visible = true;
  EXPECT_TRUE(windows.AnimateWindow(form.hWnd, 60000, AW_HIDE | AW_BLEND));
  EXPECT_TRUE(form.Visible);
  EXPECT_FALSE(windows.on_screen(form));
  EXPECT_TRUE(stage.until([&] { return !seen(stage); }));
  EXPECT_EQ(form.hWnd, handle) << "reports go to one window for the whole run";
  EXPECT_FALSE(windows.AnimateWindow(0x1234567, 10, AW_HIDE));
}

TEST(WindowsTest, ABlendTakesItsTimeAndLetsNothingOfTheProgramRun) {
  Stage stage({.compositor = true});
  TestForm form;
  painted(form);
  platform::Timer timer(form, "timer", 10, true);
  int ticks = 0;
  int keys = 0;
  timer.Elapsed = [&] { ++ticks; };
  form.KeyDown = [&](int&, int&) { ++keys; };
  platform::Windows& windows = stage.services().windows;
  ASSERT_TRUE(windows.load(form));
  stage.send(form.hWnd, form.hWnd, hook_report_atom, {hook_key_down, key_stroke});

  for (const std::uint32_t flags : {AW_ACTIVATE | AW_BLEND, AW_HIDE | AW_BLEND}) {
    const auto start = std::chrono::steady_clock::now();
    EXPECT_TRUE(windows.AnimateWindow(form.hWnd, 300, flags));
    const auto taken = Milliseconds(std::chrono::steady_clock::now() - start).count();
    EXPECT_GE(taken, 300);
    EXPECT_EQ(windows.on_screen(form), flags == (AW_ACTIVATE | AW_BLEND));
    EXPECT_EQ(ticks, 0);
    EXPECT_EQ(keys, 0);
    EXPECT_TRUE(test_support::eventually([&] { return seen(stage) == windows.on_screen(form); }));
  }
  const auto opacity = stage.property(form.hWnd, "_NET_WM_WINDOW_OPACITY");
  EXPECT_TRUE(opacity.empty() || opacity.front() == 0xFFFFFFFF) << "the next show begins at once as it should end";
  EXPECT_TRUE(stage.until([&] { return ticks > 0 && keys == 1; })) << "what waited is served afterwards";
}

TEST(WindowsTest, AWindowIsManagedFramelessAndKeptInFrontWhenAsked) {
  Stage stage;
  TestForm form;
  form.Caption = "Strokemind é";
  stage.show(form);
  platform::Windows& windows = stage.services().windows;
  const auto stays_above = [&] { return stage.has_state(form.hWnd, "_NET_WM_STATE_ABOVE"); };
  EXPECT_THAT(stage.property(form.hWnd, "_NET_WM_WINDOW_TYPE"),
              testing::Contains(stage.atom("_NET_WM_WINDOW_TYPE_NORMAL")));
  EXPECT_THAT(stage.property(DefaultRootWindow(stage.display), "_NET_CLIENT_LIST"), testing::Contains(form.hWnd));
  EXPECT_THAT(stage.property(form.hWnd, "_NET_FRAME_EXTENTS"), testing::Each(0U));
  EXPECT_FALSE(stays_above());

  EXPECT_TRUE(windows.SetWindowPos(form.hWnd, HWND_TOPMOST, 0, 0, 0, 0, keep_place));
  EXPECT_TRUE(stage.until(stays_above));
  windows.Hide(form);
  windows.Show(form);
  EXPECT_TRUE(stage.until(stays_above)) << "the wish outlives the window's absence";
  EXPECT_TRUE(windows.SetWindowPos(form.hWnd, HWND_NOTOPMOST, 0, 0, 0, 0, keep_place));
  EXPECT_TRUE(stage.until([&] { return !stays_above(); }));
  EXPECT_EQ(form.Left, TestForm::left * 15.0F);

  EXPECT_TRUE(windows.SetWindowPos(form.hWnd, 0, 300, 200, 120, 80, 0x10));
  EXPECT_EQ(form.Left, 300 * 15.0F);
  EXPECT_EQ(form.Height, 80 * 15.0F);
  EXPECT_TRUE(stage.until([&] {
    XWindowAttributes attributes;
    XGetWindowAttributes(stage.display, form.hWnd, &attributes);
    return attributes.width == 120 && attributes.height == 80;
  }));
}

TEST(WindowsTest, WhatTheDesktopDoesToAWindowIsTold) {
  Stage stage;
  TestForm form;
  int asked = 0;
  form.CloseRequest = [&] { ++asked; };
  stage.show(form);
  const Window root = DefaultRootWindow(stage.display);

  constexpr long north_west_x_y = 1 | 1 << 8 | 1 << 9;
  stage.send(root, form.hWnd, "_NET_MOVERESIZE_WINDOW", {north_west_x_y, 500, 400});
  EXPECT_TRUE(stage.until([&] { return form.Left == 500 * 15.0F && form.Top == 400 * 15.0F; }))
      << form.Left << " " << form.Top;
  form.Left = 510 * 15.0F;
  stage.settle(form);
  EXPECT_EQ(form.Left, 510 * 15.0F);
  EXPECT_EQ(form.Top, 400 * 15.0F);

  stage.send(root, form.hWnd, "_NET_CLOSE_WINDOW", {});
  EXPECT_TRUE(stage.until([&] { return asked == 1; }));
  EXPECT_TRUE(stage.services().windows.on_screen(form)) << "closing is the program's decision";

  constexpr long iconic = 3;
  stage.send(root, form.hWnd, "WM_CHANGE_STATE", {iconic});
  EXPECT_TRUE(stage.until([&] { return !stage.services().windows.on_screen(form); })) << "minimised is not seen";
  stage.services().windows.Show(form);
  EXPECT_TRUE(stage.until([&] { return stage.services().windows.on_screen(form); }));
}

TEST(WindowsTest, ReportsArriveInOrderWhereverTheWindowIs) {
  Stage stage;
  TestForm form;
  std::vector<std::string> heard;
  const auto note = [&](const char* what) {
    return [&heard, what](int& code, int& shift) {
      heard.push_back(what + std::to_string(code) + (shift != 0 ? "!" : ""));
    };
  };
  form.KeyDown = note("down ");
  form.KeyUp = note("up ");
  platform::Windows& windows = stage.services().windows;
  ASSERT_TRUE(windows.load(form));
  const auto report = [&] {
    heard.clear();
    stage.send(form.hWnd, form.hWnd, hook_report_atom, {hook_key_down, key_control});
    stage.send(form.hWnd, form.hWnd, hook_report_atom, {7, key_stroke});  // no such kind
    stage.send(form.hWnd, form.hWnd, "_SOMETHING_ELSE", {hook_key_down, key_stroke});
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
class Other {
 public:
  Other(Display* display, int x, int y, bool managed = true) : display_(display) {
    XSetWindowAttributes attributes{};
    attributes.override_redirect = managed ? False : True;
    const Window window = XCreateWindow(display, DefaultRootWindow(display), x, y, 200, 100, 0, CopyFromParent,
                                        InputOutput, nullptr, CWOverrideRedirect, &attributes);
    const Window child = XCreateSimpleWindow(display, window, 50, 20, 100, 50, 0, 0, 0xFFFFFF);
    XMapWindow(display, child);
    XMapWindow(display, window);
    test_support::eventually([&] {
      XWindowAttributes now;
      return XGetWindowAttributes(display, window, &now) != 0 && now.map_state == IsViewable && now.width == 200;
    });
    outer = static_cast<platform::Handle>(window);
    inner = static_cast<platform::Handle>(child);
  }
  // The place of a point of the outer window on the screen.
  platform::Point point(int x, int y) const {
    Window child = None;
    platform::Point result{};
    XTranslateCoordinates(display_, outer, DefaultRootWindow(display_), x, y, &result.x, &result.y, &child);
    return result;
  }
  platform::Handle outer, inner;

 private:
  Display* display_;
};

TEST(WindowsTest, WindowsOfOthersAreFoundThroughFramesAndWhatLetsThePointerThrough) {
  Stage stage;
  platform::Windows& windows = stage.services().windows;
  const Other framed(stage.display, 300, 300);
  const Other bare(stage.display, 900, 300, false);
  EXPECT_EQ(windows.WindowFromPoint(framed.point(60, 30)), framed.inner);
  EXPECT_EQ(windows.WindowFromPoint(framed.point(10, 10)), framed.outer);
  const platform::Point title = framed.point(100, -8);
  EXPECT_EQ(windows.WindowFromPoint(title), framed.outer) << "its title bar belongs to a window";
  EXPECT_EQ(windows.WindowFromPoint(bare.point(60, 30)), bare.inner);
  EXPECT_EQ(windows.WindowFromPoint({1900, 20}), 0U) << "nothing but the root";

  EXPECT_EQ(windows.GetParent(framed.inner), framed.outer);
  EXPECT_EQ(windows.GetParent(framed.outer), 0U) << "a frame is no parent";
  Window root = None;
  Window frame = None;
  Window* children = nullptr;
  unsigned count = 0;
  XQueryTree(stage.display, framed.outer, &root, &frame, &children, &count);
  if (children != nullptr) XFree(children);
  ASSERT_NE(frame, root) << "the window manager makes frames";
  EXPECT_EQ(windows.GetParent(static_cast<platform::Handle>(frame)), 0U);
  EXPECT_EQ(windows.GetParent(bare.inner), bare.outer);
  EXPECT_EQ(windows.GetParent(bare.outer), 0U);

  // A trail that is drawn over everything takes no input.
  const Other trail(stage.display, 300, 300, false);
  XRaiseWindow(stage.display, trail.outer);
  XShapeCombineRectangles(stage.display, trail.outer, ShapeInput, 0, 0, nullptr, 0, ShapeSet, Unsorted);
  XSync(stage.display, False);
  EXPECT_EQ(windows.WindowFromPoint(framed.point(60, 30)), framed.inner);

  XDestroyWindow(stage.display, framed.outer);
  XSync(stage.display, False);
  EXPECT_EQ(windows.GetParent(framed.inner), 0U) << "gone meanwhile";
  windows.SetForegroundWindow(framed.outer);
  stage.user->move_to(77, 88);
  EXPECT_EQ(windows.GetCursorPos().x, 77);
  EXPECT_EQ(windows.GetCursorPos().y, 88);
}

TEST(WindowsTest, OurOwnWindowIsFoundAndComesToTheForeground) {
  Stage stage;
  TestForm form;
  platform::PictureBox box(form, "box", twips(10, 10, 50, 50));
  stage.show(form);
  platform::Windows& windows = stage.services().windows;
  EXPECT_EQ(windows.WindowFromPoint({TestForm::left + 20, TestForm::top + 20}), form.hWnd)
      << "boxes are no windows of X";
  EXPECT_EQ(windows.GetParent(form.hWnd), 0U);
  const auto active = [&] { return stage.property(DefaultRootWindow(stage.display), "_NET_ACTIVE_WINDOW"); };
  EXPECT_TRUE(stage.until([&] { return active() == std::vector<unsigned long>{form.hWnd}; }));
  const Other other(stage.display, 600, 300);
  stage.user->move_to(other.point(10, 10).x, other.point(10, 10).y);
  stage.user->click(1);
  EXPECT_TRUE(stage.until([&] { return active() == std::vector<unsigned long>{other.outer}; }));
  EXPECT_TRUE(windows.SetForegroundWindow(form.hWnd));
  EXPECT_TRUE(stage.until([&] { return active() == std::vector<unsigned long>{form.hWnd}; }));
}

// The editor is moved by handing the press on its title to the window manager.
TEST(WindowsTest, AWindowCanBeHandedToTheWindowManagerToMove) {
  Stage stage;
  TestForm form;
  platform::Windows& windows = stage.services().windows;
  int moves = 0;
  form.MouseDown = [&](const platform::MouseEvent&) {
    windows.PostMessageA(form.hWnd, 161, 2, 0);
    windows.ReleaseCapture();
  };
  form.MouseMove = [&](const platform::MouseEvent& event) { moves += event.Button == 0 ? 1 : 0; };
  stage.show(form);
  stage.user->move_to(TestForm::left + 50, TestForm::top + 10);
  stage.user->press(1);
  const auto really_at = [&] {
    int x = 0;
    int y = 0;
    Window child = None;
    XTranslateCoordinates(stage.display, form.hWnd, DefaultRootWindow(stage.display), 0, 0, &x, &y, &child);
    return std::pair(x - TestForm::left, y - TestForm::top);
  };
  // The window manager takes over some time after the press: until then the pointer moves on without the window.
  int step = 0;
  EXPECT_TRUE(stage.until([&] {
    stage.user->move_to(TestForm::left + 50 + ++step % 50, TestForm::top + 10);
    return really_at().first > 0;
  }));
  stage.user->move_to(TestForm::left + 250, TestForm::top + 110);
  EXPECT_TRUE(stage.until([&] { return really_at().second == 100; }));
  stage.user->release(1);
  EXPECT_TRUE(stage.until([&] { return form.Top == (TestForm::top + 100) * 15.0F; })) << form.Top;
  EXPECT_EQ(form.Left, static_cast<float>(15 * (TestForm::left + really_at().first)));
  moves = 0;
  stage.user->move_to(TestForm::left + 255, TestForm::top + 115);
  EXPECT_TRUE(stage.until([&] { return moves > 0; })) << "no button is held any more";
}

}  // namespace
