// The About panel: the program's picture as a mosaic of letters in shades of green.
#pragma once

#include <cstdint>

#include "forms/sk.h"
#include "platform/services.h"

class Mod_Matrix {
 public:
  Mod_Matrix(platform::Services& services, SK& sk) : services_(services), sk_(sk) {}

  // Draws one frame: for each cell of 5 by 5 pixels of PicTmp a random letter on Pictxt, in the green of the pixel at
  // the cell's corner, or of its negative while Check1 is set. Every 13 frames the polarity changes. Ends with a yield.
  void dessiner_mosaique();

 private:
  char lettre();

  platform::Services& services_;
  SK& sk_;
  std::int16_t compteur_sens_ = 0;  // frames since the polarity last changed
  // State of the generator, which nothing seeds: each run shows the same letters.
  std::uint32_t hasard_ = 0x50000;
};
