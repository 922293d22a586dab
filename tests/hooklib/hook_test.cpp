// The library in a program, on a real server with an application's window, a mouse and a keyboard.
#include <X11/Xatom.h>
#include <X11/keysym.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <iterator>
#include <memory>
#include <string>

#include "tests/hooklib/fixture.h"

namespace hook_test {
namespace {

TEST_F(Hooked, StrokeIsReportedOnceAndFetchedAlike) {
  EXPECT_TRUE(host->fetch().empty()) << "before any stroke the array and its count stay as they are";
  user->draw(3, corner);
  ASSERT_TRUE(reported({stroke_report}));
  const Path first = host->fetch();
  ASSERT_EQ(first.size(), 32U);
  EXPECT_EQ(first.front(), corner.front());
  EXPECT_EQ(first.back(), corner.back());
  for (const auto& [x, y] : first) EXPECT_TRUE(x == 400 || y == 450) << x << ',' << y << " is not on the way";
}

TEST_F(Hooked, ClicksReachTheApplicationAsTheyWereMade) {
  user->move_to(300, 400);
  user->press(3);
  // A hand trembles; the release is where it was made.
  user->move_to(305, 401);
  user->release(3);
  gets({"press 3 at 300,400", "release 3 at 305,401"});
  target->forget();
  // And so it goes on. (A press within the millisecond in which the server withholds the one before it is merged with
  // it by the server itself; no hand is that fast.)
  user->move_to(500, 300);
  Lines expected;
  for (int i = 0; i < 100; ++i) {
    user->click(3);
    expected.insert(expected.end(), {"press 3 at 500,300", "release 3 at 500,300"});
    ASSERT_TRUE(eventually([&] { return target->events() == expected; }));
  }
  reports_just({});
}

TEST_F(Hooked, LeftHandedMouseDrawsWithItsOtherButton) {
  std::array<unsigned char, 32> mapping{};
  const int buttons = XGetPointerMapping(display, mapping.data(), static_cast<int>(mapping.size()));
  std::swap(mapping[0], mapping[2]);
  ASSERT_EQ(XSetPointerMapping(display, mapping.data(), buttons), MappingSuccess);
  user->draw(1, corner);
  ASSERT_TRUE(reported({stroke_report}));
  click_is_passed_on(1);
}

TEST_F(Hooked, ControlAtThePressLeavesItToTheApplication) {
  user->key_down(XK_Control_L);
  drag_is_passed_on();
  user->key_up(XK_Control_L);
  EXPECT_TRUE(reported({control_down, control_up}));
  host->forget();
  // What programs type counts as well, but is not reported.
  user->inject_key(XK_Control_L, true);
  drag_is_passed_on();
  user->inject_key(XK_Control_L, false);
  reports_just({});
  // Two are one.
  user->key_down(XK_Control_L);
  user->key_down(XK_Control_R);
  user->key_up(XK_Control_L);
  user->type(XK_Shift_L);
  EXPECT_TRUE(reported({control_down}));
  user->key_up(XK_Control_R);
  EXPECT_TRUE(reported({control_down, control_up}));
}

TEST_F(Hooked, ControlInMidStrokeHandsTheDragOver) {
  begin_drawing({{400, 300}, {450, 300}, {500, 300}});
  user->key_down(XK_Control_R);
  // With the button still held, all that was done so far.
  EXPECT_TRUE(eventually([&] { return target->events() == Lines({"press 3 at 400,300"}); }));
  user->move_to(550, 310);
  user->release(3);
  gets({"press 3 at 400,300", "release 3 at 550,310"});
  const Lines all = target->events(true);
  EXPECT_GT(std::count(all.begin(), all.end(), "motion at 500,300"), 0) << "motion before Ctrl is part of the drag";
  EXPECT_GT(std::count(all.begin(), all.end(), "motion at 550,310"), 0);
  user->key_up(XK_Control_R);
  EXPECT_TRUE(reported({control_down, control_up}));
  EXPECT_TRUE(host->fetch().empty());
}

TEST_F(Hooked, EscapeAndTheLeftButtonDropTheDrawingAndLeaveTheLastStroke) {
  user->draw(3, {{300, 200}, {300, 400}, {700, 500}});
  reports_just({stroke_report});
  const Path last = host->fetch();
  for (const bool escape : {true, false}) {
    SCOPED_TRACE(escape);
    begin_drawing();
    escape ? user->type(XK_Escape) : user->click(1);
    user->move_to(500, 500);
    user->release(3);
    gets({});
    reports_just({});
    EXPECT_EQ(host->fetch(), last);
    // No button is lost.
    click_is_passed_on();
  }
}

TEST_F(Hooked, PressBesideTheButtonThatDroppedADrawingIsTheApplications) {
  begin_drawing();
  target->forget();
  user->press(1);
  user->release(3);
  // With the left button held: the drawing is dropped, and the pointer is nobody's.
  EXPECT_TRUE(eventually([&] {
    user->move_to(300, 300);
    user->move_to(400, 300);
    return !target->events(true).empty();
  }));
  target->forget();
  user->press(3);
  user->move_to(500, 300);
  user->release(3);
  user->release(1);
  gets({"press 3 at 400,300", "release 3 at 500,300", "release 1 at 500,300"});
  reports_just({});
  user->draw(3, corner);
  reports_just({stroke_report});
}

TEST_F(Hooked, PressBesideAnotherButtonIsTheApplications) {
  user->move_to(400, 300);
  user->press(1);
  // The window manager, too, withholds it for a moment.
  ASSERT_TRUE(eventually([&] { return target->events() == Lines({"press 1 at 400,300"}); }));
  user->press(3);
  user->move_to(500, 300);
  user->release(3);
  user->release(1);
  gets({"press 1 at 400,300", "press 3 at 400,300", "release 3 at 500,300", "release 1 at 500,300"});
  reports_just({});
}

TEST_F(Hooked, StopCancelsAndGivesTheButtonBack) {
  Library& library = host->exports();
  begin_drawing({{400, 300}, {500, 300}});
  library.DLL_STOP(1);
  user->release(3);
  gets({"press 3 at 400,300", "release 3 at 500,300"});
  library.DLL_STOP(1);
  EXPECT_TRUE(eventually([&] { return !taken(); }));
  drag_is_passed_on();
  reports_just({});  // Ctrl is, while stopped; strokes are not

  // A stop cancels even if it is taken back at once.
  library.DLL_STOP(0);
  library.DLL_STOP(0);
  ASSERT_TRUE(eventually([&] { return taken(); }));
  begin_drawing();
  library.DLL_STOP(1);
  library.DLL_STOP(0);
  gets({"press 3 at 400,300"});
  user->release(3);
  ASSERT_TRUE(eventually([&] { return taken(); }));
  user->draw(3, corner);
  reports_just({stroke_report});
}

std::ptrdiff_t entries(const char* folder) {
  return std::distance(std::filesystem::directory_iterator(folder), std::filesystem::directory_iterator());
}

TEST_F(Desktop, EndHookGivesEverythingBackAndMayComeAtAnyTime) {
  Host host;
  Library& library = host.exports();
  library.EndHook();
  library.DLL_STOP(1);
  // Once beforehand: beside the first thread a sanitizer starts one of its own.
  host.init();
  library.EndHook();
  const auto descriptors = entries("/proc/self/fd");
  const auto threads = entries("/proc/self/task");
  for (int round = 0; round < 3; ++round) {
    host.init();
    if (round == 1) host.init();
    EXPECT_TRUE(taken()) << "in round " << round;
    begin_drawing({{400, 300}, {500, 300}});
    library.EndHook();
    EXPECT_FALSE(taken());
    user->release(3);
    gets({"press 3 at 400,300", "release 3 at 500,300"});
    target->forget();
    EXPECT_EQ(entries("/proc/self/task"), threads);
    EXPECT_EQ(entries("/proc/self/fd"), descriptors);
  }
}

TEST(HookAlone, NoServerOrOneThatGoesIsNoHarm) {
  Library library;
  setenv("DISPLAY", ":54321", 1);
  library.InitHook(1);
  library.EndHook();

  stage::XServer server;
  ASSERT_TRUE(server.ok());
  server.make_current();
  const auto threads = entries("/proc/self/task");
  library.InitHook(1);
  {
    // A report to a window that is not there, and the hook works on.
    stage::User user(server);
    for (const Path& path : {corner, Path{{700, 300}, {700, 500}}}) {
      user.draw(3, path);
      std::array<point_hook, hook_capacity> points{};
      std::int32_t count = 0;
      EXPECT_TRUE(eventually([&] {
        library.ENVOIS_BUF_TMP(points.data(), &count);
        return count > 0 && points[0].x == path[0].first;
      }));
    }
  }
  server.process().end();
  EXPECT_TRUE(eventually([&] { return entries("/proc/self/task") == threads; })) << "the thread ends with the server";
  library.EndHook();
}

// The trail, with the screen composited or plain: there while drawing, gone afterwards, and nothing damaged.
class TrailOn : public Hooked, public testing::WithParamInterface<bool> {};

TEST_P(TrailOn, IsDrawnAndLeavesNothing) {
  if (GetParam()) compositor = stage::start_compositor(server);
  ASSERT_EQ(compositor.running(), GetParam());
  const auto screen = [&] { return user->pixels(250, 150, 700, 500); };
  const auto green = [&](int x, int y, int width, int height) {
    const auto pixels = user->pixels(x, y, width, height);
    return std::count(pixels.begin(), pixels.end(), 0x00ff00U);
  };
  // The compositor paints when it has time: until then the screen is not what it will be.
  user->move_to(900, 600);
  ASSERT_TRUE(eventually([&] { return user->pixels(600, 400, 1, 1).front() == 0x808080; }));
  const auto before = screen();
  for (const auto& [dpi, width] : {std::pair("96", 3), std::pair("192", 6)}) {
    const std::string resources = std::string("Xft.antialias:\t1\nXft.dpi:\t") + dpi + "\n";
    XChangeProperty(display, DefaultRootWindow(display), XA_RESOURCE_MANAGER, XA_STRING, 8, PropModeReplace,
                    reinterpret_cast<const unsigned char*>(resources.data()), static_cast<int>(resources.size()));
    XSync(display, False);
    for (const bool cancel : {false, true}) {
      SCOPED_TRACE(testing::Message() << dpi << " dpi, cancelled " << cancel);
      begin_drawing();
      const int wanted = width;
      EXPECT_TRUE(
          eventually([&] { return std::abs(green(380, 370, 40, 1) - wanted) <= 1 && green(380, 430, 40, 1) > 0; }));
      if (cancel) user->type(XK_Escape);
      EXPECT_TRUE(!cancel || eventually([&] { return screen() == before; }));
      user->release(3);
      EXPECT_TRUE(eventually([&] { return screen() == before; }));
      pointer_moves();
    }
  }
  // A long one shows whole.
  Path zigzag;
  for (int i = 0; i < 300; ++i) zigzag.emplace_back(300 + 2 * i, i % 2 == 0 ? 300 : 400);
  begin_drawing(zigzag);
  EXPECT_TRUE(eventually([&] {
    return green(300, 290, 20, 120) > 0 && green(506, 290, 6, 120) > 0 && green(512, 290, 6, 120) > 0 &&
           green(600, 290, 20, 120) > 0 && green(880, 290, 10, 120) > 0;
  }));
  // It goes when the button comes up, and comes back whole should that have been a bounce.
  user->bounce(3);
  EXPECT_TRUE(eventually([&] { return green(300, 290, 20, 120) > 0 && green(880, 290, 10, 120) > 0; }));
  user->release(3);
  EXPECT_TRUE(eventually([&] { return screen() == before; }));
  pointer_moves();
  // What blends may go in the middle of it: nothing turns black, and the trail goes on.
  begin_drawing();
  compositor.end();
  EXPECT_TRUE(eventually([&] {
    user->move_to(700, 400);
    user->move_to(700, 410);
    return green(690, 395, 20, 20) > 0;
  }));
  EXPECT_EQ(std::ranges::count(screen(), 0x000000U), 0);
  user->release(3);
  EXPECT_TRUE(eventually([&] { return screen() == before; }));
}

INSTANTIATE_TEST_SUITE_P(Screens, TrailOn, testing::Values(false, true));

}  // namespace
}  // namespace hook_test
