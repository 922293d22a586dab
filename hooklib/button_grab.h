// Who has the right button. One instance at a time: the owner of a selection; the others wait until it goes.
#pragma once

#include "hooklib/display.h"

namespace hooklib {

class ButtonGrab {
 public:
  // The button that draws.
  static constexpr std::uint8_t button = 3;

  // `display` must outlive this. Takes the ownership if it is free, but not yet the button.
  explicit ButtonGrab(Display& display);

  // Whether presses are to be held back for us. Without the ownership that takes effect when it falls to us.
  void want(bool wanted);
  // To be called when a window of another client was destroyed: that may have been the owner.
  void window_destroyed(xcb_window_t window);

 private:
  void claim();
  void apply();

  Display& display_;
  bool owned_ = false;
  bool wanted_ = false;
  bool grabbed_ = false;
  xcb_window_t other_owner_ = 0;
};

}  // namespace hooklib
