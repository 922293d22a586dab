// Drawing on picture boxes beyond dots and boxes: pixels, stretched copies, scrolling, text. Lengths are pixels of the
// design screen unless a function says otherwise.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "platform/services.h"

namespace platform {

inline constexpr std::int32_t DT_CENTER = 1;

void SetRect(RECT& rect, std::int32_t left, std::int32_t top, std::int32_t right, std::int32_t bottom);
void OffsetRect(RECT& rect, std::int32_t dx, std::int32_t dy);

// The colour of a pixel of the box, its BackColor where nothing has been drawn or outside.
std::int32_t GetPixel(const PictureBox& box, int x, int y);

// Stretches the part (0, 0, from_width, from_height) of one box over the part (0, 0, width, height) of another. What
// lies outside either box is left out.
void StretchBlt(PictureBox& box, int width, int height, const PictureBox& from, int from_width, int from_height);

// Moves what lies in `area`; what leaves it is lost, and what is uncovered stays as it was.
void ScrollDC(PictureBox& box, int dx, int dy, const RECT& area);

// Draws one line of text in the box's font and ForeColor from the top of `rect`, at its left or, with DT_CENTER, in its
// middle. What lies outside the rectangle is cut off.
void DrawTextA(Fonts& fonts, PictureBox& box, std::string_view text, const RECT& rect, std::int32_t format);

// The height of a line in the box's font, in the units of the box's scale.
float TextHeight(Fonts& fonts, const PictureBox& box);

// Prints texts on one line from (CurrentX, CurrentY), the first there and each further one at the next print zone, and
// goes to the start of the next line. A zone is 14 average characters wide.
void Print(Fonts& fonts, PictureBox& box, const std::vector<std::string_view>& texts);

}  // namespace platform
