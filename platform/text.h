// Text on its way between the program, which holds UTF-8, and a profile in code page 1252.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace platform {

// The code point that starts at `position`, which is moved behind it. A byte that is not valid UTF-8 is taken as the
// Latin-1 character of that value, so that nothing is dropped.
char32_t next_code_point(std::string_view utf8, std::size_t& position);
void append_code_point(std::string& utf8, char32_t code_point);

// Every byte has a character: the five that code page 1252 leaves open stand for the control characters of that number.
std::string from_cp1252(std::string_view bytes);
// A character that the code page lacks is written as its number in braces, "{U+6F22}", the form in which the key
// notation takes it too (platform/sendkeys.h); from_cp1252 turns just those back.
std::string to_cp1252(std::string_view utf8);
bool fits_cp1252(std::string_view utf8);

// Upper case of the letters that code page 1252 holds; everything else stays as it is.
std::string upper_case(std::string_view utf8);
// Compares without regard to the case of those letters.
bool equal_ignoring_case(std::string_view a, std::string_view b);

// Without the blanks and tabs at both ends.
std::string_view trimmed(std::string_view text);

}  // namespace platform
