#include "tests/core/scene.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr platform::Handle editor = 7;
constexpr platform::Handle its_child = 8;

// A program with one patron bound to `action`, and a window of another program with a child under the pointer.
struct Bound : Scene {
  explicit Bound(const std::string& action) : Scene(platform::to_cp1252(section("EQUERRE", draw_l, action))) {
    desktop.others = {{editor, 0, 0, 0, 1920, 1080}, {its_child, editor, 0, 0, 1920, 1080}};
    start();
  }
  // What drawing the patron asks of the desktop, calls that begin with `start` alone.
  std::vector<std::string> run(std::string_view start) {
    const std::size_t before = desktop.journal.lines.size();
    desktop.advance(1000);
    draw(draw_l);
    std::vector<std::string> calls;
    for (std::size_t n = before; n < desktop.journal.lines.size(); ++n) {
      const std::string& line = desktop.journal.lines[n];
      if (line.starts_with(start)) calls.push_back(line.substr(start.size()));
    }
    return calls;
  }
};

TEST(Commands, SendTheirKeys) {
  const auto control = [](const std::string& letter) {
    return std::vector<std::string>{"11 0 0 0", letter + " 0 0 0", letter + " 0 2 0", "11 0 2 0"};
  };
  const std::vector<std::pair<std::string, std::vector<std::string>>> table = {
      {"Couper", control("58")},
      {"Tout", control("41")},
      {"Copier", control("43")},
      {"Coller", control("56")},
      {"Fermer", {"12 0 1 0", "73 0 0 0", "73 0 2 0", "12 0 3 0"}},
      {"Précédent", {"a6 0 1 0", "a6 0 3 0"}},
      {"Suivant", {"a7 0 1 0", "a7 0 3 0"}},
      {"Session", {"5b 0 1 0", "4c 0 1 0", "4c 0 3 0", "5b 0 3 0"}},
      {"copier", {}},
      {"Copier!", {}},
      {"", {}},
  };
  for (const auto& [label, keys] : table) EXPECT_EQ(Bound("C:" + label).run("keybd_event "), keys) << label;
}

TEST(Commands, AskTheShellThroughAFreshObject) {
  const std::vector<std::pair<const char*, std::vector<std::string>>> table = {{"Cascade", {"CascadeWindows"}},
                                                                               {"Horizontal", {"TileHorizontally"}},
                                                                               {"Vertical", {"TileVertically"}},
                                                                               {"Fin", {"ShutdownWindows"}},
                                                                               {"Exécuter", {"FileRun"}}};
  for (const auto& [label, member] : table) {
    const auto calls = Bound(std::string("C:") + label).run("shell ");
    EXPECT_THAT(calls, ElementsAre("object created", member.front(), "object released")) << label;
  }
  Bound bureau("C:Bureau");
  const std::vector<std::string> members{bureau.run("shell ").at(1), bureau.run("shell ").at(1),
                                         bureau.run("shell ").at(1)};
  EXPECT_THAT(members, ElementsAre("MinimizeAll", "UndoMinimizeALL", "MinimizeAll"));
}

TEST(Commands, TakeTheTopLevelWindowUnderThePointer) {
  Bound grow("C:Agrandir");
  EXPECT_THAT(grow.run("ShowWindow "), ElementsAre("7 3"));
  EXPECT_THAT(grow.run("ShowWindow "), ElementsAre("7 1"));
  grow.desktop.others[0].state = platform::SW_SHOWMINIMIZED;
  EXPECT_THAT(grow.run("ShowWindow "), IsEmpty());
  grow.desktop.others.clear();
  EXPECT_THAT(grow.run("ShowWindow "), IsEmpty()) << "nothing under the pointer";
  EXPECT_THAT(Bound("C:Diminuer").run("ShowWindow "), ElementsAre("7 2"));

  Bound self("C:Stroke-Mind");
  EXPECT_THAT(self.run("AnimateWindow "), ElementsAre("101 500 a0000"));
  EXPECT_TRUE(self.desktop.on_screen(self.programme.sk()));
}

TEST(Commands, EveryLabelOfTheEditorDoesSomething) {
  const Actions form;
  for (const auto& label : form.lblComC) {
    EXPECT_THAT(Bound("C:" + label->Caption.get()).run(""), testing::SizeIs(testing::Gt(2U))) << label->Caption.get();
  }
}

}  // namespace
