// Timers, posted tasks, the end of the program, and signals; what the process does when nothing happens.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <fstream>
#include <sstream>
#include <thread>

#include "tests/desktop/stage.h"

namespace {

using testing::ElementsAre;

TEST(EventsTest, TimersRunWhileTheyAreEnabled) {
  Stage stage({.window_manager = false});
  TestForm form;
  platform::Timer fast(form, "fast", 5, true);
  platform::Timer once(form, "once", 20, false);
  platform::Timer idle(form, "idle", 0, true);  // without an interval it never runs
  int fast_ticks = 0;
  int once_ticks = 0;
  int idle_ticks = 0;
  fast.Elapsed = [&] { ++fast_ticks; };
  once.Elapsed = [&] {
    ++once_ticks;
    once.Enabled = false;
  };
  idle.Elapsed = [&] { ++idle_ticks; };
  platform::Services& services = stage.services();
  ASSERT_TRUE(services.windows.load(form));
  ASSERT_TRUE(stage.until([&] { return fast_ticks >= 10; }));
  EXPECT_EQ(once_ticks, 0);

  const std::int32_t before = services.clock.GetTickCount();
  once.Enabled = true;
  ASSERT_TRUE(stage.until([&] { return once_ticks == 1; }));
  EXPECT_GE(services.clock.GetTickCount() - before, 19);
  fast_ticks = 0;
  ASSERT_TRUE(stage.until([&] { return fast_ticks >= 10; }));
  EXPECT_EQ(once_ticks, 1) << "it has stopped itself";

  fast.Interval = 60000;
  const int ticks_then = fast_ticks;
  once.Enabled = true;
  ASSERT_TRUE(stage.until([&] { return once_ticks == 2; }));
  EXPECT_LE(fast_ticks, ticks_then + 1) << "a new interval counts from its assignment";
  services.windows.unload(form);
  EXPECT_EQ(form.hWnd, 0U);
  EXPECT_EQ(form.host, nullptr);
  once.Enabled = true;  // reaches nobody
  EXPECT_EQ(idle_ticks, 0);
  EXPECT_GT(before, 700);
}

TEST(EventsTest, AFormWithoutAWindowHasItsTimers) {
  Stage stage({.window_manager = false});
  TestForm form;
  form.windowless = true;
  platform::Timer timer(form, "timer", 1, true);
  int ticks = 0;
  timer.Elapsed = [&] {
    ++ticks;
    stage.services().events.post([&] { stage.services().windows.unload(form); });
  };
  ASSERT_TRUE(stage.services().windows.load(form));
  EXPECT_EQ(form.hWnd, 0U);
  form.Caption = "sans fenêtre";
  form.Refresh();
  ASSERT_TRUE(stage.until([&] { return form.host == nullptr; }));
  EXPECT_GE(ticks, 1);
}

TEST(EventsTest, TasksRunLaterInOrderAndNestedLoopsServeThem) {
  Stage stage({.window_manager = false});
  std::vector<int> order;
  platform::Events& events = stage.services().events;
  events.post([&] {
    order.push_back(1);
    stage.until([&] { return order.size() == 3; });
    order.push_back(4);
  });
  events.post([&] { order.push_back(2); });
  events.post([&] { order.push_back(3); });
  EXPECT_TRUE(order.empty());
  EXPECT_TRUE(stage.until([&] { return order.size() == 4; }));
  EXPECT_THAT(order, ElementsAre(1, 2, 3, 4));
}

// The end comes out of a box, inside a loop that yields, inside the program's own loop.
TEST(EventsTest, TheEndLeavesEveryLoopAndServesNothingMore) {
  Stage stage({.window_manager = false});
  TestForm form;
  platform::Timer timer(form, "timer", 1, true);
  platform::Services& services = stage.services();
  bool ending = false;
  int afterwards = 0;
  std::vector<std::string> left;
  timer.Elapsed = [&] { afterwards += services.events.ended() ? 1 : 0; };
  form.KeyDown = [&](int&, int&) { afterwards += services.events.ended() ? 1 : 0; };
  ASSERT_TRUE(services.windows.load(form));
  services.events.post([&] {
    services.events.post([&] {
      const int answer = services.dialogs.MsgBox("Une question", platform::vbYesNo, "Essai");
      left.push_back("box " + std::to_string(answer));
      left.push_back("second box " + std::to_string(services.dialogs.MsgBox("?", platform::vbOKCancel, "Essai")));
      left.push_back("input \"" + services.dialogs.InputBox("?", "Essai", "x") + "\"");
    });
    while (!services.events.ended()) services.events.DoEvents();
    stage.send(form.hWnd, form.hWnd, hook_report_atom, {hook_key_down, key_stroke});
    services.events.post([&] { ++afterwards; });
    for (int i = 0; i < 5; ++i) services.events.DoEvents();
    left.emplace_back("loop");
  });
  // The box is there when its window is.
  timer.Elapsed = [&] {
    if (ending) {
      ++afterwards;
      return;
    }
    if (!stage.something_shown()) return;
    ending = true;
    services.events.End(7);
    services.events.End(8);
  };
  EXPECT_EQ(stage.desktop->run(), 7);
  EXPECT_THAT(left, ElementsAre("box 7", "second box 2", "input \"\"", "loop"));
  EXPECT_EQ(afterwards, 0);
  EXPECT_EQ(stage.desktop->run(), 7) << "an ended program does not start again";
}

TEST(EventsTest, ARequestToGoArrivesAlsoWhileABoxIsOpen) {
  for (const int number : {SIGTERM, SIGINT, SIGHUP}) {
    Stage stage({.window_manager = false});
    TestForm form;
    platform::Timer timer(form, "timer", 1, true);
    platform::Services& services = stage.services();
    int asked = 0;
    stage.desktop->on_terminate = [&] {
      ++asked;
      services.events.End(3);
    };
    bool sent = false;
    timer.Elapsed = [&] {
      if (sent || !stage.something_shown()) return;
      sent = true;
      raise(number);
    };
    ASSERT_TRUE(services.windows.load(form));
    int answer = 0;
    services.events.post([&] { answer = services.dialogs.MsgBox("Une question", platform::vbOKCancel, "Essai"); });
    EXPECT_EQ(stage.desktop->run(), 3);
    EXPECT_EQ(asked, 1);
    EXPECT_EQ(answer, platform::vbCancel);
  }
}

TEST(EventsTest, WithoutAnybodyToAskASignalEndsTheProgram) {
  Stage stage({.window_manager = false});
  stage.services().events.post([] { raise(SIGTERM); });
  EXPECT_EQ(stage.desktop->run(), 0);
}

TEST(EventsTest, WithoutADisplayOneSentenceSaysSo) {
  setenv("DISPLAY", ":987654", 1);
  testing::internal::CaptureStderr();
  EXPECT_FALSE(desktop::Desktop::available());
  const std::string said = testing::internal::GetCapturedStderr();
  EXPECT_NE(said.find(":987654"), std::string::npos);
  EXPECT_EQ(std::count(said.begin(), said.end(), '\n'), 1);

  const test_support::XServer server;
  server.make_current();
  setenv("WAYLAND_DISPLAY", "wayland-0", 1);
  testing::internal::CaptureStderr();
  EXPECT_TRUE(desktop::Desktop::available());
  EXPECT_NE(testing::internal::GetCapturedStderr().find("Wayland"), std::string::npos);
  unsetenv("WAYLAND_DISPLAY");
}

// How often the threads of this process have been woken so far.
long wake_ups() {
  std::ifstream status("/proc/self/status");
  long result = 0;
  for (std::string line; std::getline(status, line);) {
    if (line.starts_with("voluntary_ctxt_switches:")) result = std::stol(line.substr(line.find(':') + 1));
  }
  return result;
}

TEST(EventsTest, AnIdleProgramSleeps) {
  Stage stage;
  TestForm form;
  platform::TextBox box(form, "box", twips(10, 10, 100, 20));
  platform::Timer timer(form, "timer", 1, false);
  stage.show(form);
  stage.services().windows.Hide(form);
  stage.settle(form);
  // One second of the loop is the thing measured here, not a wait for something to happen.
  constexpr int second = 1000;
  long woken = 0;
  platform::Timer end(form, "end", second, false);
  end.Elapsed = [&] {
    woken = wake_ups() - woken;
    stage.services().events.End(0);
  };
  end.Enabled = true;
  woken = wake_ups();
  stage.desktop->run();
  EXPECT_LT(woken, 10);
}

}  // namespace
