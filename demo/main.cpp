// A recorded session: somebody sits down at a private screen, draws with the right button, saves patterns, binds
// actions to them and draws again. What the program makes of it is told line by line, as it shows on the outside: in
// its file, in a terminal, on the screen. Screenshots stay in the folder demo/ beside the program.
//
// usage: strokemind_demo [PROGRAM [FOLDER]]     plays with this program; demo/ comes to lie in FOLDER
#include <X11/keysym.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "stage/xserver.h"

namespace {

using Path = std::vector<std::pair<int, int>>;

// Where things are on the screen, pixels.
constexpr int window_left = 820;
constexpr int window_top = 60;
constexpr std::pair first_row{45, 45};  // of the list, within the window; rows fill columns of two
constexpr std::pair second_row{45, 140};
constexpr std::pair save_label{268, 250};
constexpr std::pair close_button{12, 8};
constexpr std::pair heading_text{140, 87};
constexpr std::pair heading_commands{140, 62};
constexpr std::pair text_box{160, 200};
constexpr std::pair command_grow{150, 160};                       // "Agrandir" of the editor
constexpr auto between_strokes = std::chrono::milliseconds(800);  // strokes that follow faster are not recognised
constexpr auto a_look = std::chrono::milliseconds(700);           // so that a person can follow

Path corner() {
  return {{200, 300}, {200, 480}, {400, 480}};
}

Path circle() {
  Path path;
  for (int k = 0; k <= 40; ++k) {
    const double angle = 6.2832 * k / 40;
    path.emplace_back(420 + static_cast<int>(110 * std::cos(angle)), 420 + static_cast<int>(110 * std::sin(angle)));
  }
  return path;
}

// Points every few pixels, as a hand moves a mouse.
Path by_hand(const Path& corners) {
  constexpr double step = 5;
  Path path{corners.front()};
  for (std::size_t n = 1; n < corners.size(); ++n) {
    const auto [x, y] = corners[n - 1];
    const double dx = corners[n].first - x;
    const double dy = corners[n].second - y;
    const int steps = std::max(1, static_cast<int>(std::hypot(dx, dy) / step));
    for (int k = 1; k <= steps; ++k) {
      path.emplace_back(x + static_cast<int>(std::lround(dx * k / steps)),
                        y + static_cast<int>(std::lround(dy * k / steps)));
    }
  }
  return path;
}

std::string contents(const std::filesystem::path& file) {
  std::ifstream stream(file, std::ios::binary);
  std::ostringstream bytes;
  bytes << stream.rdbuf();
  return bytes.str();
}

class Session {
 public:
  Session(const std::string& program, const std::filesystem::path& folder)
      : window_manager_(stage::start_window_manager(server_)), user_(server_), shots_(folder / "demo") {
    std::filesystem::remove_all(shots_);
    home_ = shots_ / "home";
    std::filesystem::create_directories(home_ / ".config/strokemind");
    std::filesystem::create_directories(home_ / "run");
    std::filesystem::permissions(home_ / "run", std::filesystem::perms::owner_all);
    std::ofstream(profile()) << "[Pos]\r\nX=" << window_left * 15 << "\r\nY=" << window_top * 15 << "\r\n";
    server_.make_current();
    tray_ = stage::Process({"trayer", "--edge", "bottom", "--align", "right", "--width", "10", "--height", "26"},
                           environment());
    terminal_ = stage::Process({"xterm", "-geometry", "60x16+60+60", "-e", "sh", "-c", "cat > \"$HOME/terminal.txt\""},
                               environment());
    program_ = stage::Process({program}, environment());
  }

  // Plays it; gives whether everything came out as it should.
  bool play() {
    tell("a first start shows the window of itself", look_until([&] { return window_shows(); }));
    save(corner(), "coin", "COIN");
    save(circle(), "cercle", "CERCLE");
    bind_text();
    bind_command();
    act_on_terminal();
    quit();
    std::printf("%s; screenshots in %s\n", well_ ? "all went as it should" : "something went wrong", shots_.c_str());
    return well_;
  }

 private:
  std::vector<std::string> environment() const {
    return {server_.environment(), "HOME=" + home_.string(), "XDG_CONFIG_HOME=" + (home_ / ".config").string(),
            "XDG_RUNTIME_DIR=" + (home_ / "run").string(), "LC_ALL=C.UTF-8"};
  }
  std::filesystem::path profile() const { return home_ / ".config/strokemind/Strokemind.AI"; }

  void tell(const std::string& what, bool well) {
    well_ = well_ && well;
    std::printf("%s %s\n", well ? "  ok  " : "FAILED", what.c_str());
    std::fflush(stdout);
    // A screenshot of each step, in order.
    char name[16];
    std::snprintf(name, sizeof name, "%02d.png", ++step_);
    stage::Process({"import", "-window", "root", (shots_ / name).string()}, environment()).wait();
  }
  static bool look_until(const std::function<bool()>& condition) {
    const bool seen = stage::eventually(condition);
    std::this_thread::sleep_for(a_look);
    return seen;
  }
  // The green frame of the window, at its left edge.
  bool window_shows() { return user_.pixels(window_left, window_top + 150, 1, 1).front() == 0x00FF00; }

  void click(std::pair<int, int> place) {
    user_.move_to(window_left + place.first, window_top + place.second);
    user_.click(1);
    std::this_thread::sleep_for(a_look);
  }
  void type(const std::string& text) {
    for (const char c : text) user_.type(static_cast<unsigned long>(static_cast<unsigned char>(c)));
  }
  void draw(const Path& shape) {
    std::this_thread::sleep_for(between_strokes);
    user_.draw(3, by_hand(shape));
    std::this_thread::sleep_for(a_look);
  }
  bool file_has(const std::string& text) {
    return look_until([&] { return contents(profile()).find(text) != std::string::npos; });
  }

  void save(const Path& shape, const std::string& typed, const std::string& name) {
    draw(shape);
    click(save_label);
    type(typed);
    user_.type(XK_Return);
    tell("drawn and saved under the name " + name, file_has("[" + name + "]"));
  }
  // The editor stands where the window does.
  void open_editor(std::pair<int, int> row) {
    click(row);
    user_.click(1);
    user_.click(1);
    std::this_thread::sleep_for(a_look + a_look);
  }
  void bind_text() {
    open_editor(first_row);
    click(heading_text);
    user_.move_to(window_left + text_box.first, window_top + text_box.second);
    user_.click(1);
    type("bonjour ");
    tell("COIN is to type \"bonjour \"", true);
    user_.type(XK_Return);
    std::this_thread::sleep_for(a_look);
  }
  void bind_command() {
    open_editor(second_row);
    click(heading_commands);
    tell("CERCLE is to maximise the window under the pointer", true);
    click(command_grow);
  }
  void act_on_terminal() {
    user_.move_to(120, 120);
    user_.click(1);
    draw(corner());
    user_.type(XK_Return);
    tell("drawn again: the terminal got the text",
         look_until([&] { return contents(home_ / "terminal.txt").find("bonjour") != std::string::npos; }));
    // Over the terminal, which lies under the circle's end.
    Path over_terminal = circle();
    for (auto& [x, y] : over_terminal) x -= 180, y -= 230;
    draw(over_terminal);
    tell("the circle maximised the terminal",
         look_until([&] { return user_.pixels(60, 780, 1, 1).front() == user_.pixels(200, 300, 1, 1).front(); }));
  }
  void quit() {
    click(close_button);
    const int status = program_.wait();
    tell("closed; both actions are in the file", status == 0 && file_has("=T:bonjour") && file_has("=C:Agrandir"));
  }

  stage::XServer server_{"1200x800x24"};
  stage::Process window_manager_;
  stage::User user_;
  std::filesystem::path shots_, home_;
  stage::Process tray_, terminal_, program_;
  int step_ = 0;
  bool well_ = true;
};

}  // namespace

int main(int argc, char** argv) {
  const std::string program = argc > 1 ? argv[1] : PROGRAM_FOLDER "/Strokemind";
  const std::string folder = argc > 2 ? argv[2] : PROGRAM_FOLDER;
  return Session(program, folder).play() ? 0 : 1;
}
