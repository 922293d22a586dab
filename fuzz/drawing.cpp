// Any drawing stays within its canvas, at any density. Text that is laid on the same place again changes nothing, and a
// ramp leaves the settings of its box as they were.
#include <cmath>
#include <limits>
#include <utility>

#include "effects/mod_fade.h"
#include "forms/sk.h"
#include "fuzz/input.h"
#include "platform/drawing.h"
#include "platform/number.h"

namespace {

class Drawing {
 public:
  explicit Drawing(Input& input) : input_(input) {}

  void on(platform::PictureBox& box, const platform::Canvas& from) {
    platform::Canvas& canvas = box.canvas;
    const int x = number(), y = number(), width = number(), height = number();
    const std::int32_t colour = input_.number<std::int32_t>();
    switch (input_.number<std::uint8_t>() % 8) {
      case 0:
        box.DrawWidth = x & 7;
        return box.PSet(input_.number<double>(), y, colour);
      case 1:
        return box.Box(x, y, width, height, colour);
      case 2:
        return canvas.stretch(from, width, height, x, y);
      case 3:
        return platform::ScrollDC(box, number(), number(), {x, y, width, height});
      case 4:
        return lay(canvas, {x, y, width, height}, colour);
      case 5: {
        const std::vector<std::uint32_t> picture(
            static_cast<std::size_t>(std::max(width, 0)) * static_cast<std::size_t>(std::max(height, 0)), 0xFF123456U);
        return canvas.cover(picture, width, height);
      }
      case 6:
        promise(!canvas.colour_at(x, y) || (x >= 0 && y >= 0));
        return;
      default:
        // Some hundred boxes each: one says it all.
        if (!std::exchange(ramped_, true)) ramp(box, static_cast<unsigned>(colour));
    }
  }

 private:
  int number() { return input_.number<std::int8_t>(); }

  void lay(platform::Canvas& canvas, const platform::RECT& clip, std::int32_t colour) {
    platform::Glyph glyph{number() % 10, number() % 10, 5, 4, 6, {}};
    for (int n = 0; n < glyph.width * glyph.height; ++n) glyph.coverage.push_back(input_.number<std::uint8_t>());
    const int pen = number(), top = number();
    canvas.print(glyph, pen, top, colour, 0xABCDEF, clip);
    const platform::Canvas once = canvas;
    canvas.print(glyph, pen, top, colour, 0xABCDEF, clip);
    promise(canvas == once);
  }

  static void ramp(platform::PictureBox& box, unsigned flags) {
    const auto flag = [&](unsigned bit) -> std::optional<bool> {
      if ((flags >> (bit + 8) & 1U) != 0) return std::nullopt;
      return (flags >> bit & 1U) != 0;
    };
    const auto settings = [&] {
      return std::tuple(box.AutoRedraw, box.DrawWidth, box.DrawStyle, box.DrawMode, box.ScaleMode.get(),
                        box.ScaleWidth(), box.ScaleHeight());
    };
    const auto before = settings();
    Mod_fade::fondu_rvb(box, flag(0), flag(1), flag(2), flag(3), flag(4), flag(5));
    promise(settings() == before);
  }

  Input& input_;
  bool ramped_ = false;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Input input(data, size);
  static SK sk;
  platform::PictureBox& box = sk.PicIco;
  box.canvas.set_density(1 + input.number<std::uint8_t>() % 9 / 4.0);
  const int width = box.canvas.width(), height = box.canvas.height();
  platform::Canvas from(input.number<std::int8_t>(), input.number<std::int8_t>(), 1.5);
  from.dot(3, 3, 30, 0xFF00FF);
  Drawing drawing(input);
  while (!input.empty()) drawing.on(box, from);
  promise(box.canvas.width() == width && box.canvas.height() == height);
  promise(box.canvas.pixels().size() == static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
  return 0;
}
