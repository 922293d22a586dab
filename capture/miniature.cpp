#include "capture/miniature.h"

#include <cstddef>

#include "capture/nuage.h"

namespace Mod_dessin {

void dessiner_miniature(Dessin& dessin, platform::PictureBox& PicIco, platform::PictureBox& PicRef) {
  PicIco.Cls();
  PicRef.Cls();
  const auto count = static_cast<std::size_t>(dessin.dessin_nb);
  const Nuage nuage(facon_dessin, dessin.dessin_x, dessin.dessin_y, count);
  for (std::size_t k = 0; k < count; ++k) {
    nuage.set_width(PicIco, k);
    PicRef.DrawWidth = k + 1 == count ? 5 : 3;
    const double raw_x = dessin.dessin_x[k];
    const double raw_y = dessin.dessin_y[k];
    const double mini_x = nuage.x(raw_x, PicIco.Width);
    const double mini_y = nuage.y(raw_y, PicIco.Height);
    PicIco.PSet(mini_x, mini_y);
    PicRef.PSet(nuage.x(raw_x, PicRef.Width), nuage.y(raw_y, PicRef.Height));
    dessin.dessin_x[k] = static_cast<float>(mini_x);
    dessin.dessin_y[k] = static_cast<float>(mini_y);
  }
}

}  // namespace Mod_dessin
