// The cloud of dots into which a stroke or a patron is drawn: what the three painters share, and how they differ.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "platform/controls.h"
#include "platform/number.h"

namespace Mod_dessin {

// How one painter fills a picture box.
struct Facon {
  double diviseur_boite;  // the box is its twips over this many units, whatever a pixel of the screen measures
  bool emprunte;  // a flat axis borrows the extent of the other; else a thin one collapses towards the box's edge
  bool arrondi;   // offset and place are rounded to whole numbers, one after the other
};
inline constexpr Facon facon_dessin{16, false, false};    // a stroke, in the miniature box and the larger one
inline constexpr Facon facon_vignette{16, false, false};  // a patron's thumbnail
inline constexpr Facon facon_apercu{15, true, true};      // the patron that was picked

class Nuage {
 public:
  // The first `count` values of `xs` and `ys` are the points.
  template <class Values>
  Nuage(const Facon& facon, const Values& xs, const Values& ys, std::size_t count) : facon_(facon), count_(count) {
    for (std::size_t k = 0; k < count; ++k) {
      x_.take(xs[k]);
      y_.take(ys[k]);
    }
    close();
  }

  // Where a point's X falls in a box `width` twips wide, in the box's pixels, and likewise its Y. 0 where the scale
  // would be a division by zero.
  double x(double value, double width) const { return placed(x_, value, width); }
  double y(double value, double height) const { return placed(y_, value, height); }
  // Sets the width of dot `k` where the end of the stroke is to show: the last dot is 3 wide, the others 1.
  void set_width(platform::PictureBox& box, std::size_t k) const { box.DrawWidth = k + 1 == count_ ? 3 : 1; }

 private:
  // The bounds of one axis. They start where a small screen begins and ends, so that what lies beyond 2000 or below 0
  // is measured from there.
  struct Axe {
    std::int32_t minimum = 2000;
    std::int32_t maximum = 0;
    void take(double value) {
      if (value < minimum) minimum = platform::round_half_even(value);
      if (value > maximum) maximum = platform::round_half_even(value);
    }
    double extent() const { return static_cast<double>(maximum) - minimum; }
  };

  void close() {
    constexpr int etendue_mince = 10;  // an extent below this is not stretched over the box
    if (facon_.emprunte) {
      if (x_.minimum == x_.maximum) x_.maximum = y_.maximum - y_.minimum;
      if (y_.minimum == y_.maximum) y_.maximum = x_.maximum - x_.minimum;
      return;
    }
    // The maximum of a thin axis is 1 itself, not minimum + 1.
    for (Axe* axe : {&x_, &y_}) {
      if (axe->extent() < etendue_mince) axe->maximum = 1;
    }
  }

  double placed(const Axe& axe, double value, double twips) const {
    const double divisor = axe.extent();
    const double box = twips / facon_.diviseur_boite;
    if (divisor == 0) return 0;
    if (!facon_.arrondi) return (value - axe.minimum) * box / divisor;
    return platform::round_half_even(box * platform::round_half_even(value - axe.minimum) / divisor);
  }

  Facon facon_;
  std::size_t count_;
  Axe x_, y_;
};

}  // namespace Mod_dessin
