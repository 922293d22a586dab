// The library in a program, on a real server, with a mouse and a keyboard.
#include <dirent.h>

#include <array>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "tests/hooklib/fixture.h"

namespace hook_test {
namespace {

using Lines = std::vector<std::string>;

TEST_F(Hooked, StrokeIsReportedOnceAndFetchedAlike) {
  EXPECT_TRUE(host->fetch().empty()) << "before any stroke the array and its count stay as they are";
  user->draw(3, corner);
  ASSERT_TRUE(reported({stroke_report}));
  const Path first = host->fetch();
  ASSERT_EQ(first.size(), 32U);
  EXPECT_EQ(first.front(), corner.front());
  EXPECT_EQ(first.back(), corner.back());
  for (const auto& [x, y] : first) EXPECT_TRUE(x == 400 || y == 450) << x << ',' << y << " is not on the way";
  EXPECT_EQ(host->fetch(), first);

  // A cancelled one leaves it where it is.
  begin_drawing({{300, 200}, {700, 500}});
  user->type(XK_Escape);
  user->release(3);
  EXPECT_EQ(reports_so_far(), std::vector<Report>{stroke_report});
  EXPECT_EQ(host->fetch(), first);
  EXPECT_TRUE(target->events().empty()) << "strokes are not for the application";
}

TEST_F(Hooked, OneStrokeAfterTheOtherAllArrive) {
  constexpr std::size_t strokes = 50;
  std::vector<Report> expected;
  for (std::size_t i = 0; i < strokes; ++i) {
    user->draw(3, corner);
    expected.push_back(stroke_report);
    // The next begins with the report of the last.
    ASSERT_TRUE(reported(expected));
  }
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
  constexpr int clicks = 100;
  user->move_to(500, 300);
  Lines expected;
  for (int i = 0; i < clicks; ++i) {
    user->click(3);
    expected.insert(expected.end(), {"press 3 at 500,300", "release 3 at 500,300"});
    ASSERT_TRUE(eventually([&] { return target->events() == expected; }));
  }
  EXPECT_TRUE(reports_so_far().empty());
}

TEST_F(Hooked, InjectedButtonsAreTreatedAsTheUsers) {
  user->move_to(400, 300);
  user->inject_button(3, true);
  user->inject_button(3, false);
  gets({"press 3 at 400,300", "release 3 at 400,300"});
  user->inject_button(3, true);
  EXPECT_TRUE(eventually([&] {
    for (const auto& [x, y] : corner) user->move_to(x, y);
    return user->pixels(400, 400, 1, 1).front() == 0x00ff00;
  }));
  user->inject_button(3, false);
  EXPECT_TRUE(reported({stroke_report}));
}

TEST_F(Hooked, LeftHandedMouseDrawsWithItsOtherButton) {
  std::array<unsigned char, 32> mapping{};
  Display* const display = target->display();
  const int buttons = XGetPointerMapping(display, mapping.data(), static_cast<int>(mapping.size()));
  std::swap(mapping[0], mapping[2]);
  ASSERT_EQ(XSetPointerMapping(display, mapping.data(), buttons), MappingSuccess);
  XSync(display, False);
  user->draw(1, corner);
  ASSERT_TRUE(reported({stroke_report}));
  user->move_to(400, 300);
  user->click(1);
  gets({"press 3 at 400,300", "release 3 at 400,300"});
}

TEST_F(Hooked, ControlAtThePressLeavesItToTheApplication) {
  for (const bool injected : {true, false}) {
    SCOPED_TRACE(injected);
    injected ? user->inject_key(XK_Control_L, true) : user->key_down(XK_Control_L);
    drag(3, {{400, 300}, {450, 300}, {500, 300}});
    gets({"press 3 at 400,300", "release 3 at 500,300"});
    injected ? user->inject_key(XK_Control_L, false) : user->key_up(XK_Control_L);
    target->forget();
    EXPECT_TRUE(injected || reported({control_down, control_up}));
    host->forget();
  }
  EXPECT_TRUE(reports_so_far().empty());
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
    if (escape) {
      user->type(XK_Escape);
    } else {
      user->click(1);
    }
    user->move_to(500, 500);
    user->release(3);
    EXPECT_TRUE(reports_so_far().empty());
    user->move_to(610, 300);
    user->click(3);
    // Nothing else, and no button lost.
    gets({"press 3 at 610,300", "release 3 at 610,300"});
    target->forget();
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
  EXPECT_TRUE(reports_so_far().empty());
}

TEST_F(Hooked, StopCancelsAndGivesTheButtonBack) {
  Library& library = host->library();
  library.DLL_STOP(0);
  begin_drawing({{400, 300}, {500, 300}});
  library.DLL_STOP(1);
  user->release(3);
  gets({"press 3 at 400,300", "release 3 at 500,300"});
  library.DLL_STOP(1);
  target->forget();

  EXPECT_TRUE(eventually([&] { return !button_is_taken(target->display()); }));
  drag(3, {{400, 300}, {500, 300}});
  gets({"press 3 at 400,300", "release 3 at 500,300"});
  EXPECT_TRUE(reports_so_far().empty()) << "Ctrl is reported while stopped, strokes are not";

  // A stop cancels even if it is taken back at once.
  library.DLL_STOP(0);
  library.DLL_STOP(0);
  ASSERT_TRUE(eventually([&] { return button_is_taken(target->display()); }));
  target->forget();
  begin_drawing();
  library.DLL_STOP(1);
  library.DLL_STOP(0);
  gets({"press 3 at 400,300"});
  user->release(3);
  ASSERT_TRUE(eventually([&] { return button_is_taken(target->display()); }));
  user->draw(3, corner);
  EXPECT_EQ(reports_so_far(), std::vector<Report>{stroke_report});
}

TEST_F(Hooked, ControlIsReportedOncePerPressHoweverManyAreHeld) {
  user->key_down(XK_Control_L);
  user->key_down(XK_Control_R);
  user->key_up(XK_Control_L);
  user->type(XK_Shift_L);
  EXPECT_TRUE(reported({control_down}));
  user->key_up(XK_Control_R);
  EXPECT_TRUE(reported({control_down, control_up}));
  // What programs type is not the user's.
  user->inject_key(XK_Control_L, true);
  user->inject_key(XK_Control_L, false);
  user->type(XK_Control_R);
  EXPECT_TRUE(reported({control_down, control_up, control_down, control_up}));
}

// Voluntary context switches of the hook's thread: each time it went to sleep.
long naps_of_hook_thread() {
  for (const auto& task : std::filesystem::directory_iterator("/proc/self/task")) {
    std::string name;
    std::getline(std::ifstream(task.path() / "comm") >> std::ws, name);
    if (name != "strokemind-hook") continue;
    std::ifstream status(task.path() / "status");
    for (std::string word; status >> word;) {
      if (word != "voluntary_ctxt_switches:") continue;
      long count = 0;
      status >> count;
      return count;
    }
  }
  return -1;
}

TEST_F(Hooked, MotionCostsNothingWhileNobodyDraws) {
  user->draw(3, corner);
  ASSERT_EQ(reports_so_far(), std::vector<Report>{stroke_report});
  const long before = naps_of_hook_thread();
  ASSERT_GE(before, 0);
  constexpr int motions = 1000;
  for (int i = 0; i < motions; ++i) user->move_to(300 + i % 500, 400);
  EXPECT_TRUE(reports_so_far().empty());
  EXPECT_LT(naps_of_hook_thread() - before, motions / 10);
}

std::ptrdiff_t entries(const char* folder) {
  return std::distance(std::filesystem::directory_iterator(folder), std::filesystem::directory_iterator());
}

TEST_F(Desktop, EndHookGivesEverythingBackAndMayComeAtAnyTime) {
  Host host;
  Library& library = host.library();
  library.EndHook();
  library.DLL_STOP(1);
  const auto descriptors = entries("/proc/self/fd");
  const auto threads = entries("/proc/self/task");
  for (int round = 0; round < 3; ++round) {
    host.init();
    if (round == 1) host.init();
    EXPECT_TRUE(button_is_taken(target->display())) << "in round " << round;
    begin_drawing({{400, 300}, {500, 300}});
    library.EndHook();
    EXPECT_FALSE(button_is_taken(target->display()));
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
  library.InitHook(1);
  {
    // A report to a window that is not there, and the hook works on.
    test_support::User user(server);
    user.draw(3, corner);
    user.draw(3, corner);
    std::array<point_hook, hook_capacity> points{};
    std::int32_t count = 0;
    EXPECT_TRUE(eventually([&] {
      library.ENVOIS_BUF_TMP(points.data(), &count);
      return count > 0;
    }));
  }
  server.process().end();
  EXPECT_TRUE(eventually([] { return naps_of_hook_thread() < 0; })) << "the thread ends with the server";
  library.EndHook();
}

// Hosts in processes of their own.
class HostProcess : public Desktop {
 protected:
  test_support::Process start() {
    test_support::Process process({HOOK_HOST}, {server.environment()}, true);
    EXPECT_EQ(process.read_line(), "ready");
    return process;
  }
  bool taken() { return button_is_taken(target->display()); }
};

constexpr const char* stroke_line = "0 67";

TEST_F(HostProcess, SecondInstanceWaitsForTheFirstToGo) {
  for (const bool killed : {false, true}) {
    SCOPED_TRACE(killed);
    test_support::Process first = start();
    test_support::Process second = start();
    user->draw(3, corner);
    EXPECT_EQ(first.read_line(), stroke_line);
    if (killed) {
      first.signal(SIGKILL);
    } else {
      first.write_line("end");
    }
    ASSERT_NE(first.wait(), -1);
    ASSERT_TRUE(eventually([&] { return taken(); }));
    user->draw(3, corner);
    EXPECT_EQ(second.read_line(), stroke_line) << "and not before";
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
    events();
    EXPECT_FALSE(taken());
    target->forget();
    user->move_to(500, 400);
    user->click(3);
    gets({"press 3 at 500,400", "release 3 at 500,400"});
    host.signal(SIGCONT);
    ASSERT_TRUE(eventually([&] { return taken(); }));
    user->draw(3, corner);
    EXPECT_EQ(host.read_line(), stroke_line);
    target->forget();
  }
}

}  // namespace
}  // namespace hook_test
