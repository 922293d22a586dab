#include "platform/text.h"

#include <array>
#include <charconv>
#include <cstdint>
#include <optional>

namespace platform {

namespace {

// Code page 1252, bytes 0x80 to 0x9F: the rest of it is Latin-1. The open bytes stand for themselves.
constexpr std::array<char32_t, 32> cp1252_high = {0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                                  0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F,
                                                  0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                                  0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

std::optional<char> cp1252_byte(char32_t code_point) {
  if (code_point < 0x80 || (code_point >= 0xA0 && code_point <= 0xFF)) return static_cast<char>(code_point);
  for (std::size_t i = 0; i < cp1252_high.size(); ++i) {
    if (cp1252_high[i] == code_point) return static_cast<char>(0x80 + i);
  }
  return std::nullopt;
}

constexpr std::string_view escape_start = "{U+";

std::string from_code_point(char32_t code_point) {
  std::string utf8;
  append_code_point(utf8, code_point);
  return utf8;
}

// The character of an escape at the start of `bytes`, where it names one that the code page lacks.
std::optional<char32_t> escaped(std::string_view bytes, std::size_t& length) {
  const std::size_t end = bytes.find('}');
  if (end == std::string_view::npos || end < escape_start.size() + 4 || end > escape_start.size() + 6) return {};
  std::uint32_t value = 0;
  const char* const first = bytes.data() + escape_start.size();
  const auto [stop, error] = std::from_chars(first, bytes.data() + end, value, 16);
  if (error != std::errc{} || stop != bytes.data() + end || value > 0x10FFFF || cp1252_byte(value)) return {};
  if (value >= 0xD800 && value <= 0xDFFF) return {};
  // Only as it is written: another spelling of the same number stays as it stands.
  if (to_cp1252(from_code_point(value)) != bytes.substr(0, end + 1)) return {};
  length = end + 1;
  return static_cast<char32_t>(value);
}

// Lower and upper case differ by 32 in Latin-1; the letters of 0x80 to 0x9F are the pairs named here.
char32_t upper(char32_t c) {
  if ((c >= U'a' && c <= U'z') || (c >= 0xE0 && c <= 0xFE && c != 0xF7)) return c - 32;
  switch (c) {
    case 0xFF:
      return 0x178;  // ÿ
    case 0x153:
      return 0x152;  // œ
    case 0x161:
      return 0x160;  // š
    case 0x17E:
      return 0x17D;  // ž
    default:
      return c;
  }
}

}  // namespace

char32_t next_code_point(std::string_view utf8, std::size_t& position) {
  const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(utf8[i]); };
  const unsigned char lead = byte(position);
  int more = 0;
  char32_t value = lead;
  char32_t smallest = 0;
  if (lead >= 0xF0 && lead <= 0xF4) {
    more = 3, value = lead & 7U, smallest = 0x10000;
  } else if (lead >= 0xE0 && lead < 0xF0) {
    more = 2, value = lead & 15U, smallest = 0x800;
  } else if (lead >= 0xC2 && lead < 0xE0) {
    more = 1, value = lead & 31U, smallest = 0x80;
  }
  std::size_t end = position + 1;
  for (; more > 0 && end < utf8.size() && (byte(end) & 0xC0U) == 0x80; --more, ++end) {
    value = value << 6 | (byte(end) & 63U);
  }
  const bool sound = more == 0 && value >= smallest && value <= 0x10FFFF && !(value >= 0xD800 && value <= 0xDFFF);
  if (!sound) {
    ++position;
    return lead;
  }
  position = end;
  return value;
}

void append_code_point(std::string& utf8, char32_t c) {
  const auto put = [&](char32_t bits) { utf8.push_back(static_cast<char>(bits)); };
  if (c < 0x80) {
    put(c);
  } else if (c < 0x800) {
    put(0xC0U | c >> 6);
    put(0x80U | (c & 63U));
  } else if (c < 0x10000) {
    put(0xE0U | c >> 12);
    put(0x80U | (c >> 6 & 63U));
    put(0x80U | (c & 63U));
  } else {
    put(0xF0U | c >> 18);
    put(0x80U | (c >> 12 & 63U));
    put(0x80U | (c >> 6 & 63U));
    put(0x80U | (c & 63U));
  }
}

std::string from_cp1252(std::string_view bytes) {
  std::string utf8;
  utf8.reserve(bytes.size());
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    std::size_t length = 0;
    if (bytes.substr(i).starts_with(escape_start)) {
      if (const auto code_point = escaped(bytes.substr(i), length)) {
        append_code_point(utf8, *code_point);
        i += length - 1;
        continue;
      }
    }
    const auto byte = static_cast<unsigned char>(bytes[i]);
    append_code_point(utf8, byte >= 0x80 && byte < 0xA0 ? cp1252_high[byte - 0x80U] : byte);
  }
  return utf8;
}

std::string to_cp1252(std::string_view utf8) {
  std::string bytes;
  bytes.reserve(utf8.size());
  for (std::size_t i = 0; i < utf8.size();) {
    const char32_t code_point = next_code_point(utf8, i);
    if (const auto byte = cp1252_byte(code_point)) {
      bytes.push_back(*byte);
      continue;
    }
    std::array<char, 8> digits{};
    const auto [end, error] =
        std::to_chars(digits.data(), digits.data() + digits.size(), static_cast<std::uint32_t>(code_point), 16);
    std::string hexadecimal(digits.data(), end);
    for (char& c : hexadecimal) c = static_cast<char>(c >= 'a' ? c - 32 : c);
    bytes.append(escape_start).append(hexadecimal.size() < 4 ? 4 - hexadecimal.size() : 0, '0');
    bytes.append(hexadecimal).push_back('}');
  }
  return bytes;
}

bool fits_cp1252(std::string_view utf8) {
  for (std::size_t i = 0; i < utf8.size();) {
    if (!cp1252_byte(next_code_point(utf8, i))) return false;
  }
  return true;
}

std::string upper_case(std::string_view utf8) {
  std::string result;
  result.reserve(utf8.size());
  for (std::size_t i = 0; i < utf8.size();) append_code_point(result, upper(next_code_point(utf8, i)));
  return result;
}

bool equal_ignoring_case(std::string_view a, std::string_view b) {
  std::size_t i = 0;
  std::size_t j = 0;
  while (i < a.size() && j < b.size()) {
    if (upper(next_code_point(a, i)) != upper(next_code_point(b, j))) return false;
  }
  return i == a.size() && j == b.size();
}

std::string_view trimmed(std::string_view text) {
  const std::size_t first = text.find_first_not_of(" \t");
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

}  // namespace platform
