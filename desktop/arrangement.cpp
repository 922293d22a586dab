#include "desktop/arrangement.h"

#include <algorithm>
#include <utility>

namespace desktop {

namespace {

// A window in its cell: as large as it, within the window's own limits, and back inside `work` if that is larger.
Area fit(const Area& cell, const Limits& limits, const Area& work) {
  // The least first: a window whose limits contradict each other is rather too large than unseen.
  const auto size = [](int wanted, int least, int most) { return std::max({std::min(wanted, most), least, 1}); };
  Area window = cell;
  window.width = size(cell.width, limits.least_width, limits.most_width);
  window.height = size(cell.height, limits.least_height, limits.most_height);
  window.x = std::max(work.x, std::min(window.x, work.right() - window.width));
  window.y = std::max(work.y, std::min(window.y, work.bottom() - window.height));
  return window;
}

// Where part `number` of `length` begins when it is divided into `parts`.
int division(int length, int parts, int number) {
  return static_cast<int>(static_cast<long long>(length) * number / parts);
}

// How many bands (rows of a horizontal tiling) there are: one for each window up to three of them.
int bands_for(int windows) {
  int root = 1;
  while ((root + 1) * (root + 1) <= windows) ++root;
  return windows / root;
}

// Cells in bands across an area: bands are laid along its height, the cells of one along its width.
std::vector<Area> cells_in_rows(const Area& work, int count) {
  std::vector<Area> cells;
  const int rows = count > 0 ? bands_for(count) : 0;
  for (int row = 0; row < rows; ++row) {
    const int columns = count / rows + (row >= rows - count % rows ? 1 : 0);
    const int top = division(work.height, rows, row);
    const int bottom = division(work.height, rows, row + 1);
    for (int column = 0; column < columns; ++column) {
      const int left = division(work.width, columns, column);
      const int right = division(work.width, columns, column + 1);
      cells.push_back({work.x + left, work.y + top, right - left, bottom - top});
    }
  }
  return cells;
}

Area transposed(const Area& area) {
  return {area.y, area.x, area.height, area.width};
}

}  // namespace

std::vector<Area> cascade(const Area& work, const std::vector<Limits>& windows, int step) {
  // The steps take up to a third of the area; the rest is the size of a window.
  constexpr int share = 3;
  const int steps = std::max(1, std::min(work.width, work.height) / (share * std::max(1, step)));
  std::vector<Area> places;
  for (const Limits& limits : windows) {
    const int offset = static_cast<int>(places.size()) % (steps + 1) * step;
    const Area cell{work.x + offset, work.y + offset, work.width - steps * step, work.height - steps * step};
    places.push_back(fit(cell, limits, work));
  }
  return places;
}

std::vector<Area> tile_horizontally(const Area& work, const std::vector<Limits>& windows) {
  std::vector<Area> places = cells_in_rows(work, static_cast<int>(windows.size()));
  for (std::size_t i = 0; i < places.size(); ++i) places[i] = fit(places[i], windows[i], work);
  return places;
}

std::vector<Area> tile_vertically(const Area& work, const std::vector<Limits>& windows) {
  std::vector<Area> places = cells_in_rows(transposed(work), static_cast<int>(windows.size()));
  for (std::size_t i = 0; i < places.size(); ++i) places[i] = fit(transposed(places[i]), windows[i], work);
  return places;
}

Area common(const Area& one, const Area& other) {
  const int x = std::max(one.x, other.x);
  const int y = std::max(one.y, other.y);
  return {x, y, std::max(0, std::min(one.right(), other.right()) - x),
          std::max(0, std::min(one.bottom(), other.bottom()) - y)};
}

Area without_struts(const Area& monitor, const Area& screen, const std::vector<Strut>& struts) {
  constexpr int least = 100;  // pixels; what leaves less was meant for another monitor, or is a mistake
  Area rest = monitor;
  for (const Strut& strut : struts) {
    const bool upright = strut.edge == Strut::Edge::left || strut.edge == Strut::Edge::right;
    const int from = std::max(strut.start, upright ? monitor.y : monitor.x);
    const int to = std::min(strut.end, (upright ? monitor.bottom() : monitor.right()) - 1);
    if (strut.depth <= 0 || from > to) continue;
    int left = rest.x, top = rest.y, right = rest.right(), bottom = rest.bottom();
    switch (strut.edge) {
      case Strut::Edge::left:
        left = std::max(left, screen.x + strut.depth);
        break;
      case Strut::Edge::right:
        right = std::min(right, screen.right() - strut.depth);
        break;
      case Strut::Edge::top:
        top = std::max(top, screen.y + strut.depth);
        break;
      case Strut::Edge::bottom:
        bottom = std::min(bottom, screen.bottom() - strut.depth);
        break;
    }
    if (right - left >= least && bottom - top >= least) rest = {left, top, right - left, bottom - top};
  }
  return rest;
}

}  // namespace desktop
