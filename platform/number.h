// Numbers as the profile writes them and as the arithmetic rounds them.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace platform {

// To nearest, a half to the even neighbour; beyond the range of the result, its nearest end.
std::int32_t round_half_even(double value);

// The text of a 32-bit float under a French locale: at most 7 significant digits, "," as mark, no closing zeros. Plain
// digits where at most 7 stand before or behind the mark and the value is 0,0001 or more; else one digit before the
// mark and an exponent of at least two digits, as in "1E-05" and "4,266667E-02". These are the rules by which Basic
// turns a Single into a String.
std::string float_text(float value);

// The number that a text spells, "," as mark, an exponent allowed, blanks around it dropped; nothing where it is none.
std::optional<double> number_value(std::string_view text);

}  // namespace platform
