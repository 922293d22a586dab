// Paints the main window in one colour on black.
#pragma once

#include <cstdint>

#include "forms/sk.h"
#include "model/theme.h"

// Gives every control of the main form `Color`, by kind: frames, texts and lines take it as their colour, the strips of
// the About panel as their ground. Then repaints the two gradient bars in the channels of the theme colour, which a
// white theme turns black on the way.
void coloriser(SK& sk, Theme& theme, std::int32_t& Color);
