#include "platform/sendkeys.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <string>

#include "platform/text.h"

namespace platform {
namespace {

constexpr std::uint8_t key_tab = 0x09;
constexpr std::uint8_t key_enter = 0x0D;
constexpr std::uint8_t key_shift = 0x10;
constexpr std::uint8_t key_control = 0x11;
constexpr std::uint8_t key_alt = 0x12;
constexpr std::uint8_t key_f1 = 0x70;
constexpr std::uint32_t function_keys = 16;

struct NamedKey {
  std::string_view name;
  std::uint8_t key;
};

constexpr std::array<NamedKey, 30> named_keys{{
    {"BACKSPACE", 0x08}, {"BKSP", 0x08},     {"BS", 0x08},       {"TAB", key_tab},  {"CLEAR", 0x0C},
    {"ENTER", 0x0D},     {"BREAK", 0x03},    {"CAPSLOCK", 0x14}, {"ESCAPE", 0x1B},  {"ESC", 0x1B},
    {"PGUP", 0x21},      {"PGDN", 0x22},     {"END", 0x23},      {"HOME", 0x24},    {"LEFT", 0x25},
    {"UP", 0x26},        {"RIGHT", 0x27},    {"DOWN", 0x28},     {"PRTSC", 0x2C},   {"INSERT", 0x2D},
    {"INS", 0x2D},       {"DELETE", 0x2E},   {"DEL", 0x2E},      {"HELP", 0x2F},    {"MULTIPLY", 0x6A},
    {"ADD", 0x6B},       {"SUBTRACT", 0x6D}, {"DIVIDE", 0x6F},   {"NUMLOCK", 0x90}, {"SCROLLLOCK", 0x91},
}};

// The whole of `digits` as a number; nothing where it is empty, holds anything else or does not fit.
std::optional<std::uint32_t> whole_number(std::string_view digits, int base) {
  std::uint32_t number = 0;
  const char* const end = digits.data() + digits.size();
  const auto [stop, error] = std::from_chars(digits.data(), end, number, base);
  if (error != std::errc() || stop != end) return std::nullopt;
  return number;
}

// The stroke, still without modifiers, that types a character; nothing for a control character without a key.
std::optional<Stroke> stroke_of_character(char32_t character) {
  if (character == '\t') return Stroke{.key = key_tab};
  if (character == '\r' || character == '\n') return Stroke{.key = key_enter};
  const bool control = character < 0x20 || (character >= 0x7F && character < 0xA0);
  const bool surrogate = character >= 0xD800 && character < 0xE000;
  if (control || surrogate || character > 0x10FFFF) return std::nullopt;
  return Stroke{.character = character};
}

// The stroke of a key of more than one letter.
std::optional<Stroke> stroke_of_name(std::string_view given) {
  std::string name(given);
  std::transform(name.begin(), name.end(), name.begin(),
                 [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; });
  const auto* const known = std::find_if(named_keys.begin(), named_keys.end(), [&](auto& k) { return k.name == name; });
  if (known != named_keys.end()) return Stroke{.key = known->key};
  if (name.starts_with("U+") && name.size() <= 8) {
    const auto code_point = whole_number(std::string_view(name).substr(2), 16);
    return code_point ? stroke_of_character(*code_point) : std::nullopt;
  }
  if (name.front() == 'F' && name[1] != '0') {
    const auto number = whole_number(std::string_view(name).substr(1), 10);
    if (number && *number <= function_keys) return Stroke{.key = static_cast<std::uint8_t>(key_f1 + *number - 1)};
  }
  return std::nullopt;
}

class Parser {
 public:
  explicit Parser(std::string_view text) : text_(text) {}

  std::optional<std::vector<Stroke>> parse() {
    while (position_ < text_.size()) {
      if (!item()) return std::nullopt;
    }
    if (!outer_.empty() || !strike_pending_modifiers()) return std::nullopt;
    return std::move(strokes_);
  }

 private:
  // Reads one character or form at `position_`. False: invalid.
  bool item() {
    const char32_t character = next_code_point(text_, position_);
    switch (character) {
      case '+':
        pending_ |= modifier_shift;
        return true;
      case '^':
        pending_ |= modifier_control;
        return true;
      case '%':
        pending_ |= modifier_alt;
        return true;
      case '(':
        outer_.push_back(held_);
        held_ |= pending_;
        pending_ = 0;
        return true;
      case ')':
        return close_group();
      case '{':
        return braces();
      case '~':
        return strike(Stroke{.key = key_enter}, 1);
      case '\r':
        if (text_.substr(position_).starts_with('\n')) ++position_;
        return strike(Stroke{.key = key_enter}, 1);
      default: {
        const auto stroke = stroke_of_character(character);
        return stroke && strike(*stroke, 1);
      }
    }
  }

  bool close_group() {
    if (outer_.empty() || !strike_pending_modifiers()) return false;
    held_ = outer_.back();
    outer_.pop_back();
    if (!strokes_.empty()) strokes_.back().kept &= held_;
    return true;
  }

  // What follows an opening brace. Its first character belongs to the key even if it is a brace or a blank.
  bool braces() {
    if (position_ >= text_.size()) return false;
    const std::size_t start = position_;
    const char32_t first = next_code_point(text_, position_);
    const std::size_t close = text_.find('}', position_);
    if (close == std::string_view::npos) return false;
    const std::size_t blank = std::min(text_.find(' ', position_), close);
    const auto stroke =
        blank == position_ ? stroke_of_character(first) : stroke_of_name(text_.substr(start, blank - start));
    std::optional<std::uint32_t> count = 1;
    if (blank < close) {
      const std::size_t digits = std::min(text_.find_first_not_of(' ', blank), close);
      count = whole_number(text_.substr(digits, close - digits), 10);
    }
    position_ = close + 1;
    return stroke && count && *count > 0 && strike(*stroke, *count);
  }

  // Modifiers with no key behind them: the keys themselves go down and up.
  bool strike_pending_modifiers() {
    struct Modifier {
      std::uint8_t bit, key;
    };
    for (const auto [bit, key] : {Modifier{modifier_alt, key_alt}, Modifier{modifier_control, key_control},
                                  Modifier{modifier_shift, key_shift}}) {
      if ((pending_ & ~held_ & bit) == 0) continue;
      pending_ &= static_cast<std::uint8_t>(~bit);
      return strike(Stroke{.key = key}, 1);
    }
    pending_ = 0;
    return true;
  }

  bool strike(Stroke stroke, std::uint32_t count) {
    if (count > send_keys_limit - strokes_.size()) return false;
    stroke.modifiers = held_ | pending_;
    stroke.kept = stroke.modifiers;
    strokes_.insert(strokes_.end(), count, stroke);
    strokes_.back().kept = held_;
    pending_ = 0;
    return true;
  }

  std::string_view text_;
  std::size_t position_ = 0;
  std::uint8_t held_ = 0;            // modifiers of the groups that are open
  std::uint8_t pending_ = 0;         // modifiers of the next key or group
  std::vector<std::uint8_t> outer_;  // `held_` outside each open group
  std::vector<Stroke> strokes_;
};

}  // namespace

std::optional<std::vector<Stroke>> parse_send_keys(std::string_view text) {
  return Parser(text).parse();
}

}  // namespace platform
