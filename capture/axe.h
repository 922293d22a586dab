// One axis of a stroke or patron on its way into the miniature box.
#pragma once

#include <cstdint>

#include "platform/number.h"

namespace Mod_dessin {

inline constexpr double diviseur_boite =
    16;                                   // the box is its twips / 16 units, whatever a pixel of the screen measures
inline constexpr int etendue_mince = 10;  // an extent below this is not stretched over the box

// The bounds of one axis. They start where a small screen begins and ends, so that what lies beyond 2000 or below 0 is
// measured from there.
struct Axe {
  std::int32_t minimum = 2000;
  std::int32_t maximum = 0;

  void take(double value) {
    if (value < minimum) minimum = platform::round_half_even(value);
    if (value > maximum) maximum = platform::round_half_even(value);
  }
  // The maximum of a thin axis is 1 itself, not minimum + 1: the axis collapses towards the box's edge.
  void close() {
    if (static_cast<double>(maximum) - minimum < etendue_mince) maximum = 1;
  }
  // `value` in units of a box of `extent` twips; 0 where the scale would be a division by zero.
  double scaled(double value, double extent) const {
    const double divisor = static_cast<double>(maximum) - minimum;
    return divisor == 0 ? 0 : (value - minimum) * (extent / diviseur_boite) / divisor;
  }
};

}  // namespace Mod_dessin
