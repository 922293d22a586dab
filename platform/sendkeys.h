// The notation of SendKeys, read into key strokes. The text is UTF-8; see next_code_point for what is not.
//
//   abc É 漢       each character types itself
//   + ^ %          Shift, Ctrl, Alt held for the next key or group: +a, ^c, %{F4}, ^+{END}. With nothing behind it (at
//                  the end of the text or of a group) the modifier key itself is struck
//   ( )            a group: +(EC) holds Shift for E and C alike. Groups may be nested: +(a^(bc)d)
//   ~              Enter, as are CR LF, LF and CR; the character TAB is the Tab key
//   [ ]            type themselves, within braces and without
//   {NAME}         a named key, in either case: BACKSPACE BKSP BS, BREAK, CAPSLOCK, CLEAR, DELETE DEL, DOWN, END,
//                  ENTER, ESC ESCAPE, HELP, HOME, INSERT INS, LEFT, NUMLOCK, PGDN, PGUP, PRTSC, RIGHT, SCROLLLOCK,
//                  TAB, UP, F1 to F16, and of the number pad ADD, SUBTRACT, MULTIPLY, DIVIDE
//   {x}            the character x, also where it has a meaning of its own: {+} {^} {%} {~} {(} {)} {{} {}} {[} {]}
//   {U+6F22}       the character of that code point, 1 to 6 hexadecimal digits, for texts kept in a narrower code page
//   {key n}        key, in any of the three forms above, n times: {LEFT 42}, {h 10}. n is decimal and at least 1
//
// Invalid, and then nothing of the text is typed: an unknown name, a count that is none, a brace or parenthesis without
// its partner, a control character other than the above, more than send_keys_limit strokes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace platform {

// Bits of Stroke::modifiers.
inline constexpr std::uint8_t modifier_shift = 1;
inline constexpr std::uint8_t modifier_control = 2;
inline constexpr std::uint8_t modifier_alt = 4;

// One key going down and up.
struct Stroke {
  char32_t character = 0;      // what it types; 0 where `key` says which key it is
  std::uint8_t key = 0;        // virtual key code; 0 where it is a character
  std::uint8_t modifiers = 0;  // held while it goes down and up
  std::uint8_t kept = 0;       // those of `modifiers` that stay down until the next stroke: both are of one group
  bool operator==(const Stroke&) const = default;
};

// Most strokes that one text may ask for: "{A 999999999}" is a slip of the finger, not a wish.
inline constexpr std::size_t send_keys_limit = 100'000;

// The strokes of `text` in their order; nothing where the notation is invalid.
std::optional<std::vector<Stroke>> parse_send_keys(std::string_view text);

}  // namespace platform
