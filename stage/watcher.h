// What another program sees of the screen.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "stage/windows.h"
#include "stage/xserver.h"

namespace stage {

// A bare window of another program that writes down the mouse events it gets.
class Watcher {
 public:
  explicit Watcher(const stage::XServer& server);  // without a window: it only looks
  Watcher(const stage::XServer& server, int x, int y, int width, int height);
  ~Watcher();
  Watcher(const Watcher&) = delete;
  Watcher& operator=(const Watcher&) = delete;

  // The events so far: "press 3", "release 3", and one "motion" for any run of moves with a button held.
  const std::vector<std::string>& events();
  // How often the icon of the window with this title has changed since it was first asked for.
  int icon_changes(const std::string& title);
  // The titles of the windows that the window manager manages.
  std::vector<std::string> managed();
  // The title of the window that has the keyboard.
  std::string active();
  // Windows on the screen that no window manager manages, such as open menus.
  int popups();
  // How many of the two, pointer and keyboard, somebody keeps to himself. It is found out by taking them: for a moment
  // nobody else can.
  int grabs();
  bool right_button_is_taken() { return button_is_taken(display_); }
  // Where the window with this title is on the screen.
  std::pair<int, int> place(const std::string& title);

 private:
  void take_events();
  unsigned long window(const std::string& title);

  _XDisplay* display_;
  unsigned long window_ = 0;
  unsigned long observed_ = 0;
  int icon_changes_ = 0;
  std::vector<std::string> events_;
};

}  // namespace stage
