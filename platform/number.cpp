#include "platform/number.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>

#include "platform/text.h"

namespace platform {

namespace {

constexpr int significant_digits = 7;  // of a 32-bit float
constexpr int smallest_plain_exponent = -4;

}  // namespace

std::int32_t round_half_even(double value) {
  constexpr double lowest = std::numeric_limits<std::int32_t>::min();
  constexpr double highest = std::numeric_limits<std::int32_t>::max();
  if (std::isnan(value)) return 0;
  return static_cast<std::int32_t>(std::clamp(std::nearbyint(value), lowest, highest));
}

std::string float_text(float value) {
  if (value == 0 || !std::isfinite(value)) return "0";
  // Scientific form of the value with all digits first: d.dddddde+xx.
  std::array<char, 32> buffer{};
  const auto [end, error] = std::to_chars(buffer.data(), buffer.data() + buffer.size(), std::fabs(value),
                                          std::chars_format::scientific, significant_digits - 1);
  const std::string_view scientific(buffer.data(), static_cast<std::size_t>(end - buffer.data()));
  const std::size_t e = scientific.find('e');
  int exponent = 0;
  const std::size_t sign = e + 1;
  std::from_chars(scientific.data() + sign + 1, end, exponent);
  if (scientific[sign] == '-') exponent = -exponent;
  std::string digits = std::string(scientific.substr(0, 1)) + std::string(scientific.substr(2, e - 2));
  digits.erase(digits.find_last_not_of('0') + 1);

  const int count = static_cast<int>(digits.size());
  const int decimals = std::max(0, count - 1 - exponent);
  std::string text = value < 0 ? "-" : "";
  if (exponent < smallest_plain_exponent || exponent >= significant_digits || decimals > significant_digits) {
    text += digits.substr(0, 1);
    if (count > 1) text += "," + digits.substr(1);
    const std::string magnitude = std::to_string(std::abs(exponent));
    return text + (exponent < 0 ? "E-" : "E+") + (magnitude.size() < 2 ? "0" : "") + magnitude;
  }
  if (exponent < 0) return text + "0," + std::string(static_cast<std::size_t>(-exponent - 1), '0') + digits;
  const auto whole = static_cast<std::size_t>(exponent + 1);
  if (digits.size() <= whole) return text + digits + std::string(whole - digits.size(), '0');
  return text + digits.substr(0, whole) + "," + digits.substr(whole);
}

std::optional<double> number_value(std::string_view text) {
  text = trimmed(text);
  if (text.starts_with('+')) text.remove_prefix(1);
  std::string plain(text);
  std::replace(plain.begin(), plain.end(), ',', '.');
  // A point would split a list, and the names of infinities are no numbers here.
  if (text.find('.') != std::string_view::npos || text.find_first_not_of("0123456789,-+eE") != std::string_view::npos) {
    return std::nullopt;
  }
  double value = 0;
  const auto [end, error] = std::from_chars(plain.data(), plain.data() + plain.size(), value);
  if (error != std::errc{} || end != plain.data() + plain.size()) return std::nullopt;
  return value;
}

}  // namespace platform
