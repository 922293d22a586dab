// A private screen as a session has it: a window manager, perhaps a compositor, a user, and a connection to look at it.
#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "stage/windows.h"
#include "stage/xserver.h"

namespace stage {

class Screen {
 public:
  struct With {
    bool window_manager = true;
    bool compositor = false;
    std::string scale = "1";  // the toolkit's factor between its pixels and the screen's
    std::string manager = "openbox";
    std::string bus = "disabled:";  // of the session; none, or icons would go to the panel of whoever runs the test
  };
  // Makes it the screen of this process, too. What does not start is an exception.
  explicit Screen(const With& with);

  // A property of a window as 32-bit items.
  std::vector<unsigned long> property(unsigned long window, const char* name) const {
    return stage::property(display, window, name);
  }
  std::vector<unsigned long> root_property(const char* name) const { return stage::root_property(display, name); }
  bool has_state(unsigned long window, const char* state) const;
  unsigned long active() const { return active_window(display); }
  // Where a point of a window lies on the screen.
  std::pair<int, int> place(unsigned long window, int x = 0, int y = 0) const {
    return place_of(display, window, x, y);
  }
  // Sends a message of format 32 to a window, or about it to the window manager.
  void send(unsigned long to, unsigned long about, const char* type, const std::vector<long>& data) const;
  unsigned long atom(const char* name) const;
  // Tells the window manager something about a window.
  void tell_manager(unsigned long about, const char* type, const std::vector<long>& data = {}) const;

  XServer server;
  Process window_manager, compositor;

 private:
  DisplayHandle connection_;

 public:
  _XDisplay* display = nullptr;  // of who looks
  std::optional<User> user;
};

}  // namespace stage
