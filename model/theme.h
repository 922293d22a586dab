// The colour in which the main window is drawn. It lives only as long as the run.
#pragma once

#include <cstdint>

inline constexpr std::int32_t couleur_depart = 65280;  // pure green, red in the low byte

struct Theme {
  std::int32_t couleur_theme = couleur_depart;
};
