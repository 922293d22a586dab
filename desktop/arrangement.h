// Where windows go when they are arranged: rectangles in, rectangles out. All rectangles of windows count their frames.
#pragma once

#include <climits>
#include <vector>

#include "desktop/area.h"

namespace desktop {

// The sizes that a window takes.
struct Limits {
  int least_width = 1, least_height = 1;
  int most_width = INT_MAX, most_height = INT_MAX;
};

// One behind the other from the left top corner of `work` on, `step` pixels apart, the hindmost first; what finds no
// more room begins again at the corner. Each gives a rectangle for each of `windows`, in their order.
std::vector<Area> cascade(const Area& work, const std::vector<Limits>& windows, int step);
// Fill `work` without a gap: up to three windows stand one above the other, or side by side; more stand in a grid whose
// rows (columns) differ by one window at most, the last ones being the fuller. A window that cannot be as small as its
// cell overlaps others rather than leave `work`; one that cannot be as large leaves the rest of its cell bare.
std::vector<Area> tile_horizontally(const Area& work, const std::vector<Limits>& windows);
std::vector<Area> tile_vertically(const Area& work, const std::vector<Limits>& windows);

// What a panel keeps free: `depth` pixels from an edge of the screen, from `start` to `end` along that edge, both of
// them counted in.
struct Strut {
  enum class Edge { left, right, top, bottom };
  Edge edge;
  int depth, start, end;
};

// What struts leave of a monitor. `screen` is the whole of which the monitor is a part; a strut that would leave next
// to nothing is passed over.
Area without_struts(const Area& monitor, const Area& screen, const std::vector<Strut>& struts);
// What two areas share; empty (no width or no height) where they share nothing.
Area common(const Area& one, const Area& other);

}  // namespace desktop
