#include "desktop/input_keyboard.h"

#include <X11/XKBlib.h>
#include <X11/extensions/XTest.h>

#include <array>

namespace desktop {

void Keyboard::refresh() {
  if (!connection_->take_map_changes()) return;
  keymap_ = Keymap(*connection_);
  spares_.adopt(keymap_);
}

void Keyboard::borrow(const std::vector<Symbol>& symbols) {
  if (!spares_.assign(symbols)) return;
  connection_->take_map_changes();
  keymap_ = Keymap(*connection_);
  spares_.adopt(keymap_);
}

std::optional<KeyPlace> Keyboard::find(Symbol symbol, int group) const {
  const char32_t character = character_of_symbol(symbol);
  return character != 0 ? keymap_.find_character(character, group) : keymap_.find(symbol, group);
}

int Keyboard::group() {
  XkbStateRec state{};
  XkbGetState(display(), XkbUseCoreKbd, &state);
  return state.group;
}

void Keyboard::lock_group(int group) {
  XkbStateRec state{};
  XkbGetState(display(), XkbUseCoreKbd, &state);
  XkbLockGroup(display(), XkbUseCoreKbd, static_cast<unsigned>(group - state.base_group - state.latched_group));
}

std::vector<std::uint8_t> Keyboard::keys_down() {
  std::array<char, 32> bits{};
  XQueryKeymap(display(), bits.data());
  std::vector<std::uint8_t> codes;
  for (std::size_t code = 0; code < bits.size() * 8; ++code) {
    if ((static_cast<unsigned char>(bits[code / 8]) >> (code % 8) & 1U) != 0) {
      codes.push_back(static_cast<std::uint8_t>(code));
    }
  }
  return codes;
}

void Keyboard::send(std::uint8_t code, bool down) {
  XTestFakeKeyEvent(display(), code, down ? True : False, CurrentTime);
  spares_.note_typing();
}

}  // namespace desktop
