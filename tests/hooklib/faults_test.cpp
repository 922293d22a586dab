// What can go wrong around the hook: its program dies, stands still or hangs, its guard dies, others have the mouse,
// mice and screens change, switches wear out. The right button is never lost.
#include <X11/keysym.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <string>
#include <thread>

#include "tests/hooklib/fixture.h"

// After the test library, in which words occur that are macros here.
#include <X11/extensions/XTest.h>

namespace hook_test {
namespace {

TEST_F(HostProcess, SecondInstanceWaitsForTheFirstToGo) {
  for (const bool killed : {false, true}) {
    SCOPED_TRACE(killed);
    stage::Process first = start();
    stage::Process second = start();
    draws_for(first);
    killed ? first.signal(SIGKILL) : first.write_line("end");
    ASSERT_NE(first.wait(), -1);
    draws_for(second);  // and not before
  }
}

TEST_F(HostProcess, StoppedTheButtonIsTheUsersAndTheHookComesBack) {
  for (const bool in_mid_stroke : {true, false}) {
    SCOPED_TRACE(in_mid_stroke);
    stage::Process host = start();
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

TEST_F(HostProcess, StoppedWhileNobodyDrewIsNoticedAtOnce) {
  // Sooner than a hook that runs is taken for hung. On a busy machine one of several tries is as fast.
  constexpr auto limit = std::chrono::milliseconds(300);
  const auto free_after = [&] {
    const stage::Process host = start();
    host.signal(SIGSTOP);
    const auto start = std::chrono::steady_clock::now();
    user->click(3);
    pointer_moves();
    return std::chrono::steady_clock::now() - start;
  };
  auto best = free_after();
  for (int more = 4; more > 0 && best >= limit; --more) best = std::min(best, free_after());
  EXPECT_LT(best, limit);
}

TEST_F(HostProcess, NothingStaysPressedByAProgramThatIsDeadOrStopped) {
  for (const int signal : {SIGKILL, SIGSTOP}) {
    stage::Process host = start();
    user->move_to(1500, 900);
    host.write_line("inject all");
    ASSERT_EQ(host.read_line(), "pressed");
    host.signal(signal);
    EXPECT_TRUE(eventually([&] { return target->nothing_is_down(); }));
  }
}

TEST_F(HostProcess, HungTheButtonIsTheUsersUntilTheProgramAnswers) {
  stage::Process host = start();
  draws_for(host);
  for (const bool in_mid_stroke : {false, true}) {
    target->forget();
    host.write_line("hang");
    if (in_mid_stroke) begin_drawing();
    EXPECT_TRUE(eventually([&] { return user->type(XK_Shift_L), !taken(); }));
    user->release(3);
    if (in_mid_stroke) gets({"press 3 at 400,300", "release 3 at 600,450"});
    drag_is_passed_on();
    host.write_line("go on");
    draws_for(host);
  }
}

// The guard of the hook that works on this display; 0 if there is none.
pid_t guard_on(const std::string& display) {
  for (const auto& entry : std::filesystem::directory_iterator("/proc")) {
    std::string name;
    std::ifstream(entry.path() / "comm") >> name;
    if (name != "strokemind-guar") continue;
    std::ifstream file(entry.path() / "environ");
    const std::string variables(std::istreambuf_iterator<char>(file), {});
    if (variables.find("DISPLAY=" + display + '\0') != std::string::npos) return std::stoi(entry.path().filename());
  }
  return 0;
}

class Guarded : public HostProcess {
 protected:
  pid_t guard() const { return guard_on(server.display()); }
  // A program that stands still in mid-stroke.
  void is_freed_and_ends(stage::Process& host) {
    host.signal(SIGSTOP);
    user->release(3);
    pointer_moves();
    host.signal(SIGCONT);
    host.write_line("end");
    EXPECT_TRUE(eventually([&] { return guard() == 0; }));
  }
};

TEST_F(Guarded, GuardThatDiesIsReplaced) {
  stage::Process host = start();
  const pid_t first = guard();
  ASSERT_GT(first, 0);
  kill(first, SIGKILL);
  ASSERT_TRUE(eventually([&] { return user->type(XK_Shift_L), guard() != 0 && guard() != first; }));
  begin_drawing();
  is_freed_and_ends(host);
}

TEST_F(Guarded, GuardThatDiesTwiceIsReplacedWithoutAnyInput) {
  const stage::Process host = start();
  pid_t last = 0;
  for (int deaths = 0; deaths < 3; ++deaths) {
    const pid_t before = last;
    ASSERT_TRUE(eventually([&] { return (last = guard()) != 0 && last != before; }));
    kill(last, SIGKILL);
  }
}

// The hook does not wait for it, and it knows what to watch when it comes.
TEST_F(Guarded, GuardThatIsSlowToComeUpKeepsNobodyWaiting) {
  namespace fs = std::filesystem;
  std::string form = testing::TempDir() + "strokemind-XXXXXX";
  const fs::path folder = ::mkdtemp(form.data());
  const fs::path library = folder / fs::path(HOOK_LIBRARY).filename();
  fs::copy_file(HOOK_LIBRARY, library);
  const fs::path guard_program = folder / "strokemind-guard";
  // All but the first take their time.
  std::ofstream(guard_program) << "#!/bin/sh\n[ -e $0.again ] && sleep 1.5\n: >$0.again\nexec "
                               << (fs::path(HOOK_LIBRARY).parent_path() / "strokemind-guard").string() << "\n";
  fs::permissions(guard_program, fs::perms::owner_all);
  stage::Process host = start({std::string(other_library) + "=" + library.string()});
  const auto is_up = [&] {
    const pid_t process = guard();
    std::error_code gone;
    return process != 0 &&
           fs::read_symlink("/proc/" + std::to_string(process) + "/exe", gone).filename() == guard_program.filename();
  };
  const pid_t first = guard();
  ASSERT_GT(first, 0);
  begin_drawing();
  kill(first, SIGKILL);
  ASSERT_TRUE(eventually([&] { return guard() != 0 && guard() != first; }));
  user->release(3);
  EXPECT_EQ(host.read_line(), "0 67");
  EXPECT_FALSE(is_up());
  begin_drawing();
  EXPECT_TRUE(eventually(is_up));
  is_freed_and_ends(host);
  fs::remove_all(folder);
}

TEST_F(Hooked, BouncingSwitchDrawsOneStroke) {
  begin_drawing();
  user->bounce(3);
  user->move_to(620, 450);
  user->bounce(3);
  user->bounce(3);
  user->move_to(640, 450);
  user->release(3);
  gets({});
  reports_just({stroke_report});
  const Path points = host->fetch();
  ASSERT_FALSE(points.empty());
  EXPECT_EQ(points.front(), corner.front());
  EXPECT_EQ(points.back(), std::pair(640, 450));
}

TEST_F(Hooked, SwitchThatBouncesAtThePressDrawsOneStroke) {
  for (const bool rests : {false, true}) {
    SCOPED_TRACE(rests);
    user->move_to(400, 300);
    user->press_bouncing(3);
    // Longer than it takes to know that a button stays up.
    if (rests) std::this_thread::sleep_for(std::chrono::milliseconds(100));
    int moves = 0;
    EXPECT_TRUE(eventually([&] {
      user->move_to(400, 305 + ++moves % 2);
      return user->pixels(400, 303, 1, 1).front() == 0x00ff00;
    }));
    for (const auto& [x, y] : corner) user->move_to(x, y);
    user->release(3);
    gets({});
    reports_just({stroke_report});
    EXPECT_EQ(host->fetch().front(), corner.front());
    click_is_passed_on();
  }
}

TEST_F(Hooked, UnpluggedMouseTakesItsDrawingAlong) {
  begin_drawing();
  user->plug_mouse(false);
  EXPECT_TRUE(eventually([&] { return target->events() == Lines({"press 3 at 400,300"}); }));
  user->plug_mouse(true);
  // To the server the button of a mouse that went away while others were withheld stays down until it comes up again.
  user->click(3);
  EXPECT_TRUE(eventually([&] { return target->events() == Lines({"press 3 at 400,300", "release 3 at 600,450"}); }));
  click_is_passed_on();
}

TEST_F(Hooked, StrokeGoesOnAcrossAChangeOfTheScreen) {
  const auto resize = [&](const char* size) {
    stage::Process xrandr({"xrandr", "--output", "screen", "--mode", size}, {server.environment()});
    EXPECT_EQ(xrandr.wait(), 0);
  };
  const char* const modes =
      "xrandr --newmode 1200x800 0 1200 1200 1200 1200 800 800 800 800 && xrandr --addmode screen 1200x800";
  EXPECT_EQ(stage::Process({"sh", "-c", modes}, {server.environment()}).wait(), 0);
  resize("1200x800");
  begin_drawing();
  resize("1920x1080");
  user->move_to(1500, 450);
  user->move_to(1500, 900);
  EXPECT_TRUE(eventually([&] { return user->pixels(1490, 700, 20, 1)[10] == 0x00ff00; }));
  resize("1200x800");
  resize("1920x1080");
  user->move_to(1700, 900);
  user->release(3);
  ASSERT_TRUE(reported({stroke_report}));
  EXPECT_EQ(host->fetch().back(), std::pair(1700, 900));
}

TEST_F(Hooked, StrokeOutlastsAStandstillOfTheServer) {
  // Longer than the guard waits for a hook that does not answer.
  constexpr auto standstill = std::chrono::milliseconds(800);
  const DisplayHandle other(XOpenDisplay(nullptr));
  begin_drawing();
  XGrabServer(other.get());
  XSync(other.get(), False);
  std::this_thread::sleep_for(standstill);
  XUngrabServer(other.get());
  XSync(other.get(), False);
  user->move_to(620, 450);
  user->release(3);
  reports_just({stroke_report});
}

TEST_F(Hooked, GrabsOfOthersAreLeftAlone) {
  const DisplayHandle other(XOpenDisplay(nullptr));
  const Window root = DefaultRootWindow(other.get());
  const auto grab = [&] {
    return XGrabPointer(other.get(), root, False, ButtonPressMask | ButtonReleaseMask, GrabModeAsync, GrabModeAsync,
                        None, None, CurrentTime);
  };
  user->move_to(400, 300);
  ASSERT_EQ(grab(), GrabSuccess);
  user->press(3);
  user->move_to(500, 400);
  user->release(3);
  for (const int type : {ButtonPress, ButtonRelease}) {
    XEvent event;
    EXPECT_EQ((XNextEvent(other.get(), &event), event.type), type);
  }
  XUngrabPointer(other.get(), CurrentTime);
  XSync(other.get(), False);
  gets({});
  // A locker that comes while somebody draws waits as it would for any button that is held.
  begin_drawing();
  EXPECT_NE(grab(), GrabSuccess);
  user->release(3);
  EXPECT_TRUE(eventually([&] { return grab() == GrabSuccess; }));
  XUngrabPointer(other.get(), CurrentTime);
  XSync(other.get(), False);
  reports_just({stroke_report});
}

}  // namespace
}  // namespace hook_test

// What is thrown ends the test program, as it should.
int main(int count, char** arguments) {  // NOLINT(bugprone-exception-escape)
  if (count == 2 && std::string(arguments[1]) == "host") return stage::be_host(), 0;
  testing::InitGoogleTest(&count, arguments);
  return RUN_ALL_TESTS();
}
