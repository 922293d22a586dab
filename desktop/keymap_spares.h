// Key codes that the layout leaves free, borrowed for symbols that it lacks.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "desktop/input_connection.h"
#include "desktop/keymap.h"

namespace desktop {

class SpareKeys {
 public:
  explicit SpareKeys(InputConnection& connection) : connection_(connection) {}
  // Gives every borrowed code back.
  ~SpareKeys();
  SpareKeys(const SpareKeys&) = delete;
  SpareKeys& operator=(const SpareKeys&) = delete;

  // Takes note of the layout that is now in force. A code that it uses itself is no longer ours.
  void adopt(const Keymap& keymap);
  // How many symbols can be had at one time.
  std::size_t capacity() const { return slots_.size(); }
  bool borrowed(std::uint8_t code) const;
  // The symbol that has to be borrowed for another to be there: of a letter that has two cases the small one, which
  // brings the capital along on its Shift level.
  static Symbol to_borrow(Symbol symbol);
  // Sees to it that these symbols (as to_borrow gives them), at most capacity(), have a code; the ones used longest ago
  // make way. All that a text needs belongs into one call: clients take a while to follow, which is waited for. Gives
  // whether the key map has changed.
  bool assign(const std::vector<Symbol>& symbols);
  // Keys have been sent: their codes must not change meaning before the window has taken them up.
  void note_typing() { typed_ = std::chrono::steady_clock::now(); }

 private:
  struct Slot {
    std::uint8_t code;
    Symbol symbol = no_symbol;  // no_symbol: free
    std::uint64_t used = 0;     // the higher, the later
  };
  // Writes the symbols of some slots, in the order of their codes, to the server.
  void write(const std::vector<const Slot*>& slots);
  void settle_if_typed();

  InputConnection& connection_;
  std::vector<Slot> slots_;  // in the order of codes
  std::uint64_t uses_ = 0;
  std::chrono::steady_clock::time_point typed_{};
};

}  // namespace desktop
