// Timers, posted tasks, the end of the program, and signals; what the process does when nothing happens or is missing.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>

#include <QApplication>
#include <csignal>

#include "desktop/hook_loader.h"
#include "tests/desktop/stage.h"

namespace {

using platform::Timer;

class EventsTest : public FormTest {
 protected:
  platform::Events& events = services().events;
};

TEST_F(EventsTest, TimersRunWhileTheyAreEnabled) {
  Timer fast(form, "fast", 5, true), once(form, "once", 20, false);
  Timer idle(form, "idle", 0, true);  // without an interval it never runs
  int fast_ticks = 0, once_ticks = 0;
  fast.Elapsed = [&] { ++fast_ticks; };
  once.Elapsed = [&] { once.Enabled = false, ++once_ticks; };
  idle.Elapsed = [] { ADD_FAILURE(); };
  ASSERT_TRUE(windows.load(form));
  for (const int run : {0, 1}) {
    fast_ticks = 0;
    ASSERT_TRUE(until([&] { return fast_ticks >= 10; }));
    EXPECT_EQ(once_ticks, run) << "it stops itself";
    if (run == 1) fast.Interval = 60000, fast_ticks = 0;
    const std::int32_t before = services().clock.GetTickCount();
    EXPECT_GT(before, 700);
    once.Enabled = true;
    ASSERT_TRUE(until([&] { return once_ticks == run + 1; }));
    EXPECT_GE(services().clock.GetTickCount() - before, 19);
  }
  EXPECT_LE(fast_ticks, 1) << "a new interval counts from its assignment";
}

// A request to go comes while a box is open, inside a loop that yields, inside the program's own loop.
TEST_F(EventsTest, TheEndLeavesEveryLoopAndServesNothingMore) {
  int asked = 0;
  const auto late = [&] { heard.emplace_back("late"); };
  form.KeyDown = [&](int&, int&) { late(); };
  desktop->on_terminate = [&] { ++asked, events.End(7), events.End(8); };
  when([] { return QApplication::activeModalWidget() != nullptr; },
       [&] { raise(SIGHUP), when([&] { return events.ended(); }, late); });
  ASSERT_TRUE(windows.load(form));
  events.post([&] {
    heard.emplace_back("loop");
    while (!events.ended()) events.DoEvents();
    send(form.hWnd, form.hWnd, hook_report_atom, {hook_key_down, key_stroke});
    events.post(late);
    for (int i = 0; i < 5; ++i) events.DoEvents();
    heard.emplace_back("left");
  });
  events.post([&] {
    for (const int style : {platform::vbYesNo, platform::vbOKCancel}) {
      heard.push_back("box " + std::to_string(services().dialogs.MsgBox("?", style, "Essai")));
    }
    heard.push_back("input " + services().dialogs.InputBox("?", "Essai", "x"));
  });
  EXPECT_THAT(heard, testing::IsEmpty()) << "tasks run later, and in their order";
  EXPECT_EQ(desktop->run(), 7);
  EXPECT_THAT(heard, testing::ElementsAre("loop", "box 7", "box 2", "input ", "left"));
  EXPECT_EQ(asked, 1);
  EXPECT_EQ(desktop->run(), 7) << "an ended program does not start again";
}

TEST(MissingTest, WhatALibraryLacksIsNamed) {
  std::string error;
  EXPECT_EQ(desktop::DesktopHookLoader(HOOK_FOLDER).load("desktop_test_hook.so", error), nullptr);
  EXPECT_THAT(error, testing::HasSubstr("ENVOIS_BUF_TMP"));
}

// How often this thread has slept so far.
long sleeps() {
  rusage usage{};
  getrusage(RUSAGE_THREAD, &usage);
  return usage.ru_nvcsw;
}

TEST_F(EventsTest, AnIdleProgramSleeps) {
  platform::TextBox box(form, "box", twips(10, 10, 100, 20));
  Timer stopped(form, "stopped", 1, false);
  Timer end(form, "end", 1000, false);
  show(form);
  windows.Hide(form);
  settle(form);
  // A second of the loop is what is measured here, not a wait for something to happen.
  end.Elapsed = [&] { events.End(0); };
  end.Enabled = true;
  const long before = sleeps();
  desktop->run();
  EXPECT_LT(sleeps() - before, 10);
}

}  // namespace
