// What is asked of the X server beside the toolkit, on the toolkit's connection, so that requests keep their order. A
// window that has gone meanwhile is an answer, never an error.
#pragma once

#include <xcb/xcb.h>

#include <array>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "desktop/area.h"
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
  // Whether a program takes icons into its tray by embedding their windows.
  bool embeds_icons() const;
  // Has the server tell from now on when that changes; gives the number of the event.
  std::uint8_t watch_embedding() const;
  platform::Point pointer() const;

  // The window of a program at a point (screen pixels): the innermost one that takes the pointer there. On what a
  // window manager has put around a window it is that window. 0 where there is nothing but the root.
  platform::Handle window_at(platform::Point at) const;
  // What holds a window within its program; 0 for a top-level window, for what a window manager has made, and for one
  // that has gone.
  platform::Handle parent(platform::Handle window) const;

  // The window that a window manager looks after and of which this one is a part, or the frame; XCB_NONE where there is
  // no such window.
  xcb_window_t client_of(platform::Handle window) const;
  bool exists(xcb_window_t window) const { return family(window).has_value(); }
  // Whether a window belongs to this program.
  bool is_own(xcb_window_t window) const;
  xcb_window_t root() const { return root_; }
  // A property of 32-bit items, at most some thousands of them; empty where there is none.
  std::vector<std::uint32_t> property(xcb_window_t window, const char* name) const;
  // The size of a window without its frame, its place within its parent; nothing where it has gone.
  std::optional<Area> geometry(xcb_window_t window) const;

  // Whether there is a window manager that understands the messages of the desktop's standard.
  bool managed() const { return has_property(root_, atom("_NET_SUPPORTING_WM_CHECK")); }
  // Sends such a message about a window; without a window manager nobody hears it.
  void ask_window_manager(xcb_window_t window, const char* message, const std::array<std::uint32_t, 5>& data) const;
  // Sends a message that came to one of our windows on to another one.
  void send_back(const xcb_client_message_event_t& message, xcb_window_t window) const;
  // Asks for a window to be shown, which takes a minimised one back out of its icon.
  void map(xcb_window_t window) const;

  // Asks the window manager to give a window the keyboard and to raise it; without one, does so.
  void activate(xcb_window_t window) const;
  // Asks the window manager to keep a mapped window in front of the others, or no longer; without one, raises it.
  void keep_above(xcb_window_t window, bool above) const;
  // The property by which a window manager says whether a window is minimised.
  xcb_atom_t wm_state() const { return wm_state_; }

 private:
  struct Family {
    xcb_window_t parent;
    std::vector<xcb_window_t> children;  // the foremost last
  };
  std::optional<Family> family(xcb_window_t window) const;
  bool has_property(xcb_window_t window, xcb_atom_t property) const;
  bool is_client(xcb_window_t window) const { return has_property(window, wm_state_); }
  xcb_window_t client_inside(xcb_window_t frame, int depth) const;
  bool owned(const std::string& selection) const;

  xcb_connection_t* connection_;
  int screen_ = 0;
  xcb_window_t root_ = XCB_NONE;
  xcb_atom_t wm_state_ = XCB_NONE;
  mutable std::map<std::string, xcb_atom_t> atoms_;  // those asked for so far
};

}  // namespace desktop
