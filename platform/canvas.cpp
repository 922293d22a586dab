#include "platform/canvas.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>

namespace platform {

namespace {

// From red in the low byte to 0xAARRGGBB.
std::uint32_t opaque_pixel(std::int32_t colour) {
  const auto channels = static_cast<std::uint32_t>(colour);
  return 0xFF000000U | (channels & 0xFFU) << 16 | (channels & 0xFF00U) | (channels >> 16 & 0xFFU);
}

// `ink` laid over `under` by `covered` parts of 255, so that doing it again changes nothing: text that is drawn anew on
// the same place does not grow fat.
std::uint32_t mixed(std::uint32_t under, std::uint32_t ink, std::uint32_t covered) {
  std::uint32_t result = 0xFF000000U;
  for (const unsigned shift : {0U, 8U, 16U}) {
    const std::uint32_t before = under >> shift & 0xFFU;
    const std::uint32_t wanted = ink >> shift & 0xFFU;
    const std::uint32_t channel = wanted >= before ? std::max(before, wanted * covered / 255)
                                                   : std::min(before, 255 - (255 - wanted) * covered / 255);
    result |= channel << shift;
  }
  return result;
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
  // The far corner takes in the whole of its logical pixel.
  const auto last_of = [&](double part, int size, int logical) {
    const double edge = std::floor(std::clamp(part, -1.0, 2.0) * logical) + 1;
    return std::max(pixel_of(part, size), static_cast<int>(std::lround(edge * density_)) - 1);
  };
  const int left = std::max(0, pixel_of(std::min(x1, x2), width_));
  const int right = std::min(width_ - 1, last_of(std::max(x1, x2), width_, logical_width_));
  const int top = std::max(0, pixel_of(std::min(y1, y2), height_));
  const int bottom = std::min(height_ - 1, last_of(std::max(y1, y2), height_, logical_height_));
  if (right < left) return;
  for (int row = top; row <= bottom; ++row) {
    const auto start = pixels_.begin() + static_cast<std::ptrdiff_t>(row) * width_;
    std::fill(start + left, start + right + 1, opaque_pixel(colour));
  }
}

std::optional<std::int32_t> Canvas::colour_at(int x, int y) const {
  const auto device_pixel = [&](int logical) { return static_cast<int>(std::floor((logical + 0.5) * density_)); };
  const std::uint32_t found = x < 0 || y < 0 ? 0 : at(device_pixel(x), device_pixel(y));
  if (found == 0) return std::nullopt;
  return static_cast<std::int32_t>((found >> 16 & 0xFFU) | (found & 0xFF00U) | (found & 0xFFU) << 16);
}

void Canvas::cover(const std::vector<std::uint32_t>& picture, int picture_width, int picture_height) {
  if (picture_width <= 0 || picture_height <= 0) return;
  for (int y = 0; y < height_; ++y) {
    const int from_y = static_cast<int>(static_cast<std::int64_t>(y) * picture_height / height_);
    for (int x = 0; x < width_; ++x) {
      const int from_x = static_cast<int>(static_cast<std::int64_t>(x) * picture_width / width_);
      pixel(x, y) = picture[static_cast<std::size_t>(from_y) * static_cast<std::size_t>(picture_width) +
                            static_cast<std::size_t>(from_x)];
    }
  }
}

void Canvas::stretch(const Canvas& from, int from_width, int from_height, int width, int height) {
  if (width <= 0 || height <= 0) return;
  const double across = from_width * from.density_ / (width * density_);
  const double down = from_height * from.density_ / (height * density_);
  const Area covered = device({0, 0, width, height});
  for (int y = 0; y < covered.bottom; ++y) {
    const int from_y = static_cast<int>((y + 0.5) * down);
    if (from_y >= from.height_) break;
    for (int x = 0; x < covered.right; ++x) {
      const int from_x = static_cast<int>((x + 0.5) * across);
      if (from_x >= from.width_) break;
      pixel(x, y) = from.at(from_x, from_y);
    }
  }
}

Canvas::Area Canvas::device(const RECT& area) const {
  const auto edge = [&](std::int32_t logical, int size) {
    return static_cast<int>(std::clamp<double>(std::round(logical * density_), 0, size));
  };
  return {edge(area.left, width_), edge(area.top, height_), edge(area.right, width_), edge(area.bottom, height_)};
}

void Canvas::scroll(int dx, int dy, const RECT& area) {
  const Area inside = device(area);
  const int right = static_cast<int>(std::lround(dx * density_));
  const int down = static_cast<int>(std::lround(dy * density_));
  const int width = inside.right - inside.left - std::abs(right);
  const int height = inside.bottom - inside.top - std::abs(down);
  if (width <= 0 || height <= 0) return;
  const int from_x = inside.left + std::max(0, -right);
  const int from_y = inside.top + std::max(0, -down);
  for (int n = 0; n < height; ++n) {
    // From the side towards which everything moves, so that no row is overwritten before it has been moved.
    const int y = from_y + (down > 0 ? height - 1 - n : n);
    std::memmove(&pixel(from_x + right, y + down), &pixel(from_x, y),
                 static_cast<std::size_t>(width) * sizeof(std::uint32_t));
  }
}

void Canvas::print(const Glyph& glyph, int pen_x, int line_top, std::int32_t colour, std::int32_t ground,
                   const RECT& clip) {
  const Area inside = device(clip);
  const int left = pen_x + glyph.left;
  const int top = line_top + glyph.top;
  const std::uint32_t ink = opaque_pixel(colour);
  const std::uint32_t bare = opaque_pixel(ground);
  for (int y = std::max(top, inside.top); y < std::min(top + glyph.height, inside.bottom); ++y) {
    const std::uint8_t* const row =
        glyph.coverage.data() + static_cast<std::size_t>(y - top) * static_cast<std::size_t>(glyph.width);
    for (int x = std::max(left, inside.left); x < std::min(left + glyph.width, inside.right); ++x) {
      const std::uint32_t covered = row[x - left];
      if (covered == 0) continue;
      std::uint32_t& under = pixel(x, y);
      under = covered == 255 ? ink : mixed(under != 0 ? under : bare, ink, covered);
    }
  }
}

Canvas Canvas::on_ground(std::int32_t colour) const {
  Canvas whole = *this;
  std::replace(whole.pixels_.begin(), whole.pixels_.end(), 0U, opaque_pixel(colour));
  return whole;
}

}  // namespace platform
