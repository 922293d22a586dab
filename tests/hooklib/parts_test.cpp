// The parts of the hook that decide and reckon, without a server.
#include <gtest/gtest.h>

#include <cmath>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "hooklib/exchange.h"
#include "hooklib/gesture.h"
#include "hooklib/held_keys.h"
#include "hooklib/surroundings.h"
#include "hooklib/trail.h"

namespace hooklib {
namespace {

constexpr Contact mouse{8, 3};
constexpr Contact other{8, 1};
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

TEST(Gesture, ReleaseEndsInAStrokeOrAClick) {
  for (const bool click : {false, true}) {
    Gesture gesture = drawing();
    // Neither the wheel nor the end of another device's button is the end of the drawing.
    EXPECT_EQ(gesture.button_down(wheel, 110), nothing);
    EXPECT_EQ(gesture.button_up(wheel), nothing);
    EXPECT_EQ(gesture.button_up(second_mouse), nothing);
    EXPECT_EQ(gesture.recorded(click), nothing);
    EXPECT_EQ(gesture.button_up(mouse), end);
    // The button is up: keys come too late to change anything.
    EXPECT_EQ(gesture.control(), nothing);
    EXPECT_EQ(gesture.escape(), nothing);
    EXPECT_EQ(gesture.recorded(click), click ? hand_over : report);
    EXPECT_EQ(gesture.recorded(click), nothing);
  }
}

TEST(Gesture, EveryCancelLetsThePressGoOnce) {
  const std::pair<Step (*)(Gesture&), Step> ways[] = {
      {[](Gesture& g) { return g.control(); }, give_back},
      {[](Gesture& g) { return g.stop(); }, give_back},
      {[](Gesture& g) { return g.device_gone(mouse.device); }, give_back},
      {[](Gesture& g) { return g.escape(); }, drop},
      {[](Gesture& g) { return g.button_down(other, 150); }, drop},
      {[](Gesture& g) { return g.button_down(second_mouse, 150); }, drop}};
  for (const auto& [cancel, expected] : ways) {
    Gesture gesture = drawing();
    EXPECT_EQ(gesture.device_gone(second_mouse.device), nothing);
    EXPECT_EQ(cancel(gesture), expected);
    EXPECT_EQ(cancel(gesture), nothing);
    EXPECT_EQ(gesture.button_up(mouse), nothing);
    EXPECT_EQ(gesture.recorded(false), nothing);
    // And the next press is a new one.
    EXPECT_EQ(gesture.button_down(mouse, 300), nothing);
    EXPECT_EQ(gesture.frozen_press(300, true), begin);
  }
  Gesture stopped_at_the_end = drawing();
  stopped_at_the_end.button_up(mouse);
  EXPECT_EQ(stopped_at_the_end.stop(), hand_over);
  EXPECT_EQ(stopped_at_the_end.recorded(false), nothing);
}

TEST(Gesture, PressesThatCannotBeDrawnAreHandedOver) {
  Gesture gesture;
  EXPECT_EQ(gesture.frozen_press(50, true), hand_over) << "no device made it";
  gesture.button_down(mouse, 100);
  EXPECT_EQ(gesture.frozen_press(100, false), hand_over) << "it is not wanted";
  EXPECT_EQ(gesture.button_up(mouse), nothing);
  // Down and up while the server still withheld the press before it.
  gesture.button_down(mouse, 120);
  gesture.button_up(mouse);
  EXPECT_EQ(gesture.frozen_press(120, true), hand_over);
}

TEST(HeldKeys, AreOneHoweverMany) {
  HeldKeys keys;
  EXPECT_FALSE(keys.up(5, 37)) << "down before we came";
  EXPECT_TRUE(keys.down(5, 37));
  EXPECT_FALSE(keys.down(5, 37)) << "repeated";
  EXPECT_FALSE(keys.down(6, 37));
  EXPECT_FALSE(keys.up(5, 37));
  EXPECT_FALSE(keys.device_gone(5));
  EXPECT_TRUE(keys.device_gone(6));
  EXPECT_FALSE(keys.any());
}

TEST(Exchange, StopIsSeenEvenIfItWasTakenBack) {
  Exchange exchange;
  int reports = 0;
  const auto count = [&] { ++reports; };
  EXPECT_TRUE(exchange.publish({{1, 2}}, count));
  exchange.set_stopped(true);
  EXPECT_FALSE(exchange.publish({{3, 4}}, count));
  exchange.set_stopped(false);
  EXPECT_FALSE(exchange.publish({{3, 4}}, count)) << "drawn before the stop";
  EXPECT_TRUE(exchange.take_orders().interrupted);
  EXPECT_FALSE(exchange.take_orders().interrupted);
  EXPECT_EQ(reports, 1);
  point_hook points[hook_capacity] = {};
  std::int32_t length = 0;
  exchange.copy_stroke(points, &length);
  EXPECT_EQ(length, 1);
  EXPECT_EQ(points[0].x, 1) << "the last finished stroke stays";
}

TEST(Surroundings, DensityComesFromTheResources) {
  const std::pair<const char*, double> cases[] = {{"", 1},
                                                  {"Xft.dpi:\t96\n", 1},
                                                  {"Xcursor.size:\t24\nXft.dpi:\t192\nXft.rgba:\tnone\n", 2},
                                                  {"Xft.dpi: 144", 1.5},
                                                  {"*Xft.dpi:\t192\nXXft.dpi:\t192\n", 1},
                                                  {"Xft.dpi:", 1},
                                                  {"Xft.dpi:\tmany\n", 1},
                                                  {"Xft.dpi:\t-96\n", 1},
                                                  {"Xft.dpi:\t0\n", 1},
                                                  {"Xft.dpi:\t1e9\n", 1}};
  for (const auto& [resources, density] : cases) EXPECT_DOUBLE_EQ(density_of(resources), density) << resources;
}

TEST(Capsule, HoldsJustThePixelsWithinTheRadius) {
  const std::pair<TrailPoint, TrailPoint> lines[] = {{{10, 10}, {10, 10}}, {{10, 10}, {30, 10}}, {{10, 30}, {10, 10}},
                                                     {{10, 10}, {31, 17}}, {{30, 12}, {11, 33}}, {{12, 30}, {14, 9}}};
  for (const auto& [a, b] : lines) {
    for (const double radius : {1.5, 3.0}) {
      SCOPED_TRACE(testing::Message() << a.x << ',' << a.y << " to " << b.x << ',' << b.y << ", " << radius);
      std::set<std::pair<int, int>> covered;
      for (const xcb_rectangle_t& row : capsule(a, b, radius)) {
        for (int y = row.y; y < row.y + row.height; ++y) {
          for (int x = row.x; x < row.x + row.width; ++x) EXPECT_TRUE(covered.emplace(x, y).second) << "twice";
        }
      }
      for (int y = 0; y < 50; ++y) {
        for (int x = 0; x < 50; ++x) {
          const double length2 = (b.x - a.x) * (b.x - a.x) + (b.y - a.y) * (b.y - a.y);
          const double along = length2 > 0 ? ((x - a.x) * (b.x - a.x) + (y - a.y) * (b.y - a.y)) / length2 : 0;
          const double share = std::min(1.0, std::max(0.0, along));
          const double away = std::hypot(x - a.x - share * (b.x - a.x), y - a.y - share * (b.y - a.y));
          // On the very edge rounding decides.
          if (std::abs(away - radius) < 1e-9) continue;
          EXPECT_EQ(covered.contains({x, y}), away < radius) << x << ',' << y;
        }
      }
    }
  }
  EXPECT_EQ(capsule({10, 10}, {200, 10}, 1.5).size(), 1U) << "a level line costs no more than it must";
}

}  // namespace
}  // namespace hooklib
