// The marks that show where the pointer is. They stay until it moves over a surface that takes them off.
#pragma once

#include "forms/sk.h"

namespace ui {

// Takes the fill off the buttons `first` to `last`.
inline void effacer_marques(SK& sk, int first, int last) {
  for (int index = first; index <= last; ++index) sk.Shape3(index).BackStyle = platform::transparent;
}

// Takes the frames off the two commands.
inline void effacer_cadres(SK& sk) {
  sk.Shape(0).Visible = false;
  sk.Shape(2).Visible = false;
}

}  // namespace ui
