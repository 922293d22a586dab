#include "platform/canvas.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>

namespace platform {
namespace {

std::ptrdiff_t painted(const Canvas& canvas) {
  return std::count_if(canvas.pixels().begin(), canvas.pixels().end(), [](std::uint32_t p) { return p != 0; });
}

TEST(Canvas, DotsAtAnyDensity) {
  for (const auto& [density, diameter, pixels] :
       {std::tuple{1.0, 1, 1}, {1.0, 3, 9}, {1.0, 5, 21}, {2.0, 1, 4}, {2.0, 3, 32}}) {
    Canvas canvas(68, 51, density);
    canvas.dot(10.4, 20.5, diameter, 0x0000FF);
    EXPECT_EQ(painted(canvas), pixels) << density << " " << diameter;
    EXPECT_EQ(canvas.at(static_cast<int>(10 * density), static_cast<int>(20 * density)), 0xFFFF0000U);
  }
}

TEST(Canvas, DropsWhatFallsOutside) {
  Canvas canvas(10, 10);
  for (const double x : {-1e9, -2.0, 11.0, 1e300, std::numeric_limits<double>::quiet_NaN()}) canvas.dot(x, 5, 1, 0xFF);
  EXPECT_EQ(painted(canvas), 0);
  canvas.dot(-1, -1, 3, 0xFF);
  EXPECT_EQ(painted(canvas), 1);
  canvas.clear();
  EXPECT_EQ(painted(canvas), 0);
}

}  // namespace
}  // namespace platform
