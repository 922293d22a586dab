// The stroke on the screen while it is drawn. It takes no input, and nothing of it stays.
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <map>
#include <utility>
#include <vector>

#include "hooklib/display.h"
#include "hooklib/surroundings.h"

namespace hooklib {

// A point of the trail in screen pixels.
struct TrailPoint {
  double x;
  double y;
  bool operator==(const TrailPoint&) const = default;
};

// The pixels whose centres lie within `radius` of the line from `a` to `b`, as few rectangles as rows allow.
std::vector<xcb_rectangle_t> capsule(TrailPoint a, TrailPoint b, double radius);

class Trail {
 public:
  // `display` must outlive this.
  explicit Trail(Display& display);

  // Starts a trail at this point; nothing is shown yet.
  void begin(const Surroundings& surroundings, TrailPoint start);
  // Draws on to these points.
  void extend(const std::vector<TrailPoint>& points);
  // The screen has another size from now on.
  void resize(std::uint16_t width, std::uint16_t height);
  // A window of somebody's is gone. Without its compositing manager the trail goes on opaque, and what was drawn is
  // taken off: unblended, it would be black all around.
  void window_gone(xcb_window_t window);
  // Takes it off the screen.
  void end();

 private:
  // A square of the screen, counted from its upper left corner: across, down.
  using Tile = std::pair<int, int>;

  void extend_blended(const std::vector<TrailPoint>& points);
  void extend_shaped(const std::vector<TrailPoint>& points);
  xcb_window_t open_tile(Tile place);
  void open_shaped();
  xcb_window_t open_window(const xcb_rectangle_t& place, std::uint8_t depth, xcb_visualid_t visual, std::uint32_t mask,
                           const std::uint32_t* values);
  void clear_shape(xcb_window_t window, std::uint8_t kind);
  void end_blended();
  void watch_compositor(std::uint32_t events);

  Display& display_;
  xcb_visualid_t blended_visual_ = 0;  // 0 if the screen has none
  xcb_colormap_t blended_colours_ = 0;
  std::uint32_t opaque_colour_ = 0;  // the trail's colour on the root's visual
  Surroundings surroundings_;
  TrailPoint last_{};
  // Blended: a window for each tile that the trail has come to.
  std::map<Tile, xcb_window_t> tiles_;
  xcb_gcontext_t pen_ = 0;
  // Shaped.
  xcb_window_t window_ = 0;            // the one being drawn on; 0 if none is shown
  std::size_t segments_ = 0;           // on `window_`
  std::deque<xcb_window_t> finished_;  // windows that are full, the oldest first
};

}  // namespace hooklib
