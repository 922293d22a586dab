// Somebody at a private screen with the program on it: what the played session and the pictures of the guides share.
#pragma once

#include <chrono>
#include <filesystem>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "stage/desk.h"
#include "stage/xserver.h"

namespace demo {

using stage::Path;

// The size of the main window, pixels at scale 1.
inline constexpr std::pair window_size{334, 301};
inline constexpr auto a_look = std::chrono::milliseconds(700);  // so that a person can follow

// A part of the screen, pixels.
struct Area {
  int left, top, width, height;
};

struct Setting {
  std::string screen;                   // as Xvfb takes it
  std::filesystem::path folder;         // home and pictures; made anew
  std::string profile;                  // bytes; the window's place is added
  std::pair<int, int> window{820, 60};  // where the main window stands, pixels at scale 1
  std::string scale = "1";              // of the program's windows
  std::string program = PROGRAM_FOLDER "/Strokemind";
};

class Session {
 public:
  explicit Session(const Setting& setting);
  ~Session();

  void start_tray();
  void start_terminal();
  void start_program();
  // What was typed into the terminal.
  std::string typed() const { return stage::contents(home_ / "terminal.txt"); }
  std::filesystem::path profile() const { return home_ / ".config/strokemind/Strokemind.AI"; }
  // Waits until the condition holds, then as long as a person looks.
  static bool look_until(const std::function<bool()>& condition);
  static void look(int times = 1);
  // The frame of the main window is on the screen.
  bool window_shows();
  // A place of the main window, or of the editor that opens upon it, in pixels at scale 1.
  void hover(std::pair<int, int> place);
  void click(std::pair<int, int> place, int times = 1);
  void type(const std::string& text);
  // With the right button.
  void draw(const Path& shape);
  // The same at a hand's pace. What this part of the screen shows meanwhile, and until what follows has come to its
  // end, becomes an animated picture.
  void film(const Path& shape, Area area, const std::filesystem::path& picture, const std::function<void()>& follows);
  void screenshot(const std::filesystem::path& picture);
  void screenshot(const std::filesystem::path& picture, Area area);
  // The main window's place on the screen.
  Area window_area() const;
  // Runs a program of this screen to its end.
  void run(const std::vector<std::string>& argv) { stage::Process(argv, environment()).wait(); }

  stage::XServer server;
  stage::Process window_manager;
  stage::User user;
  stage::Process program;

 private:
  std::vector<std::string> environment() const;
  int scaled(int pixels) const;
  void frame(Area area);

  Setting setting_;
  std::filesystem::path home_;
  stage::Process tray_, terminal_;
  std::vector<std::string> frames_;  // arguments of what puts them together
};

}  // namespace demo
