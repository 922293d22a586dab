#include "stage/desk.h"

#include <X11/keysym.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <sstream>
#include <stdexcept>
#include <utility>

#include "capture/miniature.h"
#include "forms/sk.h"
#include "hooklib/sampler.h"
#include "platform/number.h"
#include "platform/text.h"

namespace stage {
namespace {

constexpr int window_left = 940;  // pixels: the main window stands at the right edge, clear of the drawing
constexpr int window_top = 10;

std::int64_t now_ms() {
  return std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now().time_since_epoch())
      .count();
}

std::ptrdiff_t count(const std::vector<std::uint32_t>& pixels, bool (*wanted)(std::uint32_t)) {
  return std::count_if(pixels.begin(), pixels.end(), wanted);
}

}  // namespace

Path along(const Path& corners) {
  constexpr double step = 4;  // pixels
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

std::string section(const std::string& name, const Path& corners, const std::string& action) {
  std::vector<hooklib::Sample> samples;
  for (const auto& [x, y] : along(corners)) {
    samples.push_back({static_cast<double>(x), static_cast<double>(y), static_cast<std::uint32_t>(samples.size())});
  }
  const auto stroke = hooklib::sample_stroke(samples, hooklib::normal_density).value();
  SK sk;
  Mod_dessin::Dessin dessin;
  for (const point_hook& point : stroke) {
    dessin.dessin_x[static_cast<std::size_t>(dessin.dessin_nb)] = static_cast<float>(point.x);
    dessin.dessin_y[static_cast<std::size_t>(dessin.dessin_nb++)] = static_cast<float>(point.y);
  }
  Mod_dessin::dessiner_miniature(dessin, sk.PicIco, sk.PicRef);
  std::string x;
  std::string y;
  for (std::size_t k = 0; k < stroke.size(); ++k) {
    x += "." + platform::float_text(dessin.dessin_x[k]);
    y += "." + platform::float_text(dessin.dessin_y[k]);
  }
  return platform::to_cp1252("[" + name + "]\r\nInd=" + std::to_string(stroke.size()) + "\r\nX=" + x + "\r\nY=" + y +
                             "\r\nActionassocié=" + action + "\r\n");
}

std::string contents(const std::string& file) {
  std::ifstream stream(file, std::ios::binary);
  std::ostringstream bytes;
  bytes << stream.rdbuf();
  return bytes.str();
}

Desk::Desk(std::string folder, const std::string& profile)
    : window_manager(start_window_manager(server)), user(server), screen(server), folder_(std::move(folder)) {
  server.make_current();
  home_ = (std::filesystem::temp_directory_path() / "strokemind-desk-XXXXXX").string();
  if (mkdtemp(home_.data()) == nullptr) throw std::runtime_error("no home folder");
  std::filesystem::create_directories(path(".config/strokemind"));
  std::filesystem::create_directories(path("run"));
  std::filesystem::permissions(path("run"), std::filesystem::perms::owner_all);
  if (!profile.empty()) std::ofstream(profile_path(), std::ios::binary) << profile;
}

Desk::~Desk() {
  program.end();
  std::error_code ignored;
  std::filesystem::remove_all(home_, ignored);
}

void Desk::demand(const std::function<bool()>& condition, const std::string& what) {
  if (eventually(condition)) return;
  screenshot("missing");
  throw std::runtime_error(what + "; active: " + screen.active() + ", popups: " + std::to_string(screen.popups()) +
                           ", grabs: " + std::to_string(screen.grabs()));
}

std::vector<std::string> Desk::environment() const {
  return {server.environment(), "HOME=" + home_, "XDG_CONFIG_HOME=" + path(".config"), "XDG_RUNTIME_DIR=" + path("run"),
          "LC_ALL=C.UTF-8"};
}

void Desk::launch() {
  if (contents(profile_path()).find("[Pos]") == std::string::npos) {
    const std::string place =
        "[Pos]\r\nX=" + std::to_string(window_left * 15) + "\r\nY=" + std::to_string(window_top * 15) + "\r\n";
    std::ofstream(profile_path(), std::ios::binary | std::ios::app) << place;
  }
  program = Process({folder_ + "/Strokemind"}, environment());
}

void Desk::start() {
  launch();
  // The number of patrons stands in the status bar, whose rows are of one colour each without it.
  const auto patrons_show = [&] {
    if (!program.running()) return true;
    const auto label = look(2000, 3150, 400, 180);
    constexpr int width = 400 / 15;
    for (std::size_t n = 0; n < label.size(); ++n) {
      if (label[n] != label[n - n % width] && label[n - n % width] != 0) return true;
    }
    return false;
  };
  demand(patrons_show, "the program does not show its patrons");
  if (!program.running()) throw std::runtime_error("the program does not run");
}

void Desk::start_in_tray() {
  launch();
  open_tray_menu();
}

namespace {

constexpr int tray_top = 740;  // pixels: the tray stands in the lower left corner
constexpr int tray_width = 400;
constexpr int menu_width = 200;  // it opens above its icon
constexpr int menu_height = 60;
constexpr std::uint32_t menu_text = 0x00FF00;
constexpr int menu_text_least = 40;
constexpr std::uint32_t icon_ground = 0x8FF58F;
constexpr std::uint32_t icon_cross = 0xE01010;

}  // namespace

void Desk::open_tray_menu() {
  std::vector<std::uint32_t> pixels;
  auto icon = pixels.end();
  const auto icon_shows = [&] {
    pixels = user.pixels(0, tray_top, tray_width, 800 - tray_top);
    icon = std::find(pixels.begin(), pixels.end(), icon_ground);
    return icon != pixels.end();
  };
  demand(icon_shows, "no icon");
  const int at = static_cast<int>(icon - pixels.begin());
  const int x = at % tray_width;
  const int y = tray_top + at / tray_width;
  // A window that is on the screen, as at the start, keeps the menu shut. One that shows its entries has the keyboard.
  int moves = 0;
  const auto menu_opens = [&] {
    if (screen.popups() == 0) user.move_to(x + ++moves % 2, y);
    const auto around = user.pixels(0, tray_top - menu_height, menu_width, menu_height);
    return screen.popups() > 0 && std::count(around.begin(), around.end(), menu_text) > menu_text_least;
  };
  demand(menu_opens, "no menu");
}

bool Desk::tray_shows(bool on) {
  const auto pixels = user.pixels(0, tray_top, tray_width, 800 - tray_top);
  const auto ground = std::count(pixels.begin(), pixels.end(), icon_ground);
  const auto cross = std::count(pixels.begin(), pixels.end(), icon_cross);
  return ground > 20 && (on ? cross == 0 : cross > 20);
}

std::vector<std::uint32_t> Desk::look(int left, int top, int width, int height) {
  return user.pixels(window_left + left / 15, window_top + top / 15, width / 15, height / 15);
}

Process Desk::edit(const std::string& file) {
  std::ofstream(path(file)).flush();
  auto variables = environment();
  variables.emplace_back("DBUS_SESSION_BUS_ADDRESS=disabled:");  // it would leave one behind
  Process editor({"featherpad", "--standalone", path(file)}, variables);
  demand([&] { return screen.active().find(file) != std::string::npos; }, "the editor does not get the keyboard");
  return editor;
}

void Desk::expect_edited(const std::string& file, const std::string& text) {
  // By the menu: Ctrl would stop the drawing for a moment.
  user.key_down(XK_Alt_L);
  user.type(XK_f);
  user.key_up(XK_Alt_L);
  user.type(XK_s);
  const auto written = [&] {
    std::string found = contents(path(file));
    while (!found.empty() && found.back() == '\n') found.pop_back();
    return found == text;
  };
  demand(written, "the editor does not hold " + text);
}

bool Desk::informs() {
  return count(look(150, 4200, 3000, 280), [](std::uint32_t pixel) { return pixel != 0; }) > 0;
}

bool Desk::verdict_stands() {
  const auto reddish = [](std::uint32_t pixel) { return pixel >> 16 > 100 && (pixel >> 8 & 0xFF) < 50; };
  return count(look(150, 4350, 3000, 130), [](std::uint32_t pixel) { return pixel != 0; }) > 0 ||
         count(look(150, 4200, 3000, 130), reddish) > 0;
}

void Desk::drag(const Path& corners) {
  user.move_to(corners.front().first, corners.front().second);
  user.press(3);
  for (const auto& [x, y] : along(corners)) user.move_to(x, y);
  user.release(3);
}

std::int64_t Desk::draw_now(const Path& corners) {
  user.draw(3, along(corners));
  const std::int64_t now = now_ms();
  return now - std::exchange(last_stroke_ms_, now);
}

void Desk::draw(const Path& corners) {
  constexpr int gate_ms = 750;  // reports up to 700 ms apart are not recognised; the report comes within the rest
  // The pointer over the bare window takes the last verdict off the information line. It goes on until it is off: of
  // moves that come at once the toolkit tells the last, and not even that where it has seen the pointer before.
  int steps = 0;
  const auto line_is_free = [&] {
    user.move_to(window_left + 1330 / 15, window_top + 3600 / 15 + ++steps % 14);
    return !informs();
  };
  demand(line_is_free, "the last verdict stands for ever");
  eventually([&] { return now_ms() - last_stroke_ms_ > gate_ms; });
  draw_now(corners);
}

void Desk::gesture(const Path& corners) {
  draw(corners);
  demand([&] { return verdict_stands(); }, "no verdict");
}

void Desk::screenshot(const std::string& name) const {
  const std::string folder = folder_ + "/screenshots";
  std::filesystem::create_directories(folder);
  Process({"import", "-display", server.display(), "-window", "root", folder + "/" + name + ".png"}).wait();
}

void Desk::hover(int left, int top) {
  user.move_to(window_left + left / 15, window_top + top / 15);
}

void Desk::click(int left, int top, int times) {
  hover(left, top);
  for (int n = 0; n < times; ++n) user.click(1);
}

void Desk::write(std::string_view latin1) {
  constexpr std::string_view shifted = "#~";
  for (const char c : latin1) {
    const bool shift = shifted.find(c) != std::string_view::npos;
    if (shift) user.key_down(XK_Shift_L);
    user.type(static_cast<unsigned char>(c));
    if (shift) user.key_up(XK_Shift_L);
  }
}

void Desk::answer(const std::string& title, unsigned long keysym) {
  demand([&] { return screen.active().rfind(title, 0) == 0; }, title + " is not active");
  user.type(keysym);
}

bool Desk::open(const std::string& title) {
  const auto titles = screen.managed();
  return std::any_of(titles.begin(), titles.end(), [&](const auto& each) { return each.rfind(title, 0) == 0; });
}

void Desk::expect_end() {
  if (program.wait() != 0) throw std::runtime_error("the program does not end well");
  demand([&] { return screen.grabs() == 0; }, "pointer or keyboard is kept");
  demand([&] { return processes().empty(); }, "a process goes on");
}

std::vector<std::string> Desk::processes() const {
  std::vector<std::string> found;
  for (const auto& entry : std::filesystem::directory_iterator("/proc")) {
    if (contents(entry.path() / "environ").find("HOME=" + home_) == std::string::npos) continue;
    found.push_back(contents(entry.path() / "cmdline"));
  }
  return found;
}

}  // namespace stage
