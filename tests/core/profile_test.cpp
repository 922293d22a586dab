#include "tests/core/scene.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

// Starts on a file and stops; gives what is on the disk afterwards.
struct Visit {
  explicit Visit(const std::string& file) : scene(file) {
    scene.start();
    table = scene.programme.table();
    scene.programme.quit();
    kept = scene.desktop.files.files.contains("Strokemind.AI.ancien");
  }
  Scene scene;
  Mod_dessin::Table table;
  bool kept = false;
};

TEST(Profile, ComesBackByteForByte) {
  // Numbers keep the spelling of whoever wrote them: 21,33333 and 21,3333300 alike, 1E-05 and 0,00001.
  for (const std::string& file :
       {three_patrons, std::string("[Pos]\r\nX=0\r\nY=-15,5\r\n"),
        platform::to_cp1252("[ÉTÉ]\r\nInd=2\r\nX=.1E-05.0,00001\r\nY=.21,3333300.-4,266667E-02\r\nActionassocié=T:a=b"
                            " ;[c] œ€ {U+6F22}\r\n[VIDE]\r\nInd=0\r\nX=\r\nY=\r\nActionassocié=\r\n"
                            "[Pos]\r\nX=3450\r\nY=1200\r\n")}) {
    Visit visit(file);
    EXPECT_EQ(visit.scene.saved(), file);
    EXPECT_FALSE(visit.kept);
    EXPECT_EQ(visit.scene.journal("replace").size(), 1U) << "one replacement a save";
  }
}

TEST(Profile, FillsTheTableAndTheList) {
  Visit visit(three_patrons);
  EXPECT_EQ(visit.table.nb_patrons, 3);
  const Mod_dessin::Patron& bar = visit.table.patrons[1];
  EXPECT_EQ(bar.Nom, "BARRE");
  EXPECT_EQ(bar.Ind, 3);
  EXPECT_THAT(bar.Y.values, ElementsAre(0, -0.1875, 0));
  auto& list = visit.scene.programme.sk().LV;
  ASSERT_EQ(list.Count(), 3);
  EXPECT_EQ(list.row(3).Text.get(), "PENTE");
  EXPECT_EQ(list.row(3).SubItems(1).get(), "32");
  EXPECT_EQ(list.row(3).SubItems(2).get(), "P:/usr/bin/xterm");
}

TEST(Profile, SplitsAtTheMarkAndAtBlanks) {
  simulation::Journal journal;
  simulation::ProfileFiles files(journal);
  platform::ProfileService service(files);
  Mod_ini ini(service, "Strokemind.AI");
  SK sk;
  Mod_dessin::Table table;
  Mod_dessin::Profil profil(ini, sk, table);
  EXPECT_EQ(profil.decouper("un.deux trois", '.', 0), 3);
  EXPECT_EQ(profil.decouper(".un.deux.", '.', 1), 2);
  EXPECT_EQ(profil.decouper("É.un", '.', 1), 2) << "a character goes whole, and what is empty counts";
  EXPECT_EQ(profil.decouper("un", '.', 3), 0);
  EXPECT_EQ(profil.decouper("", '.', 0), 0);
}

// Files that are not quite what the program writes: what is taken of them, and that nothing is lost.
TEST(Profile, TakesWhatItCanAndKeepsTheRest) {
  struct Case {
    const char* what;
    std::string file;
    int patrons;
    int points;  // of slot 0
    bool kept;
  };
  const std::string pos = "[Pos]\r\nX=3450\r\nY=1200\r\n";
  const auto section = [](const std::string& body) { return "[A]\r\n" + body + "Actionassoci\xE9=\r\n"; };
  std::string many;
  for (int n = 0; n < 101; ++n) many += "[N" + std::to_string(n) + "]\r\nInd=0\r\nX=\r\nY=\r\nActionassoci\xE9=\r\n";
  std::string keys = "Ind=0\r\n";
  for (int n = 0; n < 1001; ++n) keys += "K" + std::to_string(n) + "=1\r\n";
  for (const Case& c : std::vector<Case>{
           {"unix line ends", "[A]\nInd=2\nX=.1.2\nY=.3.4\nActionassoci\xE9=\n[Pos]\nX=1\nY=2", 1, 2, false},
           {"more numbers than there is room for", section("Ind=1\r\nX=.1" + std::string(6000, '.') + "\r\nY=.3\r\n"),
            1, 1, true},
           {"too many keys", section(keys) + pos, 1, 0, true},
           {"a tab behind a number", section("Ind=2\r\nX=.1.\t.3\r\nY=.3.4\r\n") + pos, 1, 2, true},
           {"no Ind", section("X=.1.2\r\nY=.3.4\r\n") + pos, 1, 0, true},
           {"Ind too large", section("Ind=3\r\nX=.1.2\r\nY=.3.4\r\n") + pos, 1, 2, true},
           {"Ind too small", section("Ind=1\r\nX=.1.2\r\nY=.3.4\r\n") + pos, 1, 1, true},
           {"Ind negative", section("Ind=-2\r\nX=.1.2\r\nY=.3.4\r\n") + pos, 1, 2, true},
           {"Ind spelt otherwise", section("Ind=02\r\nX=.1.2\r\nY=.3.4\r\n") + pos, 1, 2, true},
           {"Ind no number", section("Ind=99999999999\r\nX=.1.2\r\nY=.3.4\r\n") + pos, 1, 2, true},
           {"lists of unequal length", section("Ind=2\r\nX=.1.2\r\nY=.3\r\n") + pos, 1, 1, true},
           {"no number in a list", section("Ind=2\r\nX=.1.x\r\nY=.3.4\r\n") + pos, 1, 2, true},
           {"a decimal point in a list", section("Ind=2\r\nX=.1.5.2\r\nY=.3.4\r\n") + pos, 1, 2, true},
           {"a patron with the name of the position", "[pos]\r\nInd=1\r\nX=.1\r\nY=.3\r\n", 0, 0, true},
           {"a number missing at the end", section("Ind=2\r\nX=.1..2\r\nY=.3.4\r\n") + pos, 1, 2, true},
           {"an unknown key", section("Ind=0\r\nX=\r\nY=\r\nZ=1\r\n") + pos, 1, 0, true},
           {"a comment", "; mine\r\n" + pos, 0, 0, true},
           {"a section twice", section("Ind=0\r\nX=\r\nY=\r\n") + "[a]\r\nInd=1\r\n" + pos, 1, 0, true},
           {"something behind the position", pos + section("Ind=0\r\nX=\r\nY=\r\n"), 0, 0, true},
           {"a name with blanks", "[UN  DEUX]\r\nInd=0\r\nX=\r\nY=\r\nActionassoci\xE9=\r\n" + pos, 2, 0, true},
           {"a name with tabs", "[UN\t \tDEUX]\r\nInd=0\r\nX=\r\nY=\r\nActionassoci\xE9=\r\n" + pos, 2, 0, true},
           {"the name of a deleted slot", "[-]\r\nInd=0\r\nX=\r\nY=\r\nActionassoci\xE9=\r\n" + pos, 0, 0, true},
           {"too many sections", many + pos, 100, 0, true},
           {"a position that is none", "[Pos]\r\nX=abc\r\nY=1E+30\r\n", 0, 0, true},
           {"no position", section("Ind=1\r\nX=.1\r\nY=.3\r\n"), 1, 1, false},
           {"the position in capitals", section("Ind=1\r\nX=.1\r\nY=.3\r\n") + "[POS]\r\nX=30\r\nY=45,5\r\n", 1, 1,
            false},
           {"binary rubbish", std::string("\0\xFF[\x01\x02\n=\x80\0]", 10), 0, 0, true},
           {"no line ends", std::string(70000, 'x'), 0, 0, true},
           {"a long value", section("Ind=1\r\nX=.1" + std::string(60000, '0') + "\r\nY=.3\r\n") + pos, 1, 1, true}}) {
    Visit visit(c.file);
    EXPECT_EQ(visit.table.nb_patrons, c.patrons) << c.what;
    EXPECT_EQ(visit.table.patrons[0].Ind, c.points) << c.what;
    EXPECT_EQ(visit.kept, c.kept) << c.what;
    EXPECT_EQ(visit.scene.desktop.files.files["Strokemind.AI.ancien"], c.kept ? c.file : "") << c.what;
    EXPECT_EQ(visit.scene.desktop.exit_status(), 0) << c.what;
    EXPECT_THAT(visit.scene.journal("MsgBox"), IsEmpty()) << c.what;
    // What was written is taken in whole the next time.
    Visit again(visit.scene.saved());
    EXPECT_EQ(again.scene.saved(), visit.scene.saved()) << c.what;
  }
}

TEST(Profile, KeepsWhatIsSavedBesideAnOddName) {
  Scene scene("[COPIER - COLLER]\r\nInd=0\r\n[Pos]\r\nX=1\r\nY=2\r\n");
  scene.start();
  for (const char* name : {"un", "deux", "trois"}) {
    scene.desktop.input_answers.push_back(name);
    scene.fire(scene.programme.sk().lblCom(2).Click);
  }
  const Visit visit(scene.saved());
  EXPECT_EQ(visit.table.nb_patrons, 5);
  EXPECT_EQ(visit.table.patrons[4].Nom, "TROIS");
}

TEST(Profile, FindsThePositionUnderAnotherSpelling) {
  Visit visit("[pos]\r\nX=30\r\nY=45,50\r\n");
  EXPECT_EQ(visit.scene.programme.sk().Top.get(), 45.5F);
  EXPECT_EQ(visit.scene.saved(), "[Pos]\r\nX=30\r\nY=45,50\r\n") << "spelt as it was, since the window has not moved";
}

TEST(Profile, ManySections) {
  std::string file;
  for (int n = 0; n < 10000; ++n) file += "[SECTION" + std::to_string(n) + "]\r\nInd=0\r\n";
  Visit visit(file);
  EXPECT_EQ(visit.table.nb_patrons, 100);
  EXPECT_TRUE(visit.kept);
}

TEST(Profile, IsNotOverwrittenWhereNoCopyCanBeKept) {
  Scene scene("; mine\r\n" + three_patrons);
  scene.start();
  scene.desktop.journal.faults["set_aside"] = -1;
  scene.programme.quit();
  EXPECT_EQ(scene.saved(), "; mine\r\n" + three_patrons);
  EXPECT_THAT(scene.journal("replace"), IsEmpty());

  Scene unreadable;
  unreadable.desktop.files.unreadable = true;
  unreadable.start();
  EXPECT_EQ(unreadable.programme.table().nb_patrons, 0);
  unreadable.programme.quit();
  EXPECT_THAT(unreadable.journal("set_aside"), ElementsAre("set_aside Strokemind.AI"));
}

TEST(Profile, WritesWhatTheListSays) {
  Scene scene;
  scene.start();
  auto& list = scene.programme.sk().LV;
  list.row(1).SubItems(2) = "T:ligne\r\ndeux\ntrois\r漢{ } ";
  list.row(3).SubItems(2) = "";
  // Slot 1 is deleted, so that the third row no longer stands for the third slot.
  scene.programme.table().patrons[1].Nom = "-";
  list.row(2).Text = "PENTE";
  list.row(2).SubItems(2) = "C:Copier";
  list.row(3).Text = "AUTRE";
  scene.programme.quit();
  EXPECT_THAT(scene.saved(), HasSubstr("=T:ligne{ENTER}deux{ENTER}trois{ENTER}{U+6F22}{ } \r\n"));
  EXPECT_EQ(Visit(scene.saved()).table.patrons[0].Action, "T:ligne{ENTER}deux{ENTER}trois{ENTER}漢{ }");
  EXPECT_THAT(scene.saved(), HasSubstr("Actionassoci\xE9=C:Copier\r\n[Pos]"));
  EXPECT_THAT(scene.saved(), Not(HasSubstr("BARRE")));
}

TEST(Profile, AFailedSaveLeavesTheOldFile) {
  Scene scene;
  scene.start();
  scene.desktop.journal.faults["replace"] = 1;
  scene.programme.sk().Left = 15;
  scene.programme.quit();
  EXPECT_EQ(scene.saved(), three_patrons);
  EXPECT_EQ(scene.programme.table().nb_patrons, 3);
}

}  // namespace
