// A desk to try Strokemind on: a private screen with a window manager, a user, a home folder, and the program running.
#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "tests/program/watcher.h"
#include "tests/support/xserver.h"

using Path = std::vector<std::pair<int, int>>;

// Points every few pixels along straight lines between corners, as a hand moves a mouse.
Path along(const Path& corners);

// The section of a profile that recognises a stroke drawn along these corners.
std::string section(const std::string& name, const Path& corners, const std::string& action);

class Desk {
 public:
  // Makes screen, window manager, user and home; `profile` is the text of the profile file, empty for none.
  explicit Desk(const std::string& profile);
  ~Desk();

  // Starts the program and waits until it has loaded its patrons and shows its window at the right edge.
  void start();
  std::string path(const std::string& name) const { return home_ + "/" + name; }
  std::string profile_path() const { return path(".config/strokemind/Strokemind.AI"); }
  std::vector<std::string> environment() const;
  // Opens an editor on the file and waits until it has the keyboard.
  test_support::Process edit(const std::string& file);
  // Saves what the editor holds, as the user would; it must come to be this text.
  void expect_edited(const std::string& file, const std::string& text);
  // Draws with the right button, not before strokes are recognised again.
  void draw(const Path& corners);
  // The same, and waits until its action has been set off: then the second line of the information stands, or it says
  // in red that the stroke is unknown.
  void gesture(const Path& corners);
  bool informs();
  bool verdict_stands();
  // Goes along the corners with the right button held where that draws nothing.
  void drag(const Path& corners);
  // Draws at once.
  void draw_now(const Path& corners);
  // What the main window shows in a place given in twips of its design.
  std::vector<std::uint32_t> look(int left, int top, int width, int height);
  void screenshot(const std::string& name) const;

  test_support::XServer server{"1280x800x24"};
  test_support::Process window_manager;
  test_support::User user;
  test_support::Process program;

 private:
  std::string home_;
  std::int64_t last_stroke_ms_ = 0;  // when the last stroke ended, on a steady clock
};

// The bytes of a file, empty where it cannot be read.
std::string contents(const std::string& file);
