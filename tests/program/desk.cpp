#include "tests/program/desk.h"

#include <X11/keysym.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "capture/miniature.h"
#include "forms/sk.h"
#include "hooklib/sampler.h"
#include "platform/number.h"
#include "platform/text.h"

using test_support::eventually;

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

Desk::Desk(const std::string& profile) : window_manager(test_support::start_window_manager(server)), user(server) {
  server.make_current();
  std::string folder = (std::filesystem::temp_directory_path() / "strokemind-desk-XXXXXX").string();
  home_ = mkdtemp(folder.data());
  std::filesystem::create_directories(path(".config/strokemind"));
  std::filesystem::create_directories(path("run"));
  std::filesystem::permissions(path("run"), std::filesystem::perms::owner_all);
  if (!profile.empty()) std::ofstream(profile_path(), std::ios::binary) << profile;
}

Desk::~Desk() {
  if (testing::Test::HasFailure()) screenshot("failed");
  program.end();
  std::error_code ignored;
  std::filesystem::remove_all(home_, ignored);
}

std::vector<std::string> Desk::environment() const {
  return {server.environment(), "HOME=" + home_, "XDG_CONFIG_HOME=" + path(".config"), "XDG_RUNTIME_DIR=" + path("run"),
          "LC_ALL=C.UTF-8"};
}

void Desk::start() {
  const std::string place =
      "[Pos]\r\nX=" + std::to_string(window_left * 15) + "\r\nY=" + std::to_string(window_top * 15) + "\r\n";
  std::ofstream(profile_path(), std::ios::binary | std::ios::app) << place;
  program = test_support::Process({std::string(PROGRAM_FOLDER) + "/Strokemind"}, environment());
  // The number of patrons stands in the status bar, whose rows are of one colour each without it.
  ASSERT_TRUE(eventually([&] {
    if (!program.running()) return true;
    const auto label = look(2000, 3150, 400, 180);
    constexpr int width = 400 / 15;
    for (std::size_t n = 0; n < label.size(); ++n) {
      if (label[n] != label[n - n % width] && label[n - n % width] != 0) return true;
    }
    return false;
  })) << "the program does not show its patrons";
  ASSERT_TRUE(program.running());
}

std::vector<std::uint32_t> Desk::look(int left, int top, int width, int height) {
  return user.pixels(window_left + left / 15, window_top + top / 15, width / 15, height / 15);
}

test_support::Process Desk::edit(const std::string& file) {
  std::ofstream(path(file)).flush();
  test_support::Process editor({"featherpad", "--standalone", path(file)}, environment());
  Watcher screen(server);
  EXPECT_TRUE(eventually([&] {
    for (const std::string& title : screen.managed()) {
      if (title.find(file) != std::string::npos) return true;
    }
    return false;
  })) << "the editor does not open";
  EXPECT_TRUE(eventually([&] { return screen.active().find(file) != std::string::npos; }))
      << "the editor does not get the keyboard";
  return editor;
}

void Desk::expect_edited(const std::string& file, const std::string& text) {
  // By the menu: Ctrl would stop the drawing for a moment.
  user.key_down(XK_Alt_L);
  user.type(XK_f);
  user.key_up(XK_Alt_L);
  user.type(XK_s);
  std::string found;
  EXPECT_TRUE(eventually([&] {
    found = contents(path(file));
    while (!found.empty() && found.back() == '\n') found.pop_back();
    return found == text;
  })) << found;
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

void Desk::draw_now(const Path& corners) {
  user.draw(3, along(corners));
  last_stroke_ms_ = now_ms();
}

void Desk::draw(const Path& corners) {
  constexpr int gate_ms = 750;  // reports up to 700 ms apart are not recognised; the report comes within the rest
  // The pointer over the bare window takes the last verdict off the information line.
  for (int twips = 3600; twips <= 3800; twips += 15) user.move_to(window_left + 1330 / 15, window_top + twips / 15);
  EXPECT_TRUE(eventually([&] { return !informs(); }));
  eventually([&] { return now_ms() - last_stroke_ms_ > gate_ms; });
  draw_now(corners);
}

void Desk::gesture(const Path& corners) {
  draw(corners);
  if (eventually([&] { return verdict_stands(); })) return;
  screenshot("no-verdict");
  FAIL() << "no verdict";
}

void Desk::screenshot(const std::string& name) const {
  const std::string folder = std::string(PROGRAM_FOLDER) + "/screenshots";
  std::filesystem::create_directories(folder);
  const auto* test = testing::UnitTest::GetInstance()->current_test_info();
  test_support::Process({"import", "-display", server.display(), "-window", "root",
                         folder + "/" + (test != nullptr ? test->name() : "test") + "-" + name + ".png"})
      .wait();
}
