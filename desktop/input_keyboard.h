// The keyboard of the X server as injected keys see it: its layout, its state, and the sending of keys.
#pragma once

#include <X11/Xlib.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "desktop/input_connection.h"
#include "desktop/keymap.h"
#include "desktop/keymap_spares.h"

namespace desktop {

class Keyboard {
 public:
  explicit Keyboard(std::unique_ptr<InputConnection> connection)
      : connection_(std::move(connection)), spares_(*connection_) {}

  InputConnection& connection() { return *connection_; }
  Display* display() { return connection_->display(); }
  SpareKeys& spares() { return spares_; }
  const Keymap& keymap() const { return keymap_; }

  // Reads the layout if it has changed. To be called before anything is looked up.
  void refresh();
  // Makes symbols that the layout lacks available, at most spares().capacity() of them.
  void borrow(const std::vector<Symbol>& symbols);
  // The place of a symbol or, where it types a character, of any symbol that types it.
  std::optional<KeyPlace> find(Symbol symbol, int group) const;

  // The group in force.
  int group();
  void lock_group(int group);
  // Keys that are down, by code.
  std::vector<std::uint8_t> keys_down();
  // Puts one key event into the server's queue with the next flush.
  void send(std::uint8_t code, bool down);

 private:
  std::unique_ptr<InputConnection> connection_;
  Keymap keymap_;
  SpareKeys spares_;
};

}  // namespace desktop
