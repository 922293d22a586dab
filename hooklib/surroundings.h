// What a drawing needs to know of the screen it is made on. It is asked for at each press, so that nothing has to be
// kept in step while nobody draws.
#pragma once

#include <xcb/xcb.h>

#include <cstdint>
#include <string_view>

#include "hooklib/display.h"

namespace hooklib {

struct Surroundings {
  double density = 1;           // dpi / 96
  xcb_window_t compositor = 0;  // of the manager that blends windows; 0 if there is none
  std::uint16_t width = 0;      // of the whole screen, pixels
  std::uint16_t height = 0;
};

// The density that the desktop's resources ("name:\tvalue" lines) set by Xft.dpi; 1 without, or if it makes no sense.
double density_of(std::string_view resources);

// The question and its answer, apart, so that nothing waits in between. Every question is to be answered.
class SurroundingsQuestion {
 public:
  explicit SurroundingsQuestion(Display& display);
  Surroundings answer();

 private:
  Display& display_;
  xcb_get_property_cookie_t resources_;
  xcb_get_selection_owner_cookie_t compositor_;
  xcb_get_geometry_cookie_t geometry_;
};

}  // namespace hooklib
