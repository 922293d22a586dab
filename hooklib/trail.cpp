#include "hooklib/trail.h"

#include <xcb/shape.h>

#include <algorithm>
#include <cmath>
#include <utility>

namespace hooklib {
namespace {

// Pixels at 96 dpi.
constexpr double trail_width = 3.0;
constexpr std::uint16_t full_intensity = 0xffff;
constexpr std::uint32_t blended_colour = 0xff00ff00;  // opaque green, as a 32-bit visual holds it
constexpr std::uint8_t blended_depth = 32;
// The server's work for one more segment grows with the shape it is added to; a window gets no more than these.
constexpr std::size_t segments_per_window = 64;
// A trail longer than these can hold loses its beginning: somebody may scribble for an hour.
constexpr std::size_t windows_limit = 16;
// Side of the windows that are blended. What a new one costs, and its compositing manager with it, grows with its area.
constexpr int tile_side = 512;
// Points closer than this to the one before add nothing that can be seen. Pixels at 96 dpi.
constexpr double least_segment = 2.0;

struct Span {
  double low;
  double high;
  void include(double x) {
    low = std::min(low, x);
    high = std::max(high, x);
  }
};

// Where the circle of `radius` around `centre` cuts the row `y`.
void include_circle(Span& span, TrailPoint centre, double radius, double y) {
  const double half = radius * radius - (y - centre.y) * (y - centre.y);
  if (half < 0) return;
  span.include(centre.x - std::sqrt(half));
  span.include(centre.x + std::sqrt(half));
}

// Where the edge from `a` to `b` cuts the row `y`.
void include_edge(Span& span, TrailPoint a, TrailPoint b, double y) {
  if (a.y == b.y || y < std::min(a.y, b.y) || y > std::max(a.y, b.y)) return;
  span.include(a.x + (b.x - a.x) * (y - a.y) / (b.y - a.y));
}

std::int16_t coordinate(double value) {
  return static_cast<std::int16_t>(std::clamp(std::lround(value), -32768L, 32767L));
}

xcb_visualid_t visual_of_depth(const xcb_screen_t& screen, std::uint8_t wanted) {
  for (auto depth = xcb_screen_allowed_depths_iterator(&screen); depth.rem > 0; xcb_depth_next(&depth)) {
    if (depth.data->depth != wanted) continue;
    for (auto visual = xcb_depth_visuals_iterator(depth.data); visual.rem > 0; xcb_visualtype_next(&visual)) {
      if (visual.data->_class == XCB_VISUAL_CLASS_TRUE_COLOR) return visual.data->visual_id;
    }
  }
  return 0;
}

}  // namespace

std::vector<xcb_rectangle_t> capsule(TrailPoint a, TrailPoint b, double radius) {
  const double length = std::hypot(b.x - a.x, b.y - a.y);
  const TrailPoint side =
      length > 0 ? TrailPoint{-(b.y - a.y) / length * radius, (b.x - a.x) / length * radius} : TrailPoint{0, 0};
  std::vector<xcb_rectangle_t> rows;
  const auto bottom = static_cast<long>(std::floor(std::max(a.y, b.y) + radius));
  for (auto y = static_cast<long>(std::ceil(std::min(a.y, b.y) - radius)); y <= bottom; ++y) {
    const auto row = static_cast<double>(y);
    // A capsule is convex: the outermost crossings bound the row.
    Span span{HUGE_VAL, -HUGE_VAL};
    include_circle(span, a, radius, row);
    include_circle(span, b, radius, row);
    include_edge(span, {a.x + side.x, a.y + side.y}, {b.x + side.x, b.y + side.y}, row);
    include_edge(span, {a.x - side.x, a.y - side.y}, {b.x - side.x, b.y - side.y}, row);
    const double low = std::ceil(span.low);
    const double high = std::floor(span.high);
    if (low > high) continue;
    const std::int16_t x = coordinate(low);
    const auto width = static_cast<std::uint16_t>(high - low + 1);
    if (!rows.empty() && rows.back().x == x && rows.back().width == width && rows.back().y + rows.back().height == y) {
      ++rows.back().height;
    } else {
      rows.push_back({x, coordinate(row), width, 1});
    }
  }
  return rows;
}

Trail::Trail(Display& display) : display_(display) {
  xcb_connection_t* control = display_.control.get();
  const xcb_screen_t& screen = *display_.screen;
  const auto asked = xcb_alloc_color(control, screen.default_colormap, 0, full_intensity, 0);
  blended_visual_ = visual_of_depth(screen, blended_depth);
  if (blended_visual_ != 0) {
    blended_colours_ = xcb_generate_id(control);
    xcb_create_colormap(control, XCB_COLORMAP_ALLOC_NONE, blended_colours_, screen.root, blended_visual_);
  }
  const Held<xcb_alloc_color_reply_t> colour(xcb_alloc_color_reply(control, asked, nullptr));
  opaque_colour_ = colour ? colour->pixel : screen.white_pixel;
}

void Trail::begin(const Surroundings& surroundings, TrailPoint start) {
  surroundings_ = surroundings;
  if (blended_visual_ == 0) surroundings_.compositor = 0;
  last_ = start;
  watch_compositor(XCB_EVENT_MASK_STRUCTURE_NOTIFY);
}

void Trail::extend(const std::vector<TrailPoint>& points) {
  std::vector<TrailPoint> line{last_};
  for (const TrailPoint& point : points) {
    const TrailPoint& from = line.back();
    if (std::hypot(point.x - from.x, point.y - from.y) >= least_segment * surroundings_.density) line.push_back(point);
  }
  if (line.size() == 1) return;
  if (surroundings_.compositor != 0) {
    extend_blended(line);
  } else {
    extend_shaped(line);
  }
  last_ = line.back();
}

void Trail::extend_blended(const std::vector<TrailPoint>& points) {
  const double reach = trail_width * surroundings_.density;
  const auto tile_at = [](double place) { return static_cast<int>(std::floor(place / tile_side)); };
  const auto [left, right] = std::ranges::minmax(points, {}, &TrailPoint::x);
  const auto [top, bottom] = std::ranges::minmax(points, {}, &TrailPoint::y);
  std::vector<xcb_point_t> line(points.size());
  for (int across = tile_at(left.x - reach); across <= tile_at(right.x + reach); ++across) {
    for (int down = tile_at(top.y - reach); down <= tile_at(bottom.y + reach); ++down) {
      std::ranges::transform(points, line.begin(), [&](const TrailPoint& point) {
        return xcb_point_t{coordinate(point.x - across * tile_side), coordinate(point.y - down * tile_side)};
      });
      const xcb_window_t window = open_tile({across, down});
      xcb_poly_line(display_.control.get(), XCB_COORD_MODE_ORIGIN, window, pen_,
                    static_cast<std::uint32_t>(line.size()), line.data());
    }
  }
}

// One request for all that is new on a window: each makes the server work out anew what can be seen of all windows.
void Trail::extend_shaped(const std::vector<TrailPoint>& points) {
  xcb_connection_t* control = display_.control.get();
  for (std::size_t i = 1; i < points.size();) {
    if (window_ == 0) open_shaped();
    std::vector<xcb_rectangle_t> rows;
    for (; i < points.size() && segments_ < segments_per_window; ++i, ++segments_) {
      const auto segment = capsule(points[i - 1], points[i], trail_width / 2 * surroundings_.density);
      rows.insert(rows.end(), segment.begin(), segment.end());
    }
    xcb_shape_rectangles(control, XCB_SHAPE_SO_UNION, XCB_SHAPE_SK_BOUNDING, XCB_CLIP_ORDERING_UNSORTED, window_, 0, 0,
                         static_cast<std::uint32_t>(rows.size()), rows.data());
    if (segments_ < segments_per_window) break;
    finished_.push_back(std::exchange(window_, 0));
    if (finished_.size() < windows_limit) continue;
    xcb_destroy_window(control, finished_.front());
    finished_.pop_front();
  }
}

xcb_window_t Trail::open_tile(Tile place) {
  xcb_window_t& window = tiles_[place];
  if (window != 0) return window;
  xcb_connection_t* control = display_.control.get();
  const std::uint32_t values[] = {0, 0, 1, blended_colours_};
  window = open_window(
      {coordinate(place.first * tile_side), coordinate(place.second * tile_side), tile_side, tile_side}, blended_depth,
      blended_visual_, XCB_CW_BACK_PIXEL | XCB_CW_BORDER_PIXEL | XCB_CW_OVERRIDE_REDIRECT | XCB_CW_COLORMAP, values);
  if (pen_ == 0) {
    pen_ = xcb_generate_id(control);
    const auto width = static_cast<std::uint32_t>(std::max(1L, std::lround(trail_width * surroundings_.density)));
    const std::uint32_t pen[] = {blended_colour, width, XCB_CAP_STYLE_ROUND, XCB_JOIN_STYLE_ROUND};
    xcb_create_gc(control, pen_, window, XCB_GC_FOREGROUND | XCB_GC_LINE_WIDTH | XCB_GC_CAP_STYLE | XCB_GC_JOIN_STYLE,
                  pen);
  }
  xcb_map_window(control, window);
  return window;
}

void Trail::open_shaped() {
  const std::uint32_t values[] = {opaque_colour_, 1};
  window_ = open_window({0, 0, surroundings_.width, surroundings_.height}, XCB_COPY_FROM_PARENT, XCB_COPY_FROM_PARENT,
                        XCB_CW_BACK_PIXEL | XCB_CW_OVERRIDE_REDIRECT, values);
  clear_shape(window_, XCB_SHAPE_SK_BOUNDING);
  segments_ = 0;
  xcb_map_window(display_.control.get(), window_);
}

xcb_window_t Trail::open_window(const xcb_rectangle_t& place, std::uint8_t depth, xcb_visualid_t visual,
                                std::uint32_t mask, const std::uint32_t* values) {
  xcb_connection_t* control = display_.control.get();
  const xcb_window_t window = xcb_generate_id(control);
  xcb_create_window(control, depth, window, display_.screen->root, place.x, place.y, place.width, place.height, 0,
                    XCB_WINDOW_CLASS_INPUT_OUTPUT, visual, mask, values);
  clear_shape(window, XCB_SHAPE_SK_INPUT);
  return window;
}

void Trail::clear_shape(xcb_window_t window, std::uint8_t kind) {
  xcb_shape_rectangles(display_.control.get(), XCB_SHAPE_SO_SET, kind, XCB_CLIP_ORDERING_UNSORTED, window, 0, 0, 0,
                       nullptr);
}

void Trail::resize(std::uint16_t width, std::uint16_t height) {
  surroundings_.width = width;
  surroundings_.height = height;
  // Windows that are full show nothing beyond the former screen.
  if (window_ == 0) return;
  const std::uint32_t size[] = {width, height};
  xcb_configure_window(display_.control.get(), window_, XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT, size);
}

void Trail::window_gone(xcb_window_t window) {
  if (window != surroundings_.compositor) return;
  surroundings_.compositor = 0;
  end_blended();
}

void Trail::end() {
  xcb_connection_t* control = display_.control.get();
  watch_compositor(XCB_EVENT_MASK_NO_EVENT);
  surroundings_.compositor = 0;
  end_blended();
  for (const xcb_window_t window : finished_) xcb_destroy_window(control, window);
  finished_.clear();
  if (window_ != 0) xcb_destroy_window(control, window_);
  window_ = 0;
}

void Trail::end_blended() {
  xcb_connection_t* control = display_.control.get();
  for (const auto& [place, window] : tiles_) {
    // A compositing manager may fade the window out: let it fade what cannot be seen.
    xcb_clear_area(control, 0, window, 0, 0, 0, 0);
    xcb_destroy_window(control, window);
  }
  tiles_.clear();
  if (pen_ != 0) xcb_free_gc(control, pen_);
  pen_ = 0;
}

// Its window is gone with it.
void Trail::watch_compositor(std::uint32_t events) {
  if (surroundings_.compositor == 0) return;
  xcb_change_window_attributes(display_.control.get(), surroundings_.compositor, XCB_CW_EVENT_MASK, &events);
}

}  // namespace hooklib
