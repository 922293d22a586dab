#include "desktop/arrangement.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <tuple>

namespace {

using namespace desktop;
using testing::ElementsAre;

constexpr Area work{40, 0, 1880, 1079};
const std::vector<Limits> three(3), five(5);

TEST(Arrangement, UpToThreeWindowsStandInOneLineAndMoreInAGrid) {
  EXPECT_EQ(tile_horizontally(work, {}), std::vector<Area>());
  EXPECT_THAT(tile_vertically(work, three),
              ElementsAre(Area{40, 0, 626, 1079}, Area{666, 0, 627, 1079}, Area{1293, 0, 627, 1079}));
  EXPECT_EQ(tile_vertically(work, five)[1], (Area{40, 539, 940, 540})) << "two, and then three";
  EXPECT_EQ(tile_horizontally(work, five)[4], (Area{1293, 539, 627, 540}));
}

TEST(Arrangement, TilesCoverEveryPixelOnce) {
  const Area small{3, 0, 97, 53};
  for (const std::size_t count : {1U, 2U, 3U, 4U, 5U, 7U, 12U, 31U}) {
    const std::vector<Limits> any(count);
    for (const auto& places : {tile_horizontally(small, any), tile_vertically(small, any)}) {
      std::vector<int> painted(5300);
      for (const Area& place : places) {
        for (int y = place.y; y < place.bottom(); ++y) {
          for (int x = place.x; x < place.right(); ++x) ++painted.at(static_cast<std::size_t>(y * 100 + x));
        }
      }
      for (std::size_t i = 0; i < painted.size(); ++i) ASSERT_EQ(painted[i], i % 100 < 3 ? 0 : 1) << count << " " << i;
    }
  }
}

TEST(Arrangement, ACascadeBeginsAgainAtTheCornerAndLimitsAreKept) {
  // 1079 / 3 / 100: three steps.
  EXPECT_THAT(cascade(work, five, 100),
              ElementsAre(Area{40, 0, 1580, 779}, Area{140, 100, 1580, 779}, Area{240, 200, 1580, 779},
                          Area{340, 300, 1580, 779}, Area{40, 0, 1580, 779}));
  EXPECT_EQ(cascade(work, {{}, {.least_width = 1800}}, 100).back(), (Area{120, 100, 1800, 779}));
  const Limits small{.most_width = 300, .most_height = 200}, huge{.least_width = 3000}, wide{.least_width = 1000};
  EXPECT_THAT(tile_vertically(work, {small, huge, wide}),
              ElementsAre(Area{40, 0, 300, 200}, Area{40, 0, 3000, 1079}, Area{920, 0, 1000, 1079}));
}

TEST(Arrangement, PanelsTakeTheirPartOfTheMonitorTheyStandOn) {
  using Edge = Strut::Edge;
  // A large monitor, and to its right a smaller one whose lower edge is 200 above the screen's.
  const Area screen{0, 0, 3200, 1200}, large{0, 0, 1920, 1200}, lesser{1920, 0, 1280, 1000};
  const std::tuple<Strut, Area, Area> cases[] = {
      {{Edge::top, 30, 0, 1919}, {0, 30, 1920, 1170}, lesser},
      {{Edge::bottom, 240, 1920, 3199}, large, {1920, 0, 1280, 960}},
      {{Edge::left, 1960, 0, 999}, large, {1960, 0, 1240, 1000}},  // at the border between the two
  };
  for (const auto& [strut, large_left, lesser_left] : cases) {
    EXPECT_EQ(without_struts(large, screen, {strut}), large_left) << strut.depth;
    EXPECT_EQ(without_struts(lesser, screen, {strut}), lesser_left) << strut.depth;
  }
}

}  // namespace
