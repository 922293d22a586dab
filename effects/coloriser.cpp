#include "effects/coloriser.h"

#include "effects/mod_fade.h"

void coloriser(SK& sk, Theme& theme, std::int32_t& Color) {
  for (platform::Control* control : sk.Controls) {
    if (control->Name == "PicSplash") {
      *control->back_colour() = Color;
      continue;
    }
    for (auto* property : {control->dialog_colour(), control->fore_colour(), control->border_colour()}) {
      if (property != nullptr) *property = Color;
    }
  }
  for (platform::PictureBox* bar : {&sk.Pictitre, &sk.PicRes}) {
    Mod_fade::fondu_couleur(*bar, theme.couleur_theme, true, false, false);
  }
}
