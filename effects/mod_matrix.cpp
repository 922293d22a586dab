#include "effects/mod_matrix.h"

#include <string_view>

#include "platform/drawing.h"
#include "platform/number.h"

namespace {

constexpr std::string_view LETTRES = "ABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789";
constexpr int cellule_twips = 75;   // on the panel
constexpr int cellule_pixels = 5;   // on the picture
constexpr int vert_minimal = 50;    // of positive frames
constexpr int derniere_trame = 12;  // the polarity changes when the counter passes this

int cells(float twips) {
  return platform::round_half_even(static_cast<double>(twips) / cellule_twips);
}

}  // namespace

// Basic's Rnd: a linear congruential generator of 24 bits.
char Mod_Matrix::lettre() {
  constexpr std::uint32_t factor = 0x43FD43FD;
  constexpr std::uint32_t increment = 0xC39EC3;
  constexpr std::uint32_t modulus = 0x1000000;
  hasard_ = (hasard_ * factor + increment) % modulus;
  return LETTRES[static_cast<std::size_t>(static_cast<std::uint64_t>(hasard_) * LETTRES.size() / modulus)];
}

void Mod_Matrix::dessiner_mosaique() {
  platform::PictureBox& panel = sk_.Pictxt;
  {
    const platform::PictureBox::Hold at_once(panel);
    const int rows = cells(sk_.PicTmp.Height);
    for (int y = 0; y < rows; ++y) {
      const int columns = cells(sk_.PicTmp.Width);
      for (int x = 0; x < columns; ++x) {
        const std::int32_t sample = platform::GetPixel(sk_.PicTmp, x * cellule_pixels, y * cellule_pixels);
        int green = sample / 256 & 255;
        if (sk_.Check1.Value == 1) {
          green = 255 - green;
        } else if (green < vert_minimal) {
          green = vert_minimal;
        }
        panel.CurrentY = static_cast<float>(y * cellule_twips);
        panel.CurrentX = static_cast<float>(x * cellule_twips);
        panel.ForeColor = green * 256;
        const char letter = lettre();
        platform::Print(services_.fonts, panel, {std::string_view(&letter, 1)});
      }
    }
  }
  ++compteur_sens_;
  if (compteur_sens_ > derniere_trame) {
    compteur_sens_ = 0;
    sk_.Check1.Value = sk_.Check1.Value == 0 ? 1 : 0;
  }
  services_.events.DoEvents();
}
