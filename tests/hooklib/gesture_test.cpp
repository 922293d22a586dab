// Decisions about presses that no real server can be made to ask for.
#include "hooklib/gesture.h"

#include <gtest/gtest.h>

#include <utility>

namespace hooklib {
namespace {

constexpr Contact mouse{8, 3};
constexpr Contact second_mouse{9, 3};
constexpr Contact wheel{8, 5};

constexpr Step nothing{};
constexpr Step begin{.begin = true};
constexpr Step end{.end = true};
constexpr Step hand_over{.release = Release::hand_over};
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
  EXPECT_EQ(gesture.button_up(mouse), end);
  EXPECT_EQ(gesture.control(), nothing);
  EXPECT_EQ(gesture.escape(), nothing);
  EXPECT_EQ(gesture.recorded(false), report);
  EXPECT_EQ(gesture.recorded(false), nothing);
}

TEST(Gesture, EveryCancelLetsThePressGoOnce) {
  const std::pair<Step (*)(Gesture&), Step> ways[] = {
      {[](Gesture& g) { return g.device_gone(mouse.device); }, give_back},
      {[](Gesture& g) { return g.button_down(second_mouse, 150); }, drop}};
  for (const auto& [cancel, expected] : ways) {
    Gesture gesture = drawing();
    EXPECT_EQ(gesture.device_gone(second_mouse.device), nothing);
    EXPECT_EQ(cancel(gesture), expected);
    EXPECT_EQ(cancel(gesture), nothing);
    EXPECT_EQ(gesture.button_up(mouse), nothing);
    EXPECT_EQ(gesture.recorded(false), nothing);
  }
}

TEST(Gesture, PressesThatCannotBeDrawnAreHandedOver) {
  Gesture gesture;
  EXPECT_EQ(gesture.frozen_press(50, true), hand_over) << "no device made it";
  // Down and up while the server still withheld the press before it.
  gesture.button_down(mouse, 120);
  gesture.button_up(mouse);
  EXPECT_EQ(gesture.frozen_press(120, true), hand_over);
}

}  // namespace
}  // namespace hooklib
