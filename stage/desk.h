// A desk to try Strokemind on: a private screen with a window manager, a user, a home folder, and the program running.
// What does not come about in good time is an exception that says what it was.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "stage/watcher.h"
#include "stage/xserver.h"

namespace stage {

// Points every few pixels along straight lines between corners, as a hand moves a mouse.
Path along(const Path& corners);

// The section of a profile that recognises a stroke drawn along these corners.
std::string section(const std::string& name, const Path& corners, const std::string& action);

class Desk {
 public:
  // Makes screen, window manager, user and home; `profile` is the text of the profile file, empty for none. The
  // program is looked for in `folder`.
  Desk(std::string folder, const std::string& profile);
  ~Desk();

  // Starts the program and waits until it has loaded its patrons and shows its window at the right edge.
  void start();
  // The same for a program that goes to the tray: waits until its menu, opened at the icon, is on the screen.
  void start_in_tray();
  // Moves the pointer over the icon until its menu has opened. The keyboard chooses from it.
  void open_tray_menu();
  // Whether the tray shows the icon of a program that watches, or the one that is crossed out in red.
  bool tray_shows(bool on);
  std::string path(const std::string& name) const { return home_ + "/" + name; }
  std::string profile_path() const { return path(".config/strokemind/Strokemind.AI"); }
  std::vector<std::string> environment() const;
  // Opens an editor on the file and waits until it has the keyboard.
  Process edit(const std::string& file);
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
  // Draws at once. Gives how long after the end of the last stroke this one ended, milliseconds.
  std::int64_t draw_now(const Path& corners);
  // What the main window shows in a place given in twips of its design.
  std::vector<std::uint32_t> look(int left, int top, int width, int height);
  // Into the folder screenshots/ beside the program.
  void screenshot(const std::string& name) const;
  // A place of the main window, or of the editor that opens upon it, in twips of its design.
  void hover(int left, int top);
  void click(int left, int top, int times = 1);
  // Types what the keyboard has keys for.
  void write(std::string_view latin1);
  // Presses a key, as soon as a window whose title begins like this has the keyboard.
  void answer(const std::string& title, unsigned long keysym);
  bool open(const std::string& title);  // whether there is such a window
  // The program must end with status 0 and leave nothing behind: no grab and no process.
  void expect_end();
  // The command lines of what runs in this home.
  std::vector<std::string> processes() const;

  XServer server{"1280x800x24"};
  Process window_manager;
  User user;
  Process program;
  Watcher screen;

 private:
  void launch();
  // Waits for it; where it does not come about, leaves a screenshot and throws what says so in a few words.
  void demand(const std::function<bool()>& condition, const std::string& what);

  std::string folder_;
  std::string home_;
  std::int64_t last_stroke_ms_ = 0;  // when the last stroke ended, on a steady clock
};

// The bytes of a file, empty where it cannot be read.
std::string contents(const std::string& file);

}  // namespace stage
