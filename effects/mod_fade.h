// A ramp of 256 colour bands over a picture box.
#pragma once

#include <cstdint>
#include <optional>

#include "platform/controls.h"

namespace Mod_fade {

// Red, green and blue of a colour, each rounded down.
void separer_rvb(std::int32_t Color, std::int32_t& r, std::int32_t& g, std::int32_t& b);

// Paints a ramp in the channels that are set; blue where neither red nor green is. What is left out: no colour, not
// vertical, horizontal where not vertical, reversed. Vertical changes from top to bottom, from dark to bright unless
// reversed. The box keeps its settings; a control that is no picture box is left alone.
void fondu_rvb(platform::Control& Obj, std::optional<bool> Red = {}, std::optional<bool> Green = {},
               std::optional<bool> Blue = {}, std::optional<bool> Vertical = {}, std::optional<bool> Horizontal = {},
               std::optional<bool> Reverse = {});

// The same in the channels of a colour that are not 0, whatever their size. White, or more, paints all three channels
// and leaves 0 in `Color`.
void fondu_couleur(platform::Control& Obj, std::int32_t& Color, bool Vertical, bool Horizontal,
                   std::optional<bool> Reverse = {});

}  // namespace Mod_fade
