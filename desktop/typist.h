// Typing a text that has been read into strokes.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "desktop/input_keyboard.h"
#include "platform/sendkeys.h"

namespace desktop {

class Typist {
 public:
  explicit Typist(Keyboard& keyboard) : keyboard_(keyboard) {}

  // Sends the strokes. Every key pressed here is released again, the locks stand as before, but for those whose keys
  // are among the strokes. A stroke that no key can be found for is left out.
  void type(const std::vector<platform::Stroke>& strokes);

 private:
  Symbol symbol_of(const platform::Stroke& stroke) const;
  std::size_t borrow_for(const std::vector<platform::Stroke>& strokes, std::size_t begin);
  void strike(const platform::Stroke& stroke);
  std::vector<std::uint8_t> modifier_codes(std::uint8_t real, std::uint8_t explicit_ones) const;
  void hold_only(const std::vector<std::uint8_t>& codes);
  void release_held_modifiers();
  void suspend_locks();
  void resume_locks();

  Keyboard& keyboard_;
  std::vector<std::uint8_t> held_;    // codes of modifiers that are down, in the order of their pressing
  std::uint8_t suspended_locks_ = 0;  // real modifiers
  int home_group_ = 0;                // in force outside the strokes
  int group_ = 0;                     // in force now
};

}  // namespace desktop
