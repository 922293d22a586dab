#include <X11/keysym.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/ptrace.h>
#include <sys/wait.h>

#include <csignal>
#include <filesystem>
#include <fstream>

#include "tests/program/desk.h"

using testing::ElementsAre;

namespace {

const Path scribble = {{200, 300}, {420, 320}, {210, 420}, {420, 330}, {205, 500}, {410, 510}, {300, 300}};

TEST(Gesture, OpensItsProgram) {
  Desk desk(section("COIN", corner, "P:xterm -T 'un titre'"));
  desk.start();
  Watcher screen(desk.server);
  desk.draw(corner);
  EXPECT_TRUE(eventually([&] { return !screen.managed().empty() && screen.managed().back() == "un titre"; }));
  // It outlives Strokemind.
  desk.program.signal(SIGTERM);
  EXPECT_EQ(desk.program.wait(), 0);
  EXPECT_THAT(screen.managed(), ElementsAre("un titre"));
}

TEST(Gesture, CutsPastesAndSelectsAllInAnEditor) {
  Desk desk(section("A", corner, "C:Tout") + section("B", slope, "C:Couper") + section("C", peak, "C:Coller"));
  desk.start();
  auto editor = desk.edit("a.txt");
  desk.write("mot");
  EXPECT_TRUE(eventually([&] { return desk.screen.active().front() == '*'; })) << "the text has arrived";
  desk.gesture(corner);
  desk.gesture(slope);
  desk.gesture(peak);
  desk.gesture(peak);
  desk.expect_edited("a.txt", "motmot");
}

TEST(Gesture, TheSecondWithin700MillisecondsIsNotRecognised) {
  Desk desk(section("COIN", corner, "P:touch ~/un") + section("PENTE", slope, "P:touch ~/deux"));
  desk.start();
  const auto done = [&](const char* name) { return std::filesystem::exists(desk.path(name)); };
  // A machine that was busy elsewhere has not drawn two strokes that close: then they are drawn again.
  constexpr std::int64_t close_enough_ms = 500;
  do {
    desk.draw(corner);
    EXPECT_TRUE(eventually([&] { return done("un"); }));
    std::filesystem::remove(desk.path("un"));
    std::filesystem::remove(desk.path("deux"));
  } while (desk.draw_now(slope) > close_enough_ms);
  // Reports are dealt with in their order: when the third has had its effect, the second has had its own.
  desk.draw(corner);
  EXPECT_TRUE(eventually([&] { return done("un"); }));
  EXPECT_FALSE(done("deux"));
}

TEST(Gesture, TypesItsTextButUnknownOrOverTheMainWindowDoesNothing) {
  Desk desk(section("COIN", corner, "T:Bonjour, ça va{ENTER}œuvre à 12 € {(}{+}5 {%}{)} ?."));
  desk.start();
  auto editor = desk.edit("a.txt");
  desk.gesture(scribble);
  EXPECT_TRUE(eventually([&] { return desk.informs() && !desk.verdict_stands(); })) << "Prêt...";
  desk.gesture(corner);
  // Released over the main window, though recognised.
  desk.gesture({{900, 100}, {900, 200}, {1010, 200}});
  desk.gesture(corner);
  const std::string once = "Bonjour, ça va\nœuvre à 12 € (+5 %) ?.";
  desk.expect_edited("a.txt", once + once);
}

TEST(RightButton, AClickOpensTheContextMenuAndItStays) {
  Desk desk(section("COIN", corner, "T:un"));
  desk.start();
  auto editor = desk.edit("a.txt");
  desk.user.move_to(300, 400);
  desk.user.click(3);
  ASSERT_TRUE(eventually([&] { return desk.screen.popups() == 1; }));
  // It goes on living under the hand: it follows the keyboard, and only Escape closes it.
  for (int n = 0; n < 20; ++n) {
    desk.user.type(XK_Down);
    desk.user.move_to(500 + n, 600);
    ASSERT_EQ(desk.screen.popups(), 1);
  }
  desk.screenshot("menu");
  desk.user.type(XK_Escape);
  EXPECT_TRUE(eventually([&] { return desk.screen.popups() == 0; }));
}

TEST(RightButton, UnderCtrlItIsTheApplications) {
  Desk desk(section("COIN", corner, "P:touch ~/ran"));
  desk.start();
  auto editor = desk.edit("a.txt");  // has the keyboard: keys pressed in the main window would count twice
  Watcher target(desk.server, 100, 200, 700, 500);
  const int icons = target.icon_changes("Strokemind");
  desk.user.key_down(XK_Control_L);
  desk.drag(corner);
  desk.user.key_up(XK_Control_L);
  EXPECT_TRUE(eventually([&] { return !target.events().empty() && target.events().back() == "release 3"; }));
  EXPECT_THAT(target.events(), ElementsAre("press 3", "motion", "release 3"));
  EXPECT_FALSE(std::filesystem::exists(desk.path("ran")));

  // Ctrl stops the program and its release lets it go on, which the icon shows: the next drawing is one again.
  ASSERT_TRUE(
      eventually([&] { return target.icon_changes("Strokemind") >= icons + 2 && target.right_button_is_taken(); }));
  desk.draw_now(corner);
  EXPECT_TRUE(eventually([&] { return std::filesystem::exists(desk.path("ran")); }));
}

// Only the thread that serves the windows hangs: the button is the user's until it goes on.
TEST(RightButton, IsFreeWhileTheProgramHangs) {
  Desk desk(section("COIN", corner, "P:touch ~/ran"));
  desk.start();
  const auto draws = [&] {
    desk.draw_now(corner);
    return eventually([&] { return std::filesystem::remove(desk.path("ran")); });
  };
  ASSERT_TRUE(draws());
  const pid_t thread = desk.program.pid();
  if (ptrace(PTRACE_SEIZE, thread, nullptr, nullptr) != 0) GTEST_SKIP() << "no thread can be held here";
  ptrace(PTRACE_INTERRUPT, thread, nullptr, nullptr);
  waitpid(thread, nullptr, 0);
  desk.user.type(XK_F5);  // whether it hangs is asked while the user is about
  EXPECT_TRUE(eventually([&] { return !desk.screen.right_button_is_taken(); }));
  Watcher target(desk.server, 100, 200, 700, 500);
  desk.drag(corner);
  EXPECT_TRUE(eventually([&] {
    return target.events() == std::vector<std::string>{"press 3", "motion", "release 3"};
  }));
  ptrace(PTRACE_DETACH, thread, nullptr, nullptr);
  EXPECT_TRUE(eventually([&] { return desk.screen.right_button_is_taken(); }));
  EXPECT_TRUE(draws());
}

}  // namespace
