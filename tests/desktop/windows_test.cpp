// Windows on the screen: shown, hidden, blended, kept in front, moved by others; windows of other programs.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>

#include "tests/desktop/stage.h"

// After those: X makes macros of names that they use.
#include <X11/extensions/shape.h>

namespace {

using namespace platform;
using Handles = std::vector<unsigned long>;

class WindowsTest : public FormTest {
 protected:
  explicit WindowsTest(bool blending = false) : FormTest({.compositor = blending}) { form.BackColor = 0x00FF00; }
  bool seen() { return at(100, 75) == 0x00FF00; }
};
struct BlendTest : WindowsTest {
  BlendTest() : WindowsTest(true) {}
};

TEST_F(BlendTest, ABlendTakesItsTimeAndLetsNothingOfTheProgramRun) {
  when([] { return true; }, [&] { heard.emplace_back("tick"); });
  form.KeyDown = [&](int& code, int&) { heard.push_back("down " + std::to_string(code)); };
  form.KeyUp = [&](int& code, int&) { heard.push_back("up " + std::to_string(code)); };
  ASSERT_TRUE(windows.load(form));
  for (const int kind : {hook_key_down, 7, hook_key_up}) {  // one of them unknown
    send(form.hWnd, form.hWnd, hook_report_atom, {kind, key_control});
  }
  for (const std::uint32_t flags : {AW_ACTIVATE | AW_BLEND, AW_HIDE | AW_BLEND}) {
    const auto start = std::chrono::steady_clock::now();
    EXPECT_TRUE(windows.AnimateWindow(form.hWnd, 300, flags));
    EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(300));
    EXPECT_TRUE(heard.empty() && windows.on_screen(form) == ((flags & AW_HIDE) == 0));
    EXPECT_TRUE(stage::eventually([&] { return seen() == windows.on_screen(form); }));
  }
  EXPECT_THAT(property(form.hWnd, "_NET_WM_WINDOW_OPACITY"), testing::Each(0xFFFFFFFF)) << "for the next show";
  EXPECT_TRUE(until([&] { return heard.size() == 3; })) << "what waited is served afterwards, hidden or not";
  EXPECT_THAT(heard, testing::IsSupersetOf({"down 17", "up 17"}));
}

TEST_F(WindowsTest, ItComesAndGoesAndStaysInFrontAsTheProgramAndTheDesktopWantIt) {
  int asked = 0;
  form.CloseRequest = [&] { ++asked; };
  ASSERT_TRUE(windows.load(form) && !windows.on_screen(form));
  const Handle handle = form.hWnd;
  const auto expect = [&](bool visible, bool on_screen) {
    EXPECT_TRUE(form.Visible == visible && windows.on_screen(form) == on_screen) << visible << on_screen;
    // A shown window is painted by now; where one was, the window manager clears up in its own time.
    EXPECT_TRUE(on_screen ? seen() : until([&] { return !seen(); }));
    EXPECT_EQ(form.hWnd, handle) << "reports go to one window for the whole run";
  };
  show(form);
  expect(true, true);
  EXPECT_THAT(root_property("_NET_CLIENT_LIST"), testing::Contains(handle));
  EXPECT_THAT(property(handle, "_NET_FRAME_EXTENTS"), testing::Each(0U));
  const auto above = [&] { return has_state(handle, "_NET_WM_STATE_ABOVE"); };
  const auto put = [&](Handle where) { return windows.SetWindowPos(handle, where, 0, 0, 0, 0, 0x53); };
  EXPECT_TRUE(!above() && put(HWND_TOPMOST) && until(above));
  windows.Hide(form);
  expect(false, false);
  EXPECT_TRUE(windows.AnimateWindow(handle, 60000, AW_ACTIVATE | AW_BLEND)) << "and at once, where nothing blends";
  expect(false, true);
  EXPECT_TRUE(until(above)) << "the wish outlives the window's absence";
  EXPECT_TRUE(put(HWND_NOTOPMOST) && until([&] { return !above(); }));
  EXPECT_EQ(place(handle), std::pair(TestForm::left, TestForm::top));

  tell_manager(handle, "_NET_CLOSE_WINDOW");
  EXPECT_TRUE(until([&] { return asked == 1; }));
  EXPECT_TRUE(windows.on_screen(form)) << "closing is the program's decision";
  tell_manager(handle, "WM_CHANGE_STATE", {IconicState});
  EXPECT_TRUE(until([&] { return !windows.on_screen(form); })) << "minimised is not seen";
  windows.Show(form);
  EXPECT_TRUE(until([&] { return windows.on_screen(form); }));
  EXPECT_TRUE(windows.AnimateWindow(handle, 60000, AW_HIDE | AW_BLEND));
  expect(true, false);
  EXPECT_FALSE(windows.AnimateWindow(0x1234567, 10, AW_HIDE));
}

TEST_F(WindowsTest, WindowsAreFoundThroughFramesAndWhatLetsThePointerThroughAndComeToTheForeground) {
  // A window of another program, with one inside.
  const auto make = [&](int x, int y, bool managed) {
    XSetWindowAttributes attributes{};
    attributes.override_redirect = managed ? False : True;
    const Window outer = XCreateWindow(display, DefaultRootWindow(display), x, y, 200, 100, 0, CopyFromParent,
                                       InputOutput, nullptr, CWOverrideRedirect, &attributes);
    const Window inner = XCreateSimpleWindow(display, outer, 50, 20, 100, 50, 0, 0, 0xFFFFFF);
    XMapSubwindows(display, outer);
    XMapWindow(display, outer);
    XWindowAttributes now{};
    stage::eventually([&] { return XGetWindowAttributes(display, outer, &now) != 0 && now.map_state == IsViewable; });
    return std::pair(static_cast<Handle>(outer), static_cast<Handle>(inner));
  };
  const auto [framed, framed_child] = make(300, 300, true);
  const auto [bare, bare_child] = make(900, 300, false);
  const auto found = [&](Handle window, int x, int y) {
    const auto [screen_x, screen_y] = place(window, x, y);
    return windows.WindowFromPoint({screen_x, screen_y});
  };
  EXPECT_TRUE(found(framed, 60, 30) == framed_child && found(bare, 60, 30) == bare_child);
  EXPECT_EQ(found(framed, 10, 10), framed);
  EXPECT_EQ(found(framed, 100, -8), framed) << "its title bar belongs to a window";
  EXPECT_EQ(windows.WindowFromPoint({1900, 20}), 0U) << "nothing but the root";
  EXPECT_EQ(windows.GetParent(framed_child), framed);
  EXPECT_TRUE(windows.GetParent(framed) == 0 && windows.GetParent(bare) == 0) << "a frame is no parent";

  // A trail that is drawn over everything takes no input.
  const auto [x, y] = place(framed);
  const Window trail = make(x, y, false).first;
  XShapeCombineRectangles(display, trail, ShapeInput, 0, 0, nullptr, 0, ShapeSet, Unsorted);
  EXPECT_EQ(found(framed, 60, 30), framed_child);

  const PictureBox box(form, "box", twips(10, 10, 50, 50));
  show(form);
  EXPECT_EQ(found(form.hWnd, 20, 20), form.hWnd) << "a box of ours is no window";
  EXPECT_EQ(windows.GetParent(form.hWnd), 0U);
  user->move_to(x + 10, y + 10);
  EXPECT_TRUE(windows.GetCursorPos().x == x + 10 && windows.GetCursorPos().y == y + 10);
  user->click(1);
  EXPECT_TRUE(until([&, window = framed] { return active() == window; }));
  EXPECT_TRUE(windows.SetForegroundWindow(form.hWnd));
  EXPECT_TRUE(until([&] { return active() == form.hWnd; }));
  XDestroyWindow(display, framed);
  XSync(display, False);
  EXPECT_EQ(windows.GetParent(framed_child), 0U) << "gone meanwhile";
}

// The editor is moved by handing the press on its title to the window manager.
TEST_F(WindowsTest, AWindowCanBeHandedToTheWindowManagerToMove) {
  int hovers = 0;
  form.MouseDown = [&](const MouseEvent&) {
    windows.PostMessageA(form.hWnd, 161, 2, 0);
    windows.ReleaseCapture();
  };
  form.MouseMove = [&](const MouseEvent& event) { hovers += event.Button == 0 ? 1 : 0; };
  show(form);
  move(50, 10);
  user->press(1);
  // The window manager takes over some time after the press: until then the pointer moves on without the window.
  int step = 0;
  EXPECT_TRUE(until([&] { return move(50 + ++step % 50, 10), place(form.hWnd).first > TestForm::left; }));
  move(250, 110);
  EXPECT_TRUE(until([&] { return place(form.hWnd).second == TestForm::top + 100; }));
  user->release(1);
  EXPECT_TRUE(until([&] { return form.Top == (TestForm::top + 100) * 15.0F; })) << form.Top;
  EXPECT_EQ(form.Left, static_cast<float>(15 * place(form.hWnd).first));
  hovers = 0;
  move(255, 115);
  EXPECT_TRUE(until([&] { return hovers > 0; })) << "no button is held any more";
}

}  // namespace
