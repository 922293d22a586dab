// The program in a panel's tray, and its end from wherever it is.
#include <X11/keysym.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <filesystem>
#include <functional>
#include <thread>

#include "tests/program/desk.h"

using testing::ElementsAre;
using testing::HasSubstr;

namespace {

struct TrayedTest : testing::Test {
  Desk desk{section("COIN", corner, "P:touch ~/ran")};
  Process panel{{"trayer", "--edge", "bottom", "--align", "left", "--SetDockType", "true"}, desk.environment()};

  // Chooses from the open menu.
  void choose(int entry) {
    for (int n = 0; n <= entry; ++n) desk.user.type(XK_Down);
    desk.user.type(XK_Return);
  }
  static constexpr int show = 0, pause = 1, colours = 2, quit = 3;
};

TEST_F(TrayedTest, PauseShowAndExitByTheMenu) {
  desk.start_in_tray();
  const auto opened = std::chrono::steady_clock::now();
  desk.screenshot("menu");
  EXPECT_FALSE(desk.open("Strokemind")) << "with patrons the window stays hidden";
  EXPECT_TRUE(desk.tray_shows(true));
  choose(pause);
  EXPECT_TRUE(eventually([&] { return desk.tray_shows(false) && desk.screen.popups() == 0; }));
  {
    Watcher target(desk.server, 100, 200, 700, 500);
    desk.drag(corner);
    EXPECT_TRUE(eventually([&] { return target.events().size() == 3; }));
    EXPECT_THAT(target.events(), ElementsAre("press 3", "motion", "release 3"));
    EXPECT_FALSE(std::filesystem::exists(desk.path("ran")));
  }
  // The pause lasts until the menu's own time is over; then Ctrl ends it. A press that the program answers late must
  // not be followed by another: that would come in the midst of the drawing.
  constexpr int answer_ms = 5000;
  std::this_thread::sleep_until(opened + std::chrono::milliseconds(2000));
  EXPECT_TRUE(eventually([&] {
    desk.user.type(XK_Control_L);
    return eventually([&] { return desk.tray_shows(true) && desk.screen.right_button_is_taken(); }, answer_ms);
  }));
  desk.draw_now(corner);
  EXPECT_TRUE(eventually([&] { return std::filesystem::exists(desk.path("ran")); }));

  desk.open_tray_menu();
  choose(show);
  EXPECT_TRUE(eventually([&] { return desk.open("Strokemind"); }));
  desk.click(4770, 120);
  EXPECT_TRUE(eventually([&] { return !desk.open("Strokemind"); }));
  desk.open_tray_menu();
  std::filesystem::remove(desk.profile_path());
  choose(quit);
  EXPECT_EQ(desk.program.wait(), 0);
  panel.end();
  desk.expect_end();
  EXPECT_THAT(contents(desk.profile_path()), HasSubstr("[COIN]\r\n"));
}

TEST_F(TrayedTest, ColoursThemeTheWholeWindow) {
  desk.start_in_tray();
  choose(colours);
  EXPECT_TRUE(eventually([&] { return desk.screen.active() == "Couleurs"; }));
  desk.user.key_down(XK_Alt_L);
  desk.user.type(XK_h);
  desk.user.key_up(XK_Alt_L);
  desk.write("#ff0000");
  desk.screenshot("dialog");
  desk.user.type(XK_Return);
  EXPECT_TRUE(eventually([&] { return !desk.open("Couleurs"); }));
  desk.open_tray_menu();
  choose(show);
  constexpr std::uint32_t red = 0xFF0000;
  const auto whole = [&] { return desk.look(0, 0, 4995, 4500); };
  EXPECT_TRUE(eventually([&] {
    const auto window = whole();
    return std::count(window.begin(), window.end(), red) > 1000;
  }));
  desk.screenshot("red");
  const auto window = whole();
  EXPECT_EQ(std::count_if(window.begin(), window.end(), [](auto p) { return (p >> 8 & 0xFF) > 0x30; }), 0);
  EXPECT_EQ(desk.look(0, 2250, 15, 15).front(), red) << "the frame";
  EXPECT_EQ(desk.look(1500, 225, 15, 15).front(), red) << "the title bar's last row";
}

// Whatever is open in front of the program, it saves and goes when it is told to.
TEST_F(TrayedTest, EndsFromWhereverItIs) {
  // By the keyboard where two clicks would do: while the menu has just gone, the window manager may keep the second.
  const auto open_window = [&] {
    choose(show);
    EXPECT_TRUE(eventually([&] { return desk.open("Strokemind"); }));
  };
  const struct {
    std::string title;
    int signal;
    std::function<void()> open;
  } cases[] = {
      {"", SIGTERM, [] {}},  // the menu
      {"Couleurs", SIGINT, [&] { choose(colours); }},
      {"Actions:", SIGHUP, [&] { open_window(), desk.answer("Strokemind", XK_Down), desk.user.type(XK_Return); }},
      {"Supprimer", SIGTERM, [&] { open_window(), desk.answer("Strokemind", XK_Down), desk.click(2227, 3765); }}};
  for (const auto& one : cases) {
    SCOPED_TRACE(one.title);
    desk.start_in_tray();
    const std::string before = contents(desk.profile_path());
    one.open();
    EXPECT_TRUE(
        eventually([&] { return one.title.empty() ? desk.screen.popups() > 0 : desk.screen.active() == one.title; }));
    desk.screenshot(one.title);
    std::filesystem::remove(desk.profile_path());
    desk.program.signal(one.signal);
    EXPECT_EQ(desk.program.wait(), 0);
    EXPECT_TRUE(eventually([&] { return desk.screen.grabs() == 0 && !desk.screen.right_button_is_taken(); }));
    EXPECT_EQ(contents(desk.profile_path()), before);
  }
  panel.end();
  desk.expect_end();
}

}  // namespace
