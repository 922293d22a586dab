// The picture of a picture box: 32-bit pixels that stay until they are wiped.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

namespace platform {

// The picture of one character, in device pixels.
struct Glyph {
  // Place of the picture: from the pen position, and from the top of the line.
  int left = 0, top = 0;
  int width = 0, height = 0;
  double advance = 0;  // from this pen position to the next
  // How much of each pixel the character covers, 0 to 255, rows from the top.
  std::vector<std::uint8_t> coverage;
};

// Part of a canvas in logical pixels, right and bottom excluded.
struct RECT {
  std::int32_t left, top, right, bottom;
  bool operator==(const RECT&) const = default;
};

class Canvas {
 public:
  // A canvas of `width` by `height` logical pixels, of which `density` device pixels make one on each axis.
  Canvas(int width, int height, double density = 1.0);

  // Sizes in device pixels.
  int width() const { return width_; }
  int height() const { return height_; }
  double density() const { return density_; }
  // Rows from the top, each pixel 0xAARRGGBB; 0 where nothing has been drawn.
  const std::vector<std::uint32_t>& pixels() const { return pixels_; }
  std::uint32_t at(int x, int y) const;

  // Takes another density and forgets what was drawn.
  void set_density(double density);
  void clear();
  // A disc of `diameter` logical pixels centred on the logical pixel (x, y); what falls outside is dropped.
  // `colour` has red in the low byte.
  void dot(double x, double y, int diameter, std::int32_t colour);

  // The same picture with `colour` where nothing has been drawn.
  Canvas on_ground(std::int32_t colour) const;
  // A filled box between two corners, given as parts of the whole canvas from 0 to 1, both corner pixels included.
  void box(double x1, double y1, double x2, double y2, std::int32_t colour);

  // The colour of a logical pixel, red in the low byte; nothing where nothing has been drawn or outside.
  std::optional<std::int32_t> colour_at(int x, int y) const;
  // Takes the whole picture, 0xAARRGGBB in rows of `picture_width`, and stretches it over the canvas.
  void cover(const std::vector<std::uint32_t>& picture, int picture_width, int picture_height);
  // Stretches the part (0, 0, from_width, from_height) of another canvas over the part (0, 0, width, height) of this
  // one, all in logical pixels; what lies outside either canvas is left out.
  void stretch(const Canvas& from, int from_width, int from_height, int width, int height);
  // Moves what lies in `area` by logical pixels; what leaves the area is lost, what is uncovered stays as it was.
  void scroll(int dx, int dy, const RECT& area);
  // Lays a character over what is drawn, and over `ground` where nothing is. `pen_x` and `line_top` are device pixels;
  // what lies outside `clip` is left out.
  void print(const Glyph& glyph, int pen_x, int line_top, std::int32_t colour, std::int32_t ground, const RECT& clip);

  bool operator==(const Canvas&) const = default;

 private:
  struct Area {
    int left, top, right, bottom;  // device pixels within the canvas
  };
  Area device(const RECT& area) const;
  std::uint32_t& pixel(int x, int y) {
    return pixels_[static_cast<std::size_t>(y) * static_cast<std::size_t>(width_) + static_cast<std::size_t>(x)];
  }

  int logical_width_, logical_height_;
  double density_;
  int width_ = 0, height_ = 0;
  std::vector<std::uint32_t> pixels_;
};

}  // namespace platform
