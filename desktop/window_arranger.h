// Arranges, minimises and brings back the windows of all programs on the present virtual desktop. Windows of this
// program, panels and the like, tool windows and dialogs (which follow the window they belong to) are left alone.
#pragma once

#include <vector>

#include "desktop/arrangement.h"
#include "desktop/x11.h"

namespace desktop {

// Without a window manager that keeps the desktop's standard nothing happens. No call waits for the windows; those that
// move maximised ones wait for a moment until the window manager has made them normal.
class WindowArranger {
 public:
  explicit WindowArranger(const X11& x11) : x11_(x11) {}

  // Onto the monitor that holds the pointer, minus its panels. The front window stays in front; when tiled it comes
  // first.
  void cascade();
  void tile_horizontally();
  void tile_vertically();
  // Minimises every window. What an earlier call has put away stays remembered.
  void minimise_all();
  // Brings back what minimise_all has put away and is still minimised, in its old order, and gives the keyboard back to
  // the window that had it.
  void bring_back();

 private:
  struct Sides {
    int left, right, top, bottom;
  };
  using Arrange = std::vector<Area> (*)(const Area& work, const std::vector<Limits>& windows);

  std::uint32_t present_desktop() const;
  bool is_on(xcb_window_t window, std::uint32_t desktop) const;
  bool is_arranged(xcb_window_t window) const;
  std::vector<xcb_window_t> windows() const;
  Area work_area() const;
  std::vector<Strut> struts(const Area& screen) const;
  void make_normal(const std::vector<xcb_window_t>& windows) const;
  Sides frame(xcb_window_t window) const;
  Limits limits(xcb_window_t window) const;
  void place(xcb_window_t window, const Area& area) const;
  void tile(Arrange arrange) const;

  const X11& x11_;
  std::vector<xcb_window_t> minimised_;  // the foremost last
  xcb_window_t active_ = XCB_NONE;       // when they were minimised
};

}  // namespace desktop
