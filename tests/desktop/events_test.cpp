// Timers, posted tasks, the end of the program, and signals; what the process does when nothing happens.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <fstream>

#include "tests/desktop/stage.h"

namespace {

using testing::ElementsAre;

class EventsTest : public testing::Test {
 protected:
  Stage stage{{.window_manager = false}};
  TestForm form;
  platform::Services& services = stage.services();
};

TEST_F(EventsTest, TimersRunWhileTheyAreEnabled) {
  platform::Timer fast(form, "fast", 5, true);
  platform::Timer once(form, "once", 20, false);
  platform::Timer idle(form, "idle", 0, true);  // without an interval it never runs
  int fast_ticks = 0;
  int once_ticks = 0;
  fast.Elapsed = [&] { ++fast_ticks; };
  once.Elapsed = [&] {
    ++once_ticks;
    once.Enabled = false;
  };
  idle.Elapsed = [] { ADD_FAILURE(); };
  ASSERT_TRUE(services.windows.load(form));
  ASSERT_TRUE(stage.until([&] { return fast_ticks >= 10; }));
  EXPECT_EQ(once_ticks, 0);

  const std::int32_t before = services.clock.GetTickCount();
  EXPECT_GT(before, 700);
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
}

TEST_F(EventsTest, TasksRunLaterInOrderAndNestedLoopsServeThem) {
  std::vector<int> order;
  services.events.post([&] {
    order.push_back(1);
    stage.until([&] { return order.size() == 3; });
    order.push_back(4);
  });
  services.events.post([&] { order.push_back(2); });
  services.events.post([&] { order.push_back(3); });
  EXPECT_TRUE(order.empty());
  EXPECT_TRUE(stage.until([&] { return order.size() == 4; }));
  EXPECT_THAT(order, ElementsAre(1, 2, 3, 4));
}

// The end comes while a box is open, inside a loop that yields, inside the program's own loop.
TEST_F(EventsTest, TheEndLeavesEveryLoopAndServesNothingMore) {
  platform::Timer timer(form, "timer", 1, true);
  int afterwards = 0;
  std::vector<std::string> left;
  form.KeyDown = [&](int&, int&) { ++afterwards; };
  timer.Elapsed = [&] {
    if (services.events.ended()) ++afterwards;
    if (!stage.something_shown()) return;
    services.events.End(7);
    services.events.End(8);
  };
  ASSERT_TRUE(services.windows.load(form));
  services.events.post([&] {
    services.events.post([&] {
      left.push_back("box " + std::to_string(services.dialogs.MsgBox("?", platform::vbYesNo, "Essai")));
      left.push_back("box " + std::to_string(services.dialogs.MsgBox("?", platform::vbOKCancel, "Essai")));
      left.push_back("input " + services.dialogs.InputBox("?", "Essai", "x"));
    });
    while (!services.events.ended()) services.events.DoEvents();
    stage.send(form.hWnd, form.hWnd, hook_report_atom, {hook_key_down, key_stroke});
    services.events.post([&] { ++afterwards; });
    for (int i = 0; i < 5; ++i) services.events.DoEvents();
    left.emplace_back("loop");
  });
  EXPECT_EQ(stage.desktop->run(), 7);
  EXPECT_THAT(left, ElementsAre("box 7", "box 2", "input ", "loop"));
  EXPECT_EQ(afterwards, 0);
  EXPECT_EQ(stage.desktop->run(), 7) << "an ended program does not start again";
}

class SignalTest : public EventsTest, public testing::WithParamInterface<int> {};

TEST_P(SignalTest, ARequestToGoArrivesAlsoWhileABoxIsOpen) {
  platform::Timer timer(form, "timer", 1, true);
  int asked = 0;
  int answer = 0;
  stage.desktop->on_terminate = [&] {
    ++asked;
    services.events.End(3);
  };
  timer.Elapsed = [&] {
    if (!stage.something_shown()) return;
    timer.Enabled = false;
    raise(GetParam());
  };
  ASSERT_TRUE(services.windows.load(form));
  services.events.post([&] { answer = services.dialogs.MsgBox("?", platform::vbOKCancel, "Essai"); });
  EXPECT_EQ(stage.desktop->run(), 3);
  EXPECT_EQ(asked, 1);
  EXPECT_EQ(answer, platform::vbCancel);
}

INSTANTIATE_TEST_SUITE_P(Requests, SignalTest, testing::Values(SIGTERM, SIGINT, SIGHUP));

TEST(AvailableTest, WithoutADisplayOneSentenceSaysSo) {
  setenv("DISPLAY", ":987654", 1);
  testing::internal::CaptureStderr();
  EXPECT_FALSE(desktop::Desktop::available());
  const std::string said = testing::internal::GetCapturedStderr();
  EXPECT_NE(said.find(":987654"), std::string::npos);
  EXPECT_EQ(said.find('\n'), said.size() - 1);
}

// How often this thread has slept so far.
long sleeps() {
  std::ifstream status("/proc/self/status");
  long result = 0;
  for (std::string line; std::getline(status, line);) {
    if (line.starts_with("voluntary_ctxt_switches:")) result = std::stol(line.substr(line.find(':') + 1));
  }
  return result;
}

TEST_F(EventsTest, AnIdleProgramSleeps) {
  platform::TextBox box(form, "box", twips(10, 10, 100, 20));
  platform::Timer stopped(form, "stopped", 1, false);
  platform::Timer end(form, "end", 1000, false);
  stage.show(form);
  services.windows.Hide(form);
  stage.settle(form);
  // A second of the loop is what is measured here, not a wait for something to happen.
  long slept = 0;
  end.Elapsed = [&] {
    slept = sleeps() - slept;
    services.events.End(0);
  };
  end.Enabled = true;
  slept = sleeps();
  stage.desktop->run();
  EXPECT_LT(slept, 10);
}

}  // namespace
