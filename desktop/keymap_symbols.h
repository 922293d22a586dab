// Names of keys: the virtual key codes of the program, the symbols of the X protocol, and the characters they type.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <vector>

namespace desktop {

// A keysym: Latin-1 as it is, 0x1000000 + the code point for any character, and older numbers for many of those.
using Symbol = std::uint32_t;
inline constexpr Symbol no_symbol = 0;

// The symbols that a virtual key may bear, the one to be sent first; of a letter the small one. Empty for a code that
// no key has.
std::vector<Symbol> symbols_of_key(std::uint8_t key);

// The symbol that every program takes for a character.
Symbol symbol_of_character(char32_t character);
// The character that a symbol types, 0 for one that types none. Keys of the number pad count as typing none.
char32_t character_of_symbol(Symbol symbol);

}  // namespace desktop
