#include "platform/canvas.h"

#include <algorithm>
#include <cmath>

namespace platform {

namespace {

// From red in the low byte to 0xAARRGGBB.
std::uint32_t opaque_pixel(std::int32_t colour) {
  const auto channels = static_cast<std::uint32_t>(colour);
  return 0xFF000000U | (channels & 0xFFU) << 16 | (channels & 0xFF00U) | (channels >> 16 & 0xFFU);
}

}  // namespace

Canvas::Canvas(int width, int height, double density)
    : logical_width_(std::max(width, 0)), logical_height_(std::max(height, 0)), density_(density) {
  set_density(density);
}

std::uint32_t Canvas::at(int x, int y) const {
  if (x < 0 || y < 0 || x >= width_ || y >= height_) return 0;
  return pixels_[static_cast<std::size_t>(y) * static_cast<std::size_t>(width_) + static_cast<std::size_t>(x)];
}

void Canvas::set_density(double density) {
  density_ = density;
  width_ = static_cast<int>(std::lround(logical_width_ * density));
  height_ = static_cast<int>(std::lround(logical_height_ * density));
  pixels_.assign(static_cast<std::size_t>(width_) * static_cast<std::size_t>(height_), 0);
}

void Canvas::clear() {
  std::fill(pixels_.begin(), pixels_.end(), 0);
}

void Canvas::dot(double x, double y, int diameter, std::int32_t colour) {
  // The logical pixel (x, y) covers [x, x + 1): its middle is the middle of the disc. Points far outside are dropped
  // before anything is converted to an integer.
  const double centre_x = (std::nearbyint(x) + 0.5) * density_;
  const double centre_y = (std::nearbyint(y) + 0.5) * density_;
  const double radius = diameter * density_ / 2;
  if (!(centre_x > -radius && centre_x < width_ + radius && centre_y > -radius && centre_y < height_ + radius)) return;

  const std::uint32_t pixel = opaque_pixel(colour);
  const int top = std::max(0, static_cast<int>(std::floor(centre_y - radius)));
  const int bottom = std::min(height_ - 1, static_cast<int>(std::ceil(centre_y + radius)));
  const int left = std::max(0, static_cast<int>(std::floor(centre_x - radius)));
  const int right = std::min(width_ - 1, static_cast<int>(std::ceil(centre_x + radius)));
  for (int row = top; row <= bottom; ++row) {
    for (int column = left; column <= right; ++column) {
      const double dx = column + 0.5 - centre_x;
      const double dy = row + 0.5 - centre_y;
      if (dx * dx + dy * dy > radius * radius) continue;
      pixels_[static_cast<std::size_t>(row) * static_cast<std::size_t>(width_) + static_cast<std::size_t>(column)] =
          pixel;
    }
  }
}

void Canvas::box(double x1, double y1, double x2, double y2, std::int32_t colour) {
  const auto pixel_of = [](double part, int size) {
    return static_cast<int>(std::floor(std::clamp(part, -1.0, 2.0) * size));
  };
  const int left = std::max(0, pixel_of(std::min(x1, x2), width_));
  const int right = std::min(width_ - 1, pixel_of(std::max(x1, x2), width_));
  const int top = std::max(0, pixel_of(std::min(y1, y2), height_));
  const int bottom = std::min(height_ - 1, pixel_of(std::max(y1, y2), height_));
  if (right < left) return;
  for (int row = top; row <= bottom; ++row) {
    const auto start = pixels_.begin() + static_cast<std::ptrdiff_t>(row) * width_;
    std::fill(start + left, start + right + 1, opaque_pixel(colour));
  }
}

Canvas Canvas::on_ground(std::int32_t colour) const {
  Canvas whole = *this;
  std::replace(whole.pixels_.begin(), whole.pixels_.end(), 0U, opaque_pixel(colour));
  return whole;
}

}  // namespace platform
