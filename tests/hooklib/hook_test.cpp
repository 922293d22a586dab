// The library in a program, on a real server with an application's window, a mouse and a keyboard.
#include <X11/Xatom.h>
#include <X11/keysym.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <csignal>
#include <cstdio>
#include <filesystem>
#include <iterator>
#include <memory>
#include <string>

#include "tests/hooklib/host.h"
#include "tests/support/xserver.h"

namespace hook_test {
namespace {

using test_support::eventually;
using Lines = std::vector<std::string>;

// An L of 200 by 150 pixels well inside the application's window.
const Path corner = {{400, 300}, {400, 350}, {400, 400}, {400, 450}, {450, 450}, {500, 450}, {600, 450}};

class Desktop : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(server.ok());
    server.make_current();
    window_manager = test_support::start_window_manager(server);
    ASSERT_TRUE(window_manager.running());
    user = std::make_unique<test_support::User>(server);
    target = std::make_unique<Target>(server.display());
  }

  // Presses at the start of the path and goes along it.
  void begin_drawing(const Path& path = corner) {
    EXPECT_TRUE(user->begin_stroke(3, path.front().first, path.front().second));
    for (const auto& [x, y] : path) user->move_to(x, y);
  }
  // Until the server withholds nothing any more. Not while a drawing is in progress, and with the pointer at rest: what
  // the server hands over late has the place of that moment.
  void pointer_moves() {
    static int x = 0;
    x = x == 990 ? 980 : 990;
    user->move_to(x, 690);
    const std::string mark = "motion at " + std::to_string(x) + ",690";
    EXPECT_TRUE(eventually([&] {
      const auto all = target->events(true);
      return !all.empty() && all.back() == mark;
    })) << "the pointer is frozen";
  }
  // The application gets just these presses and releases.
  void gets(const Lines& expected) {
    EXPECT_TRUE(eventually([&] { return target->events().size() >= expected.size(); }));
    pointer_moves();
    EXPECT_EQ(target->events(), expected);
  }
  void drag_is_passed_on() {
    target->forget();
    user->move_to(400, 300);
    user->press(3);
    user->move_to(450, 300);
    user->move_to(500, 300);
    user->release(3);
    gets({"press 3 at 400,300", "release 3 at 500,300"});
    target->forget();
  }
  void click_is_passed_on(int button = 3) {
    target->forget();
    user->move_to(610, 300);
    user->click(button);
    gets({"press 3 at 610,300", "release 3 at 610,300"});
    target->forget();
  }
  bool taken() { return button_is_taken(target->display()); }

  test_support::XServer server;
  test_support::Process window_manager;
  std::unique_ptr<test_support::User> user;
  std::unique_ptr<Target> target;
};

// The hook runs in this process.
class Hooked : public Desktop {
 protected:
  void SetUp() override {
    Desktop::SetUp();
    if (HasFatalFailure()) return;
    host = std::make_unique<Host>();
    host->init();
  }
  void TearDown() override {
    if (host) host->exports().EndHook();
  }

  bool reported(const std::vector<Report>& expected) {
    return eventually([&] { return host->reports().size() >= expected.size(); }) && host->reports() == expected;
  }
  // Once a drawing is over and Ctrl, used later, has been reported, whatever was to be reported before has.
  void reports_just(std::vector<Report> expected) {
    pointer_moves();
    user->type(XK_Control_L);
    expected.insert(expected.end(), {control_down, control_up});
    EXPECT_TRUE(eventually([&] { return !host->reports().empty() && host->reports().back() == control_up; }));
    EXPECT_EQ(host->reports(), expected);
    host->forget();
  }

  std::unique_ptr<Host> host;
};

TEST_F(Hooked, StrokeIsReportedOnceAndFetchedAlike) {
  EXPECT_TRUE(host->fetch().empty()) << "before any stroke the array and its count stay as they are";
  user->draw(3, corner);
  ASSERT_TRUE(reported({stroke_report}));
  const Path first = host->fetch();
  ASSERT_EQ(first.size(), 32U);
  EXPECT_EQ(first.front(), corner.front());
  EXPECT_EQ(first.back(), corner.back());
  for (const auto& [x, y] : first) EXPECT_TRUE(x == 400 || y == 450) << x << ',' << y << " is not on the way";

  // A cancelled one leaves it where it is.
  begin_drawing({{300, 200}, {700, 500}});
  user->type(XK_Escape);
  user->release(3);
  gets({});
  reports_just({stroke_report});
  EXPECT_EQ(host->fetch(), first);
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
  Display* const display = target->display();
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

TEST_F(Hooked, EscapeAndTheLeftButtonDropTheDrawing) {
  for (const bool escape : {true, false}) {
    SCOPED_TRACE(escape);
    begin_drawing();
    escape ? user->type(XK_Escape) : user->click(1);
    user->move_to(500, 500);
    user->release(3);
    gets({});
    reports_just({});
    // No button is lost.
    click_is_passed_on();
  }
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

  test_support::XServer server;
  ASSERT_TRUE(server.ok());
  server.make_current();
  const auto threads = entries("/proc/self/task");
  library.InitHook(1);
  {
    // A report to a window that is not there, and the hook works on.
    test_support::User user(server);
    user.draw(3, corner);
    user.draw(3, corner);
    std::array<point_hook, hook_capacity> points{};
    std::int32_t count = 0;
    EXPECT_TRUE(eventually([&] { return library.ENVOIS_BUF_TMP(points.data(), &count), count > 0; }));
  }
  server.process().end();
  EXPECT_TRUE(eventually([&] { return entries("/proc/self/task") == threads; })) << "the thread ends with the server";
  library.EndHook();
}

// The trail, with the screen composited or plain: there while drawing, gone afterwards, and nothing damaged.
class TrailOn : public Hooked, public testing::WithParamInterface<bool> {};

TEST_P(TrailOn, IsDrawnAndLeavesNothing) {
  test_support::Process compositor;
  if (GetParam()) compositor = test_support::start_compositor(server);
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
  Display* const display = target->display();
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
    }
  }
  // A long one shows whole.
  Path zigzag;
  for (int i = 0; i < 300; ++i) zigzag.emplace_back(300 + 2 * i, i % 2 == 0 ? 300 : 400);
  begin_drawing(zigzag);
  EXPECT_TRUE(eventually(
      [&] { return green(300, 290, 20, 120) > 0 && green(600, 290, 20, 120) > 0 && green(880, 290, 10, 120) > 0; }));
  user->release(3);
  EXPECT_TRUE(eventually([&] { return screen() == before; }));
}

INSTANTIATE_TEST_SUITE_P(Screens, TrailOn, testing::Values(false, true));

// A host in a process of its own: prints "ready", then each report as "direction key". Ends when told anything.
void be_host() {
  Host host;
  host.init();
  std::puts("ready");
  std::array<pollfd, 2> waits{{{host.descriptor(), POLLIN, 0}, {STDIN_FILENO, POLLIN, 0}}};
  while (waits[1].revents == 0) {
    for (const auto& [direction, key] : host.reports()) std::printf("%ld %ld\n", direction, key);
    std::fflush(stdout);
    host.forget();
    poll(waits.data(), waits.size(), -1);
  }
  host.exports().EndHook();
}

class HostProcess : public Desktop {
 protected:
  test_support::Process start() {
    test_support::Process process({"/proc/self/exe", "host"}, {server.environment()}, true);
    EXPECT_EQ(process.read_line(), "ready");
    return process;
  }
  void draws_for(test_support::Process& host) {
    ASSERT_TRUE(eventually([&] { return taken(); }));
    user->draw(3, corner);
    EXPECT_EQ(host.read_line(), "0 67");
  }
};

TEST_F(HostProcess, SecondInstanceWaitsForTheFirstToGo) {
  for (const bool killed : {false, true}) {
    SCOPED_TRACE(killed);
    test_support::Process first = start();
    test_support::Process second = start();
    draws_for(first);
    killed ? first.signal(SIGKILL) : first.write_line("end");
    ASSERT_NE(first.wait(), -1);
    draws_for(second);  // and not before
  }
}

TEST_F(HostProcess, KilledInMidStrokeTheButtonIsTheUsers) {
  test_support::Process host = start();
  begin_drawing();
  host.signal(SIGKILL);
  host.wait();
  user->release(3);
  user->move_to(500, 400);
  target->forget();
  user->click(3);
  EXPECT_TRUE(eventually([&] {
    const Lines all = target->events();
    return std::count(all.begin(), all.end(), "press 3 at 500,400") == 1;
  }));
  EXPECT_FALSE(taken());
}

TEST_F(HostProcess, StoppedTheButtonIsTheUsersAndTheHookComesBack) {
  for (const bool in_mid_stroke : {true, false}) {
    SCOPED_TRACE(in_mid_stroke);
    test_support::Process host = start();
    if (in_mid_stroke) begin_drawing();
    host.signal(SIGSTOP);
    if (!in_mid_stroke) user->press(3);
    user->release(3);
    // The pointer is free again, although nobody let it go.
    pointer_moves();
    EXPECT_FALSE(taken());
    click_is_passed_on();
    host.signal(SIGCONT);
    draws_for(host);
    target->forget();
  }
}

}  // namespace
}  // namespace hook_test

// What is thrown ends the test program, as it should.
int main(int count, char** arguments) {  // NOLINT(bugprone-exception-escape)
  if (count == 2 && std::string(arguments[1]) == "host") return hook_test::be_host(), 0;
  testing::InitGoogleTest(&count, arguments);
  return RUN_ALL_TESTS();
}
