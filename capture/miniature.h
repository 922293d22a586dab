// The miniature: a stroke drawn as a cloud of dots, and the normalised form that everything else works on.
#pragma once

#include "model/dessin.h"
#include "platform/controls.h"

namespace Mod_dessin {

// Draws the stroke, in screen pixels, on both boxes, and rewrites it in the units of PicIco's box: each axis moved to
// its minimum and scaled by itself to Width / 16 and Height / 16. An axis of extent below 10 pixels collapses instead;
// where its scale would be a division by zero its coordinates are 0. Slots from dessin_nb upward are not touched.
void dessiner_miniature(Dessin& dessin, platform::PictureBox& PicIco, platform::PictureBox& PicRef);

}  // namespace Mod_dessin
