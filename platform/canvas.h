// The picture of a picture box: 32-bit pixels that stay until they are wiped.
#pragma once

#include <cstdint>
#include <vector>

namespace platform {

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

  bool operator==(const Canvas&) const = default;

 private:
  int logical_width_, logical_height_;
  double density_;
  int width_ = 0, height_ = 0;
  std::vector<std::uint32_t> pixels_;
};

}  // namespace platform
