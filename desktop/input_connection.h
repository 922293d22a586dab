// A connection to the X server for the injection of keys.
#pragma once

#include <X11/Xlib.h>

#include <chrono>
#include <functional>
#include <memory>

namespace desktop {

// One connection. Its protocol errors are ignored: what a request names may be gone by the time it is served.
class InputConnection {
 public:
  // Null where there is no display, or a server without XTEST or XKB.
  static std::unique_ptr<InputConnection> open();
  ~InputConnection();
  InputConnection(const InputConnection&) = delete;
  InputConnection& operator=(const InputConnection&) = delete;

  Display* display() const { return display_; }
  // The device that XTEST speaks for: keys mean what its key map says, which becomes the keyboard's own with the first
  // key that it sends. Real keyboards may have other maps.
  unsigned device() const { return device_; }

  // Whether the key map has changed since the last call.
  bool take_map_changes();
  // Returns when the window that has the keyboard has taken up every key sent so far, as far as that can be learnt:
  // it is asked for a sign of life, which it gives in turn. A window that does not know how gets a fixed time, one that
  // hangs is given up.
  void settle();

 private:
  explicit InputConnection(Display* display);
  void note_map_change(const XEvent& event);
  Time server_time();
  Window focused_window_with_ping();
  bool wait_for_event(const std::function<bool(const XEvent&)>& wanted, std::chrono::milliseconds longest);

  Display* const display_;
  int xkb_event_ = 0;
  unsigned device_;
  Window window_ = 0;  // never shown; its properties tell the server's time
  Atom protocols_, ping_;
  bool map_changed_ = true;
};

}  // namespace desktop
