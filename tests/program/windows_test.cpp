// The main window and the editor under a user's hands.
#include <X11/keysym.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <numeric>
#include <optional>

#include "stage/keyboard.h"
#include "tests/program/desk.h"

using testing::HasSubstr;

namespace {

using Pixels = std::vector<std::uint32_t>;

// Places in the windows, twips.
struct Place {
  int x, y;
};
constexpr Place close_button{190, 120}, help_button{3920, 3240}, about_button{3680, 3240};
constexpr Place remove_command{2227, 3765}, save_command{4027, 3765};
constexpr Place kind_command{1800, 930}, kind_text{1600, 1260}, kind_program{1800, 1620};  // of the editor
constexpr Place copy_command{1200, 2640}, clear_button{4750, 3010}, close_editor{4770, 120};

// The picture of the n-th row of thumbnails.
constexpr Place row(int n) {
  return {600 + n / 2 * 1200, 650 + n % 2 * 1420};
}

struct WindowsTest : testing::Test {
  void make(const std::string& profile) {
    desk.emplace(profile);
    desk->start();
    main_title = title();
  }
  void click(Place place, int times = 1) { desk->click(place.x, place.y, times); }
  Pixels list() { return desk->look(45, 240, 4890, 2600); }
  Pixels panel() { return desk->look(150, 300, 4600, 2700); }
  bool informs_green() {
    const Pixels line = desk->look(150, 4200, 3000, 130);
    const auto greenish = [](std::uint32_t pixel) { return (pixel >> 8 & 0xFF) > 100 && pixel >> 16 < 50; };
    return desk->verdict_stands() && std::count_if(line.begin(), line.end(), greenish) > 20;
  }
  // Whether the n-th row's name stands in reverse.
  bool selected(int n) {
    const Pixels under = desk->look(row(n).x - 450, row(n).y + 480, 900, 300);
    return std::count(under.begin(), under.end(), 0x00FF00U) > static_cast<std::ptrdiff_t>(under.size() / 15);
  }
  std::string saved() { return contents(desk->profile_path()); }
  // The editor opens upon the main window, and has the keyboard a moment before it stands in front.
  void expect_editor() {
    EXPECT_TRUE(eventually([&] { return desk->screen.active() == "Actions:" && title() != main_title; }));
  }
  // By the keyboard: while a window has just gone, the window manager may keep the second of two clicks to itself.
  void open_editor(int n) {
    click(row(n));
    EXPECT_TRUE(eventually([&] { return selected(n) && desk->screen.active() == "Strokemind"; }));
    desk->user.type(XK_Return);
    expect_editor();
  }
  // Chooses a kind of action, and waits until its box invites to type: its prompt stands in reverse.
  void choose_box(Place kind, int top) {
    click(kind);
    EXPECT_TRUE(eventually([&] {
      const Pixels prompt = desk->look(500, top, 1500, 120);
      return std::count(prompt.begin(), prompt.end(), 0x00FF00U) > static_cast<std::ptrdiff_t>(prompt.size() / 3);
    }));
  }
  void expect_no_editor() {
    EXPECT_TRUE(eventually([&] { return !desk->open("Actions:") && title() == main_title; }));
  }
  Pixels title() { return desk->look(1680, 15, 2000, 200); }
  void close() {
    click(close_button);
    desk->expect_end();
  }

  std::optional<Desk> desk;
  Pixels main_title;
};

TEST_F(WindowsTest, AShapeIsSavedRecognisedKeptAndDeleted) {
  make("");
  const Pixels empty = list();
  desk->draw(corner);
  EXPECT_TRUE(eventually([&] { return desk->informs() && !desk->verdict_stands(); })) << "unknown, then Prêt...";
  click(save_command);
  EXPECT_TRUE(eventually([&] { return desk->screen.active().rfind("Patron n", 0) == 0; }));
  desk->write("mon coin");
  desk->screenshot("name");
  desk->user.type(XK_Return);
  EXPECT_TRUE(eventually([&] { return selected(0) && list() != empty; }));
  EXPECT_TRUE(eventually([&] { return saved().rfind("[MON_COIN]\r\nInd=32\r\n", 0) == 0; })) << saved();
  desk->gesture(corner);
  EXPECT_TRUE(eventually([&] { return informs_green(); }));
  desk->screenshot("recognised");
  close();

  const std::string kept = saved();
  make(kept);
  EXPECT_TRUE(eventually([&] { return list() != empty && !selected(0); }));
  desk->gesture(corner);
  EXPECT_TRUE(eventually([&] { return informs_green() && selected(0); }));
  click(row(0));
  click(remove_command);
  desk->answer("Supprimer", XK_Escape);
  EXPECT_TRUE(eventually([&] { return !desk->open("Supprimer"); }));
  EXPECT_EQ(saved(), kept);
  click(remove_command);
  desk->answer("Supprimer", XK_Return);
  EXPECT_TRUE(eventually([&] { return list() == empty; }));
  EXPECT_TRUE(eventually([&] { return saved().rfind("[Pos]", 0) == 0; })) << saved();
  desk->gesture(corner);
  EXPECT_FALSE(informs_green());
}

TEST_F(WindowsTest, TheEditorBindsWhatGesturesThenDo) {
  make(section("A", corner, "") + section("B", slope, "") + section("C", peak, ""));
  // A keyboard with accents.
  stage::set_layout(desk->server, "fr");
  click(row(0), 2);
  expect_editor();
  click(kind_command);
  desk->screenshot("commands");
  click(copy_command);
  expect_no_editor();
  open_editor(1);
  choose_box(kind_text, 2340);
  desk->write("\xE9t\xE9 \xE0 la \xE7");
  desk->screenshot("text");
  desk->user.type(XK_Return);
  expect_no_editor();
  stage::set_layout(desk->server, "us");
  open_editor(2);
  choose_box(kind_program, 2710);
  desk->write("touch ~/ran");
  desk->screenshot("program");
  desk->user.type(XK_Return);
  expect_no_editor();

  {
    auto editor = desk->edit("a.txt");
    desk->write("mot");
    EXPECT_TRUE(eventually([&] { return desk->screen.active().front() == '*'; })) << "the text has arrived";
    desk->user.key_down(XK_Shift_L);
    desk->user.type(XK_Home);
    desk->user.key_up(XK_Shift_L);
    desk->gesture(corner);
    EXPECT_TRUE(eventually([&] {
      return Process({"sh", "-c", "xclip -o -selection clipboard 2>/dev/null; echo"}, desk->environment(), true)
                 .read_line() == "mot";
    }));
    desk->gesture(slope);
    desk->expect_edited("a.txt", "été à la ç");
    desk->gesture(peak);
    EXPECT_TRUE(eventually([&] { return std::filesystem::exists(desk->path("ran")); }));
  }

  open_editor(0);
  click(clear_button);
  desk->answer("Strokemind", XK_Return);
  EXPECT_TRUE(eventually([&] { return desk->screen.active() == "Actions:"; }));
  click(close_editor);
  expect_no_editor();
  close();
  const std::string bound = saved();
  EXPECT_THAT(bound, HasSubstr("Actionassoci\xE9=\r\n[B]"));
  EXPECT_THAT(bound, HasSubstr("Actionassoci\xE9=T:\xE9t\xE9 \xE0 la \xE7\r\n[C]"));
  EXPECT_THAT(bound, HasSubstr("Actionassoci\xE9=P:touch ~/ran\r\n[Pos]"));
  make(bound);
  close();
  EXPECT_EQ(saved(), bound);
}

// By how many rows what stood in the first look has moved up in the second; 0 if it has not, or is not to be found.
std::ptrdiff_t moved_up(const Pixels& before, const Pixels& after, std::ptrdiff_t width) {
  const std::ptrdiff_t compared = std::ssize(before) / width / 2;
  const auto begin = before.begin() + compared / 2 * width;  // the middle, where the text is whole
  for (std::ptrdiff_t shift = 1; shift < compared / 2; ++shift) {
    if (std::equal(begin, begin + compared * width, after.begin() + (compared / 2 - shift) * width)) return shift;
  }
  return 0;
}

double brightness(const Pixels& pixels) {
  return std::accumulate(pixels.begin(), pixels.end(), 0.0, [](double sum, auto p) { return sum + (p >> 8 & 0xFF); }) /
         static_cast<double>(pixels.size());
}

TEST_F(WindowsTest, TheHelpRollsWhileGesturesAreRecognised) {
  make(section("A", corner, "P:touch ~/ran"));
  desk->gesture(corner);  // selects the row
  EXPECT_TRUE(eventually([&] { return std::filesystem::remove(desk->path("ran")); }));
  const Pixels rows = list();
  click(help_button);
  constexpr std::ptrdiff_t width = 4600 / 15;
  Pixels before = panel(), after;
  EXPECT_TRUE(eventually([&] {
    after = panel();
    const std::ptrdiff_t moved = moved_up(before, after, width);
    if (moved == 0) before = after;  // nothing of it is left: it came too early, or this look too late
    return moved >= 10;
  })) << "the text moves up";
  desk->screenshot("rolling");
  for (int n = 0; n < 20; ++n) {
    desk->gesture(corner);
    ASSERT_TRUE(eventually([&] { return std::filesystem::remove(desk->path("ran")); })) << n;
  }
  // A click on the text stops it: for longer than many steps of the roll nothing changes.
  click({2400, 1500});
  using Clock = std::chrono::steady_clock;
  auto since = Clock::now();
  EXPECT_TRUE(eventually([&] {
    if (Pixels now = panel(); now != after) {
      after = std::move(now);
      since = Clock::now();
    }
    return Clock::now() - since > std::chrono::milliseconds(500);
  })) << "it stands still";
  click({2400, 1500});
  EXPECT_TRUE(eventually([&] { return panel() != after; }));
  click(help_button);
  EXPECT_TRUE(eventually([&] { return list() == rows; })) << "the list is back";

  click(about_button);
  EXPECT_TRUE(eventually([&] { return brightness(desk->look(3000, 270, 1500, 90)) > 100; })) << "the strip";
  double first = 0;
  const auto mosaic = [&] { return brightness(desk->look(150, 600, 4600, 2000)); };
  EXPECT_TRUE(eventually([&] { return (first = mosaic()) > 10; }));
  desk->screenshot("positive");
  EXPECT_TRUE(eventually([&] { return mosaic() > 2 * first; })) << first << " " << mosaic();
  desk->screenshot("negative");
  click(about_button);
  EXPECT_TRUE(eventually([&] { return list() == rows; }));

  click(help_button);
  EXPECT_TRUE(eventually([&] { return list() != rows; }));
  close();
  EXPECT_THAT(saved(), HasSubstr("[A]\r\n"));
}

TEST_F(WindowsTest, TheTitleBarDragsTheWindowAndItsEdgesStick) {
  make("");
  constexpr int x = 940, y = 10, right = 1280 - 333, bottom = 800 - 34 - 300;
  const auto move = [&](int dx, int dy) { desk->user.move_to(x + 1200 / 15 + dx, y + 120 / 15 + dy); };
  const auto expect = [&](int dx, int dy, int to_x, int to_y) {
    move(dx, dy);
    EXPECT_TRUE(eventually([&] { return desk->screen.place("Strokemind") == std::pair(to_x, to_y); }))
        << to_x << "," << to_y << ": " << testing::PrintToString(desk->screen.place("Strokemind"));
  };
  move(0, 0);
  desk->user.press(1);
  // The user does not wait for the window to get there; it ends up under the pointer all the same.
  for (int n = 3; n < 40; ++n) move(-n * 13, 25 + n * 7);
  expect(-520, 305, x - 520, y + 305);
  expect(15 - x, 200, 0, y + 200);
  expect(-300, bottom + 34 - y - 9, x - 300, bottom);
  expect(right - x + 8, 300, right, y + 300);
  desk->user.release(1);
}

}  // namespace
