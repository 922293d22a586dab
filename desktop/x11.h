// What is asked of the X server beside the toolkit, on the toolkit's connection, so that requests keep their order. A
// window that has gone meanwhile is an answer, never an error.
#pragma once

#include <xcb/xcb.h>

#include <optional>
#include <string>
#include <vector>

#include "platform/services.h"

namespace desktop {

class X11 {
 public:
  // After the toolkit has connected.
  X11();

  // The atom of a name; made where there is none yet.
  xcb_atom_t atom(const std::string& name) const;
  void flush() const { xcb_flush(connection_); }
  // Whether a program blends windows together, so that their opacity is seen.
  bool composited() const;
  platform::Point pointer() const;

  // The window of a program at a point (screen pixels): the innermost one that takes the pointer there. On what a
  // window manager has put around a window it is that window. 0 where there is nothing but the root.
  platform::Handle window_at(platform::Point at) const;
  // What holds a window within its program; 0 for a top-level window, for what a window manager has made, and for one
  // that has gone.
  platform::Handle parent(platform::Handle window) const;

  // Asks the window manager to give a window the keyboard and to raise it; without one, does so.
  void activate(xcb_window_t window) const;
  // Asks the window manager to keep a mapped window in front of the others, or no longer; without one, raises it.
  void keep_above(xcb_window_t window, bool above) const;

 private:
  struct Family {
    xcb_window_t parent;
    std::vector<xcb_window_t> children;  // the foremost last
  };
  std::optional<Family> family(xcb_window_t window) const;
  bool has_property(xcb_window_t window, xcb_atom_t property) const;
  bool is_client(xcb_window_t window) const { return has_property(window, wm_state_); }
  xcb_window_t client_inside(xcb_window_t frame, int depth) const;
  bool managed() const { return has_property(root_, atom("_NET_SUPPORTING_WM_CHECK")); }
  void ask_window_manager(xcb_window_t window, const char* message, std::uint32_t first, std::uint32_t second,
                          std::uint32_t fourth) const;

  xcb_connection_t* connection_;
  int screen_ = 0;
  xcb_window_t root_ = XCB_NONE;
  xcb_atom_t wm_state_ = XCB_NONE;
};

}  // namespace desktop
