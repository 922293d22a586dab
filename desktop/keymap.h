// Where things stand on the keyboard layout that is in force.
#pragma once

#include <X11/XKBlib.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <unordered_map>
#include <vector>

#include "desktop/input_connection.h"
#include "desktop/keymap_symbols.h"

namespace desktop {

// How to strike something: the key, the group that must be in force, and the real modifiers (bits as in the state of
// an X key event) that choose the level.
struct KeyPlace {
  std::uint8_t code;
  std::uint8_t group;
  std::uint8_t modifiers;
};

class Keymap {
 public:
  Keymap() = default;
  // Reads the layout from the server.
  explicit Keymap(const InputConnection& connection);

  // A place of a symbol, or of the character that any of several symbols types: on `group` if it is there, with as few
  // modifiers as can be.
  std::optional<KeyPlace> find(Symbol symbol, int group) const;
  std::optional<KeyPlace> find_character(char32_t character, int group) const;
  // Every key that bears a symbol on some level.
  std::vector<std::uint8_t> codes(Symbol symbol) const;
  // What a key bears on its first level; no_symbol if it bears nothing at all.
  Symbol symbol_on(std::uint8_t code) const { return first_symbols_[code]; }
  // Keys that bear nothing and mean nothing.
  std::vector<std::uint8_t> spare_codes() const;

  // The key that holds one real modifier (its number, Shift being 0); 0 where there is none.
  std::uint8_t modifier_key(std::size_t number) const { return modifier_keys_[number]; }
  bool is_modifier(std::uint8_t code) const { return real_modifiers_[code] != 0; }
  // The real modifiers that a lock key (XK_Num_Lock...) locks; 0 where the layout gives it none.
  std::uint8_t lock_modifiers(Symbol lock) const;

 private:
  using Places = std::unordered_multimap<std::uint32_t, KeyPlace>;
  static std::optional<KeyPlace> best(const Places& places, std::uint32_t what, int group);
  void read_modifiers(XkbDescPtr description);
  void read_key(XkbDescPtr description, unsigned code, int groups);

  Places by_symbol_, by_character_;
  std::array<std::uint8_t, 8> modifier_keys_{};
  std::array<std::uint8_t, 256> real_modifiers_{};
  std::array<Symbol, 256> first_symbols_{};
  std::uint8_t first_code_ = 8, last_code_ = 0;
};

}  // namespace desktop
