// A desktop on a private screen with a user in front of it, and a form to try things on.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "desktop/desktop.h"
#include "tests/support/xserver.h"

// After the controls: it makes macros of names that are members there.
#include <X11/Xlib.h>
#include <X11/keysym.h>
#undef KeyPress

// A window of 200 by 150 pixels at (100, 50), with nothing on it.
class TestForm : public platform::Form {
 public:
  static constexpr int left = 100, top = 50, width = 200, height = 150;  // pixels
  explicit TestForm(std::string name = "Essai");
};

// Twips of a rectangle in pixels.
platform::Rectangle twips(int left, int top, int width, int height);

class Stage {
 public:
  struct With {
    bool window_manager = true;
    bool compositor = false;
    std::string scale = "1";  // the toolkit's factor between its pixels and the screen's
  };
  Stage() : Stage(With()) {}
  explicit Stage(const With& with);
  ~Stage();

  platform::Services& services() { return desktop->services(); }
  // Serves events until the condition holds; false where it does not in good time.
  bool until(const std::function<bool()>& condition);
  // Serves everything that is under way: what the user has done so far, and what the program has made of it.
  void settle(platform::Form& form);
  // Loads a form and shows it.
  void show(platform::Form& form);

  // The colour of a pixel of the screen, 0xRRGGBB.
  std::uint32_t pixel(int x, int y) { return user->pixels(x, y, 1, 1).front(); }
  // A property of a window as 32-bit items.
  std::vector<unsigned long> property(Window window, const char* name) const;
  // Whether the screen shows any window, where no window manager keeps windows of its own there.
  bool something_shown() const;
  bool has_state(Window window, const char* state) const;
  // What the window manager says is active.
  std::vector<unsigned long> active() const { return property(DefaultRootWindow(display), "_NET_ACTIVE_WINDOW"); }
  // Where a point of a window lies on the screen.
  std::pair<int, int> place(Window window, int x = 0, int y = 0) const;
  // Sends a message of format 32 to a window, or about it to the window manager.
  void send(Window to, Window about, const char* type, const std::vector<long>& data) const;
  Atom atom(const char* name) const { return XInternAtom(display, name, False); }
  // Tells the window manager something about a window.
  void tell_manager(Window about, const char* type, const std::vector<long>& data = {}) const {
    send(DefaultRootWindow(display), about, type, data);
  }

  test_support::XServer server;
  test_support::Process window_manager, compositor;
  Display* display = nullptr;  // of the test itself
  std::optional<desktop::Desktop> desktop;
  std::optional<test_support::User> user;
};
