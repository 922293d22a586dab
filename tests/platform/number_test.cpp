#include "platform/number.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <limits>
#include <random>

namespace platform {
namespace {

TEST(FloatText, FollowsTheRule) {
  const std::pair<float, const char*> cases[] = {{0.0F, "0"},
                                                 {-0.0F, "0"},
                                                 {-0.1875F, "-0,1875"},
                                                 {21.33333F, "21,33333"},
                                                 {1e-5F, "1E-05"},
                                                 {1e7F, "1E+07"},
                                                 {9999999.0F, "9999999"},
                                                 {1.0F / 30, "3,333334E-02"},
                                                 {0.0001F, "0,0001"},
                                                 {-16777216.0F, "-1,677722E+07"},
                                                 {3.4028235e38F, "3,402823E+38"},
                                                 {0.99999999F, "1"}};
  for (const auto& [value, text] : cases) EXPECT_EQ(float_text(value), text);
}

TEST(FloatText, ReadsBackToTheSameText) {
  std::mt19937 random(3);
  for (int n = 0; n < 100000; ++n) {
    float value = 0;
    const auto bits = static_cast<std::uint32_t>(random());
    std::memcpy(&value, &bits, sizeof value);
    if (value != value || value > std::numeric_limits<float>::max() || value < std::numeric_limits<float>::lowest()) {
      continue;
    }
    const std::string text = float_text(value);
    const auto back = number_value(text);
    ASSERT_TRUE(back.has_value()) << text;
    ASSERT_LE(text.size(), 13U) << "a list of 500 numbers must fit the longest value";
    // Denormal numbers carry fewer digits than the text has.
    if (value > 1e-30F || value < -1e-30F) {
      ASSERT_EQ(float_text(static_cast<float>(*back)), text);
    }
  }
}

TEST(NumberValue, TakesNumbersAlone) {
  EXPECT_EQ(number_value(" 3450 "), 3450);
  EXPECT_EQ(number_value("+1,5"), 1.5);
  EXPECT_EQ(number_value("-4,2E-02"), -0.042);
  for (const char* text : {"", "x", "1.5", "1,5x", "nan", "inf", "0x10", "1E", "--1", "1E999", "1 2"}) {
    EXPECT_FALSE(number_value(text).has_value()) << text;
  }
}

TEST(Rounding, HalfGoesToTheEvenNeighbour) {
  for (const auto& [value, rounded] : {std::pair(0.5, 0), {1.5, 2}, {2.5, 2}, {-0.5, 0}, {-1.5, -2}}) {
    EXPECT_EQ(round_half_even(value), rounded) << value;
  }
  EXPECT_EQ(round_half_even(1e300), std::numeric_limits<std::int32_t>::max());
  EXPECT_EQ(round_half_even(-1e300), std::numeric_limits<std::int32_t>::min());
}

}  // namespace
}  // namespace platform
