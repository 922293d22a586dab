// Which key codes are Ctrl and Escape.
#pragma once

#include <cstdint>
#include <vector>

#include "hooklib/display.h"

namespace hooklib {

class Keyboard {
 public:
  // `display` must outlive this.
  explicit Keyboard(Display& display);

  // To be called when the server says that the mapping (of modifiers, or of key symbols) has changed.
  void mapping_changed(std::uint8_t request);

  bool is_control(std::uint32_t code) const;
  bool is_escape(std::uint32_t code) const;
  // Whether any Ctrl key is down now, as the server sees it.
  bool control_is_down() const;

 private:
  void read_modifiers();
  void read_symbols();

  Display& display_;
  std::vector<std::uint32_t> control_codes_;
  std::vector<std::uint32_t> escape_codes_;
};

}  // namespace hooklib
