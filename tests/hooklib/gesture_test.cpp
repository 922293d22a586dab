// Decisions about presses that no real server can be made to ask for.
#include "hooklib/gesture.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <utility>
#include <vector>

#include "hooklib/path.h"

namespace hooklib {
namespace {

constexpr Contact mouse{8, 3};
constexpr Contact second_mouse{9, 3};
constexpr Contact wheel{8, 5};

constexpr Step nothing{};
constexpr Step begin{.begin = true};
constexpr Step end{.end = true};
constexpr Step lift{.lift = true};
constexpr Step hand_over{.release = Release::hand_over};
constexpr Step swallow{.release = Release::swallow};
constexpr Step report{.release = Release::as_stroke};
constexpr Step drop{.end = true, .release = Release::swallow};
constexpr Step give_back{.end = true, .release = Release::hand_over};

Gesture drawing() {
  Gesture gesture;
  EXPECT_EQ(gesture.button_down(mouse, 100), nothing);
  EXPECT_EQ(gesture.frozen_press(100, true), begin);
  return gesture;
}

TEST(Gesture, OnlyItsOwnButtonEndsADrawingAndKeysComeTooLateThen) {
  Gesture gesture = drawing();
  EXPECT_EQ(gesture.button_down(wheel, 110), nothing);
  EXPECT_EQ(gesture.button_up(wheel), nothing);
  EXPECT_EQ(gesture.button_up(second_mouse), nothing);
  EXPECT_EQ(gesture.button_up(mouse), lift);
  EXPECT_EQ(gesture.control(), nothing);
  EXPECT_EQ(gesture.escape(), nothing);
  EXPECT_EQ(gesture.stays_up(), end);
  EXPECT_EQ(gesture.recorded(false), report);
  EXPECT_EQ(gesture.recorded(false), nothing);
}

TEST(Gesture, ACancelLetsThePressGoOnce) {
  Gesture gesture = drawing();
  EXPECT_EQ(gesture.device_gone(second_mouse.device), nothing);
  EXPECT_EQ(gesture.button_down(second_mouse, 150), drop);
  EXPECT_EQ(gesture.device_gone(mouse.device), nothing);
  EXPECT_EQ(gesture.button_up(mouse), nothing);
  EXPECT_EQ(gesture.recorded(false), nothing);
}

TEST(Gesture, BouncesShareTheFateOfTheirDrawing) {
  const std::pair<Step (*)(Gesture&), std::pair<Step, Step>> ends[] = {
      {[](Gesture& g) { return g.button_up(mouse), g.stays_up(), g.recorded(false); }, {report, swallow}},
      {[](Gesture& g) { return g.control(); }, {give_back, hand_over}},
      {[](Gesture& g) { return g.button_up(mouse), g.stop(); }, {give_back, hand_over}},
      {[](Gesture& g) { return g.escape(); }, {drop, swallow}}};
  for (const auto& [finish, expected] : ends) {
    Gesture gesture = drawing();
    EXPECT_EQ(gesture.button_up(mouse), lift);
    EXPECT_EQ(gesture.button_down(mouse, 200), lift);
    gesture.bounced(200);
    EXPECT_TRUE(gesture.drawing());
    EXPECT_EQ(gesture.button_up(mouse), lift);
    EXPECT_EQ(gesture.button_down(mouse, 210), lift);
    EXPECT_EQ(gesture.button_up(mouse), lift);
    gesture.bounced(210);
    EXPECT_TRUE(gesture.lifted()) << "up again before it was known to have been down";
    EXPECT_EQ(gesture.button_down(mouse, 215), lift);
    gesture.bounced(215);
    EXPECT_EQ(finish(gesture), expected.first);
    for (const std::uint32_t time : {200U, 210U, 215U}) EXPECT_EQ(gesture.frozen_press(time, true), expected.second);
    gesture.button_down(mouse, 300);
    EXPECT_EQ(gesture.frozen_press(300, true), begin);
  }
}

TEST(Gesture, NothingBringsAButtonBackThatCameUpForGood) {
  Gesture gesture = drawing();
  gesture.button_up(mouse);
  EXPECT_EQ(gesture.button_down({mouse.device, 1}, 205), end) << "a click that follows leaves the stroke whole";
  gesture.button_down(mouse, 210);
  gesture.bounced(210);
  EXPECT_EQ(gesture.recorded(false), report);
  EXPECT_EQ(gesture.frozen_press(210, true), begin) << "another drawing";
}

TEST(Gesture, PressesThatCannotBeDrawnAreHandedOver) {
  Gesture gesture;
  EXPECT_EQ(gesture.frozen_press(50, true), hand_over) << "no device made it";
  // Down and up while the server still withheld the press before it.
  gesture.button_down(mouse, 120);
  gesture.button_up(mouse);
  EXPECT_EQ(gesture.frozen_press(120, true), hand_over);
}

using Kind = Recording::Kind;
using Times = std::vector<std::uint32_t>;

TEST(DrawnPath, PressSoonAndNearIsABounce) {
  const struct {
    Sample next;
    Kind kind;
    bool bounced, ended;
  } cases[] = {{{204, 305, 1025}, Kind::press, true, false},  {{204, 305, 1026}, Kind::press, false, true},
               {{230, 300, 1005}, Kind::press, false, true},  {{204, 305, 1005}, Kind::motion, false, false},
               {{230, 300, 1005}, Kind::motion, false, true}, {{204, 305, 1026}, Kind::motion, false, true},
               {{200, 300, 1005}, Kind::release, false, true}};
  for (const auto& [next, kind, bounced, ended] : cases) {
    DrawnPath path;
    path.begin({100, 300, 900}, 1);
    path.take({200, 300, 1000}, Kind::release);
    EXPECT_FALSE(path.ended());
    path.take(next, kind);
    EXPECT_EQ(path.ended(), ended) << next.x << ' ' << next.time_ms;
    EXPECT_EQ(path.take_bounces(), bounced ? Times{next.time_ms} : Times{});
    EXPECT_EQ(path.samples().back().x, bounced ? next.x : 200) << "the stroke ends with the release";
  }
}

TEST(DrawnPath, ClickEndsAtOnceUnlessNoHandIsThatFast) {
  for (const auto& [release_ms, ended] : {std::pair(925U, false), {926U, true}}) {
    DrawnPath path;
    path.begin({100, 300, 900}, 1);
    path.take({101, 300, release_ms}, Kind::release);
    EXPECT_EQ(path.ended(), ended) << release_ms;
    path.take({102, 300, release_ms + 5}, Kind::press);
    EXPECT_EQ(path.take_bounces().empty(), ended);
    // It is the press of the same release that counts.
    path.take({102, 300, release_ms + 31}, Kind::release);
    EXPECT_TRUE(path.ended());
  }
}

TEST(DrawnPath, ClicksWithoutAPauseAreNotWithheldForLong) {
  DrawnPath path;
  path.begin({100, 300, 900}, 1);
  std::uint32_t ms = 900;
  for (int click = 0; click < 100 && !path.ended(); ++click) {
    if (click > 0) path.take({100, 300, ms += 5}, Kind::press);
    path.take({100, 300, ms += 5}, Kind::release);
  }
  EXPECT_EQ(ms, 1005U);
}

TEST(DrawnPath, ReleaseThatWasMadeBeforeTheRecordingEndsIt) {
  for (const std::uint32_t motion_ms : {1000U, 1001U}) {
    DrawnPath path;
    path.begin({100, 300, 990}, 1);
    path.told(1000, Kind::release);
    path.take({600, 300, motion_ms}, Kind::motion);
    EXPECT_EQ(path.samples().back().x, 100) << motion_ms;
    EXPECT_EQ(path.ended(), motion_ms == 1001U);
    path.take({600, 300, 1000}, Kind::release);
    EXPECT_EQ(path.samples().back().x, motion_ms == 1000U ? 600 : 100) << "of that millisecond, and before it";
  }
}

TEST(DrawnPath, BounceThatWasMadeBeforeTheRecordingIsOne) {
  for (const int recorded : {0, 1, 2}) {
    for (const bool moved : {true, false}) {
      DrawnPath path;
      path.begin({100, 300, 990}, 1);
      path.told(991, Kind::release);
      path.told(992, Kind::press);
      // Of the same millisecond, and before or after.
      if (recorded < 2) path.take({150, 300, 992}, Kind::motion);
      if (recorded > 1) path.take({100, 300, 991}, Kind::release);
      if (recorded > 0) path.take({100, 300, 992}, Kind::press);
      moved ? path.take({600, 300, 993}, Kind::motion) : path.catch_up();
      const bool before = recorded == 1;
      EXPECT_EQ(path.ended(), before) << recorded << "; a motion so far away says that there was no bounce";
      EXPECT_EQ(path.take_bounces(), before ? Times{} : Times{992});
    }
  }
}

TEST(DrawnPath, AClickShowsNoTrail) {
  DrawnPath path;
  path.begin({100, 100, 0}, 1);
  for (std::uint32_t ms = 1; ms < 100; ++ms) path.take({100.0 + ms % 4, 100, ms}, Kind::motion);
  EXPECT_TRUE(path.take_undrawn().empty());
}

}  // namespace
}  // namespace hooklib
