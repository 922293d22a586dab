#include "platform/drawing.h"

#include <cmath>

#include "platform/text.h"

namespace platform {

namespace {

constexpr int zone_characters = 14;
constexpr char32_t average_character = U'x';

// How many pixels one unit of the box's scale is, on each axis.
double pixels_per_unit(float twips, float units) {
  return twips / twips_per_pixel / static_cast<double>(units);
}

RECT whole(const PictureBox& box) {
  return {0, 0, static_cast<std::int32_t>(std::ceil(box.Width / twips_per_pixel)),
          static_cast<std::int32_t>(std::ceil(box.Height / twips_per_pixel))};
}

// Device pixels that `text` takes from pen to pen.
double text_width(Fonts& fonts, const PictureBox& box, std::string_view text) {
  double width = 0;
  for (std::size_t at = 0; at < text.size();) {
    width += fonts.glyph(box.Font, box.canvas.density(), next_code_point(text, at)).advance;
  }
  return width;
}

// Draws from a pen position in device pixels and gives the position behind the text.
double draw(Fonts& fonts, PictureBox& box, std::string_view text, double pen, double top, const RECT& clip) {
  for (std::size_t at = 0; at < text.size();) {
    const Glyph& glyph = fonts.glyph(box.Font, box.canvas.density(), next_code_point(text, at));
    box.canvas.print(glyph, static_cast<int>(std::lround(pen)), static_cast<int>(std::lround(top)), box.ForeColor,
                     box.BackColor, clip);
    pen += glyph.advance;
  }
  return pen;
}

}  // namespace

void SetRect(RECT& rect, std::int32_t left, std::int32_t top, std::int32_t right, std::int32_t bottom) {
  rect = {left, top, right, bottom};
}

void OffsetRect(RECT& rect, std::int32_t dx, std::int32_t dy) {
  rect = {rect.left + dx, rect.top + dy, rect.right + dx, rect.bottom + dy};
}

std::int32_t GetPixel(const PictureBox& box, int x, int y) {
  return box.canvas.colour_at(x, y).value_or(box.BackColor);
}

void StretchBlt(PictureBox& box, int width, int height, const PictureBox& from, int from_width, int from_height) {
  box.canvas.stretch(from.canvas, from_width, from_height, width, height);
  box.changed();
}

void ScrollDC(PictureBox& box, int dx, int dy, const RECT& area) {
  box.canvas.scroll(dx, dy, area);
  box.changed();
}

void DrawTextA(Fonts& fonts, PictureBox& box, std::string_view text, const RECT& rect, std::int32_t format) {
  const double density = box.canvas.density();
  double pen = rect.left * density;
  if (format == DT_CENTER) pen += ((rect.right - rect.left) * density - text_width(fonts, box, text)) / 2;
  draw(fonts, box, text, pen, rect.top * density, rect);
  box.changed();
}

float TextHeight(Fonts& fonts, const PictureBox& box) {
  return static_cast<float>(fonts.line_height(box.Font) / pixels_per_unit(box.Height, box.ScaleHeight()));
}

void Print(Fonts& fonts, PictureBox& box, const std::vector<std::string_view>& texts) {
  const double density = box.canvas.density();
  const double start = box.CurrentX * pixels_per_unit(box.Width, box.ScaleWidth()) * density;
  const double top = box.CurrentY * pixels_per_unit(box.Height, box.ScaleHeight()) * density;
  const double zone = zone_characters * fonts.glyph(box.Font, density, average_character).advance;
  double pen = start;
  for (std::size_t n = 0; n < texts.size(); ++n) {
    if (n > 0) pen = (std::floor(pen / zone) + 1) * zone;
    pen = draw(fonts, box, texts[n], pen, top, whole(box));
  }
  box.CurrentX = 0;
  box.CurrentY += TextHeight(fonts, box);
  box.changed();
}

}  // namespace platform
