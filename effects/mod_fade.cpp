#include "effects/mod_fade.h"

#include <cmath>

namespace Mod_fade {

namespace {

constexpr int bands = 256;
constexpr float units = 512;  // the logical surface on both axes, 2 for each band
constexpr std::int32_t white = 0xFFFFFF;

struct Ramp {
  bool red, green, blue, vertical, horizontal, reverse;
};

void paint(platform::PictureBox& box, const Ramp& ramp) {
  for (std::int16_t i = 0; i < bands; ++i) {
    const std::int32_t v = ramp.reverse ? bands - 1 - i : i;
    const std::int32_t colour = (ramp.red ? v : 0) | (ramp.green ? v << 8 : 0) | (ramp.blue ? v << 16 : 0);
    const double start = 2.0 * i;
    if (ramp.vertical) box.Box(0, start, box.ScaleWidth(), start + 2, colour);
    if (ramp.horizontal) box.Box(start, 0, start + 2, box.ScaleHeight(), colour);
  }
}

void fondu(platform::Control& Obj, const Ramp& ramp) {
  if (Obj.kind() != platform::Kind::picture_box) return;
  auto& box = static_cast<platform::PictureBox&>(Obj);
  const bool redraw = box.AutoRedraw;
  const int draw_width = box.DrawWidth;
  const int draw_style = box.DrawStyle;
  const int draw_mode = box.DrawMode;
  const float scale_width = box.ScaleWidth();
  const float scale_height = box.ScaleHeight();
  const int scale_mode = box.ScaleMode;

  box.AutoRedraw = true;
  box.DrawWidth = 1;
  box.DrawStyle = platform::draw_inside_solid;
  box.DrawMode = platform::copy_pen;
  box.ScaleMode = platform::scale_pixels;
  box.ScaleWidth(units);
  box.ScaleHeight(units);
  paint(box, ramp);

  box.AutoRedraw = redraw;
  box.DrawWidth = draw_width;
  box.DrawStyle = draw_style;
  box.DrawMode = draw_mode;
  box.ScaleMode = scale_mode;
  box.ScaleWidth(scale_width);
  box.ScaleHeight(scale_height);
}

}  // namespace

void separer_rvb(std::int32_t Color, std::int32_t& r, std::int32_t& g, std::int32_t& b) {
  b = static_cast<std::int32_t>(std::floor(Color / 65536.0));
  g = static_cast<std::int32_t>(std::floor((Color - b * 65536.0) / 256.0));
  r = Color - b * 65536 - g * 256;
}

void fondu_rvb(platform::Control& Obj, std::optional<bool> Red, std::optional<bool> Green, std::optional<bool> Blue,
               std::optional<bool> Vertical, std::optional<bool> Horizontal, std::optional<bool> Reverse) {
  Ramp ramp{};
  ramp.red = Red.value_or(false);
  ramp.blue = Blue.value_or(false);
  ramp.green = Green.value_or(false);
  if (!ramp.red && !ramp.green) ramp.blue = true;
  ramp.vertical = Vertical.value_or(false);
  ramp.horizontal = Horizontal.value_or(!ramp.vertical);
  if (!ramp.vertical && !ramp.horizontal) ramp.horizontal = true;
  ramp.reverse = Reverse.value_or(true);
  fondu(Obj, ramp);
}

void fondu_couleur(platform::Control& Obj, std::int32_t& Color, bool Vertical, bool Horizontal,
                   std::optional<bool> Reverse) {
  const bool reverse = Reverse.value_or(true);
  std::int32_t r = 0;
  std::int32_t g = 0;
  std::int32_t b = 0;
  separer_rvb(Color, r, g, b);
  if (Color >= white) Color = 0;
  fondu(Obj, {r != 0, g != 0, b != 0, Vertical, Horizontal, reverse});
}

}  // namespace Mod_fade
