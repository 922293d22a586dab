// A rectangle of the screen.
#pragma once

namespace desktop {

// Screen pixels.
struct Area {
  int x = 0, y = 0, width = 0, height = 0;

  int right() const { return x + width; }  // the first column and row that are no longer part of it
  int bottom() const { return y + height; }
  bool operator==(const Area&) const = default;
};

}  // namespace desktop
