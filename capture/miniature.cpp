#include "capture/miniature.h"

#include <cstddef>

#include "capture/axe.h"

namespace Mod_dessin {

void dessiner_miniature(Dessin& dessin, platform::PictureBox& PicIco, platform::PictureBox& PicRef) {
  PicIco.Cls();
  PicRef.Cls();
  Axe x;
  Axe y;
  const auto count = static_cast<std::size_t>(dessin.dessin_nb);
  for (std::size_t k = 0; k < count; ++k) {
    x.take(dessin.dessin_x[k]);
    y.take(dessin.dessin_y[k]);
  }
  x.close();
  y.close();
  for (std::size_t k = 0; k < count; ++k) {
    const bool last = k + 1 == count;
    PicIco.DrawWidth = last ? 3 : 1;
    PicRef.DrawWidth = last ? 5 : 3;
    const double raw_x = dessin.dessin_x[k];
    const double raw_y = dessin.dessin_y[k];
    const double mini_x = x.scaled(raw_x, PicIco.Width);
    const double mini_y = y.scaled(raw_y, PicIco.Height);
    PicIco.PSet(mini_x, mini_y);
    PicRef.PSet(x.scaled(raw_x, PicRef.Width), y.scaled(raw_y, PicRef.Height));
    dessin.dessin_x[k] = static_cast<float>(mini_x);
    dessin.dessin_y[k] = static_cast<float>(mini_y);
  }
}

}  // namespace Mod_dessin
