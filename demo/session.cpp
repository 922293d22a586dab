#include "demo/session.h"

#include <algorithm>
#include <cmath>
#include <fstream>
#include <sstream>
#include <thread>

namespace demo {

namespace {

constexpr auto between_strokes = std::chrono::milliseconds(800);  // strokes that follow faster are not recognised
constexpr auto double_click = std::chrono::milliseconds(60);
constexpr int points_a_frame = 7;  // of a stroke that is filmed

}  // namespace

Session::Session(const Setting& setting)
    : server(setting.screen),
      window_manager(stage::start_window_manager(server)),
      user(server),
      setting_(setting),
      home_(setting.folder / "home") {
  std::filesystem::remove_all(setting.folder);
  std::filesystem::create_directories(home_ / ".config/strokemind");
  std::filesystem::create_directories(home_ / "run");
  std::filesystem::permissions(home_ / "run", std::filesystem::perms::owner_all);
  constexpr int twips = 15;  // a pixel
  std::ofstream(profile(), std::ios::binary) << setting.profile << "[Pos]\r\nX=" << setting.window.first * twips
                                             << "\r\nY=" << setting.window.second * twips << "\r\n";
  server.make_current();
}

Session::~Session() {
  program.end();
}

void Session::start_tray() {
  tray_ = stage::Process({"trayer", "--edge", "bottom", "--align", "right", "--width", "10", "--height", "26"},
                         environment());
}

void Session::start_terminal() {
  terminal_ = stage::Process({"xterm", "-fa", "monospace", "-fs", "10", "-geometry", "56x22+30+30", "-title",
                              "Terminal", "-e", "sh", "-c", "cat > \"$HOME/terminal.txt\""},
                             environment());
}

void Session::start_program() {
  program = stage::Process({setting_.program}, environment());
}

std::vector<std::string> Session::environment() const {
  return {server.environment(),
          "HOME=" + home_.string(),
          "XDG_CONFIG_HOME=" + (home_ / ".config").string(),
          "XDG_RUNTIME_DIR=" + (home_ / "run").string(),
          "QT_SCALE_FACTOR=" + setting_.scale,
          "LC_ALL=C.UTF-8"};
}

bool Session::look_until(const std::function<bool()>& condition) {
  const bool seen = stage::eventually(condition);
  look();
  return seen;
}

void Session::look(int times) {
  std::this_thread::sleep_for(a_look * times);
}

int Session::scaled(int pixels) const {
  return static_cast<int>(std::lround(pixels * std::stod(setting_.scale)));
}

Area Session::window_area() const {
  return {scaled(setting_.window.first), scaled(setting_.window.second), scaled(window_size.first),
          scaled(window_size.second)};
}

bool Session::window_shows() {
  const Area window = window_area();
  return user.pixels(window.left, window.top + window.height / 2, 1, 1).front() == 0x00FF00;
}

void Session::hover(std::pair<int, int> place) {
  user.move_to(window_area().left + scaled(place.first), window_area().top + scaled(place.second));
}

void Session::click(std::pair<int, int> place, int times) {
  hover(place);
  for (int n = 0; n < times; ++n) {
    std::this_thread::sleep_for(double_click);
    user.click(1);
  }
  look();
}

void Session::type(const std::string& text) {
  for (const char c : text) user.type(static_cast<unsigned long>(static_cast<unsigned char>(c)));
}

void Session::draw(const Path& shape) {
  std::this_thread::sleep_for(between_strokes);
  user.draw(3, stage::along(shape));
  look();
}

void Session::film(const Path& shape, Area area, const std::filesystem::path& picture,
                   const std::function<void()>& follows) {
  std::this_thread::sleep_for(between_strokes);
  frames_ = {"convert", "-delay", "70"};
  user.move_to(shape.front().first, shape.front().second);
  frame(area);
  frames_.insert(frames_.end(), {"-delay", "6"});
  user.begin_stroke(3, shape.front().first, shape.front().second);
  const Path path = stage::along(shape);
  for (std::size_t k = 0; k < path.size(); ++k) {
    user.move_to(path[k].first, path[k].second);
    if (k % points_a_frame == 0) {
      std::this_thread::sleep_for(std::chrono::milliseconds(60));
      frame(area);
    }
  }
  frame(area);
  user.release(3);
  follows();
  frames_.insert(frames_.end(), {"-delay", "250"});
  frame(area);
  frames_.insert(frames_.end(), {"-loop", "0", "+dither", "-colors", "64", "-layers", "optimize", picture.string()});
  run(frames_);
}

// One more frame of the film, as a plain pixel map.
void Session::frame(Area area) {
  const std::string name = (setting_.folder / ("frame" + std::to_string(frames_.size()) + ".ppm")).string();
  std::ofstream file(name, std::ios::binary);
  file << "P6\n" << area.width << ' ' << area.height << "\n255\n";
  for (const std::uint32_t colour : user.pixels(area.left, area.top, area.width, area.height)) {
    for (const int shift : {16, 8, 0}) file.put(static_cast<char>(colour >> shift & 0xFF));
  }
  frames_.push_back(name);
}

void Session::screenshot(const std::filesystem::path& picture) {
  run({"import", "-window", "root", picture.string()});
}

// Few colours and nothing that changes from one run to the next: these are kept in the source tree.
void Session::screenshot(const std::filesystem::path& picture, Area area) {
  const std::string crop = std::to_string(area.width) + "x" + std::to_string(area.height) + "+" +
                           std::to_string(area.left) + "+" + std::to_string(area.top);
  run({"import", "-window", "root", "-crop", crop, "+repage", "-strip", "+dither", "-colors", "128", "-define",
       "png:exclude-chunks=date,time", "PNG8:" + picture.string()});
}

}  // namespace demo
