// Which points of a stroke cross to the matcher, to the pixel.
#include "hooklib/sampler.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <string>
#include <utility>

namespace hooklib {
namespace {

using Points = std::vector<std::pair<int, int>>;

Points sampled(const std::vector<Sample>& events, double density = normal_density) {
  Points points;
  const auto stroke = sample_stroke(events, density);
  if (stroke) {
    for (const point_hook& point : *stroke) points.emplace_back(point.x, point.y);
  }
  return points;
}

// 62 samples on to this place, evenly in place and time.
void line_to(std::vector<Sample>& events, double x, double y) {
  const Sample from = events.back();
  for (std::uint32_t i = 1; i <= 62; ++i) {
    events.push_back({from.x + i * (x - from.x) / 62, from.y + i * (y - from.y) / 62, from.time_ms + i * 8});
  }
}

TEST(Sampler, SmallPressesAreClicks) {
  struct Case {
    double dx, dy, density;
    bool click;
  };
  const Case cases[] = {{0, 0, 1, true},    {19, 19, 1, true}, {20, 0, 1, false},
                        {0, -20, 1, false}, {39, 39, 2, true}, {-30, 1, 1.5, false}};
  for (const Case& c : cases) {
    // There and back: it is the extent that counts, not the distance of the ends.
    const std::vector<Sample> events = {{500, 500, 0}, {500 + c.dx, 500 + c.dy, 50}, {500, 500, 100}};
    EXPECT_EQ(sampled(events, c.density).empty(), c.click) << c.dx << ' ' << c.dy << " at " << c.density;
  }
  EXPECT_TRUE(sampled({}).empty());
}

TEST(Sampler, EvenLineGivesEvenPoints) {
  std::vector<Sample> events = {{100, 200, 1000}};
  line_to(events, 410, 200);
  const Points points = sampled(events);
  ASSERT_EQ(points.size(), 32U);
  // Path alone would put a point every 10 pixels; the clock runs from 110 to 400 only, and counts for half.
  for (int k = 0; k < 32; ++k) {
    EXPECT_NEAR(points[static_cast<std::size_t>(k)].first, 100 + 10 * k, 5) << k;
    EXPECT_EQ(points[static_cast<std::size_t>(k)].second, 200) << k;
  }
  EXPECT_EQ(points[0].first, 100);
  EXPECT_EQ(points[31].first, 410);
}

TEST(Sampler, HesitationDrawsPointsButRestsAtTheEndsDoNot) {
  // 310 px down, then 310 px right, at the same speed but for a second's pause at the corner.
  std::vector<Sample> events = {{500, 300, 0}};
  line_to(events, 500, 610);
  std::vector<Sample> paused = events;
  line_to(events, 810, 610);
  const Points steady = sampled(events);
  paused.push_back({500, 610, paused.back().time_ms + 1000});
  line_to(paused, 810, 610);
  const auto near_corner = [](const Points& points) {
    return std::count_if(points.begin(), points.end(),
                         [](const auto& point) { return std::hypot(point.first - 500, point.second - 610) < 15; });
  };
  EXPECT_LE(near_corner(steady), 2);
  // About half the time was spent there, so about a quarter of the points is.
  EXPECT_GE(near_corner(sampled(paused)), 7);
  EXPECT_LE(near_corner(sampled(paused)), 12);

  // The same second, trembling within the radius at either end or silent before the first motion, changes nothing.
  std::vector<Sample> rested = {{500, 300, 0}, {502, 301, 300}, {499, 300, 700}, {500, 300, 1000}};
  line_to(rested, 500, 610);
  line_to(rested, 810, 610);
  rested.push_back({811, 611, rested.back().time_ms + 600});
  rested.push_back({810, 610, rested.back().time_ms + 400});
  const Points rest = sampled(rested);
  for (std::size_t k = 0; k < 32; ++k) {
    EXPECT_NEAR(rest[k].first, steady[k].first, 4) << k;
    EXPECT_NEAR(rest[k].second, steady[k].second, 4) << k;
  }
}

TEST(Sampler, LinesMeantStraightAreStraightened) {
  struct Case {
    const char* what;
    double dx, dy, bend;
    bool straight;
  };
  const Case cases[] = {{"vertical, 4 degrees off", 21, -300, 0, true},
                        {"just slender enough", 400, 139, 0, true},
                        {"just too steep", 400, 140, 0, false},
                        {"slightly bowed", 400, 0, 60, true},
                        {"an arc", 400, 0, 100, false}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    std::vector<Sample> events;
    for (int i = 0; i <= 50; ++i) {
      const double share = i / 50.0;
      events.push_back({600 + share * c.dx, 600 + share * c.dy + c.bend * std::sin(share * 3.14159265358979),
                        static_cast<std::uint32_t>(8 * i)});
    }
    const Points points = sampled(events);
    ASSERT_EQ(points.size(), 32U);
    const auto constant = [&](auto axis) {
      return std::all_of(points.begin(), points.end(), [&](const auto& p) { return p.*axis == points[0].*axis; });
    };
    EXPECT_EQ(constant(&Points::value_type::first) || constant(&Points::value_type::second), c.straight);
  }
  // The axis goes to its mean: (300 + 310 + 320) / 3.
  const Points mean = sampled({{300, 300, 0}, {400, 310, 50}, {500, 320, 100}});
  EXPECT_EQ(mean.front(), std::pair(300, 310));
  EXPECT_EQ(mean.back(), std::pair(500, 310));
}

TEST(Sampler, AxesNearOrBeyondTheNormalisersRangeAreMoved) {
  for (const auto& [low, moved] : {std::pair(63, 1000), {64, 64}, {-500, 1000}, {1999, 1999}, {2000, 1000}}) {
    const auto at = static_cast<double>(low);
    // A right angle, so that neither axis is straightened; the other axis stays where it is.
    const Points x = sampled({{at, 700, 0}, {at, 900, 50}, {at + 150, 900, 100}});
    EXPECT_EQ(x.front(), std::pair(moved, 700)) << low;
    EXPECT_EQ(x.back(), std::pair(moved + 150, 900)) << low;
    const Points y = sampled({{700, at, 0}, {900, at, 50}, {900, at + 150, 100}});
    EXPECT_EQ(y.front(), std::pair(700, moved)) << low;
    EXPECT_EQ(y.back(), std::pair(900, moved + 150)) << low;
  }
}

// Whatever a hand or a broken device does: 32 points, ends exact, none outside of what was drawn.
TEST(Sampler, HoldsItsBoundsForAnyStroke) {
  std::mt19937 random(20);
  for (int round = 0; round < 500; ++round) {
    // Two corners far from everything else, so that the bounds are known and nothing is straight.
    std::vector<Sample> events = {{100, 150, 0xffffff00U}, {1900, 150, 0xffffff00U}, {100, 1850, 0xffffff08U}};
    for (auto count = random() % 400; count > 0; --count) {
      // Some samples repeat the place, some the time; the clock wraps on the way.
      Sample next = events.back();
      if (random() % 4 != 0) next.x = static_cast<double>(100 + random() % 1801);
      if (random() % 4 != 0) next.y = static_cast<double>(150 + random() % 1701);
      next.time_ms += static_cast<std::uint32_t>(random() % 40);
      events.push_back(next);
    }
    const Points points = sampled(events);
    ASSERT_EQ(points.size(), 32U);
    for (const auto& [x, y] : points) ASSERT_TRUE(x >= 100 && x <= 1900 && y >= 150 && y <= 1850) << x << ' ' << y;
    EXPECT_EQ(points.front(), std::pair(100, 150));
    EXPECT_EQ(points.back(), std::pair(static_cast<int>(events.back().x), static_cast<int>(events.back().y)));
  }
}

TEST(Recorder, BoundsItsMemoryAndKeepsBothEndsAndThePace) {
  Recorder recorder;
  recorder.begin({0, 0, 0});
  for (std::uint32_t i = 1; i <= 1000000; ++i) {
    recorder.add({static_cast<double>(i), 0, i});
    ASSERT_LE(recorder.samples().size(), Recorder::capacity);
    ASSERT_EQ(recorder.samples().back().time_ms, i);
  }
  const auto samples = recorder.samples();
  EXPECT_EQ(samples.front().time_ms, 0U);
  EXPECT_GT(samples.size(), Recorder::capacity / 2 - 1);
  for (std::size_t i = 2; i + 1 < samples.size(); ++i) {
    ASSERT_EQ(samples[i].time_ms - samples[i - 1].time_ms, samples[1].time_ms) << "thinned unevenly at " << i;
  }
}

}  // namespace
}  // namespace hooklib
