#include "tests/core/scene.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

struct Saving : Scene {
  explicit Saving(const std::string& profile = three_patrons) : Scene(profile) { start(); }
  void save(const std::string& name) {
    desktop.input_answers = {name};
    fire(programme.sk().lblCom(2).Click);
  }
  // Answers the question with the button `answer`.
  void remove(int row, int answer = platform::vbOK) {
    programme.sk().LV.select(row);
    desktop.box_answers = {answer};
    fire(programme.sk().lblCom(0).Click);
  }
  const Mod_dessin::Patron& slot(std::size_t n) { return programme.table().patrons[n]; }
  int count() { return programme.table().nb_patrons; }
};

TEST(Saving, TheLastStrokeUnderItsName) {
  Saving scene;
  scene.draw(draw_slope);
  scene.save("un deux été");
  EXPECT_THAT(scene.journal("InputBox"),
              ElementsAre("InputBox [Entrez le nom du Patron à enregistrer,SVP!\r\nUn maximun de 20 carActionsères est "
                          "autorisé.] [Patron n°4] []"));
  EXPECT_THAT(scene.rows(), ElementsAre("EQUERRE", "BARRE", "PENTE", "UN_DEUX_ÉTÉ"));
  EXPECT_THAT(scene.saved(), HasSubstr(platform::to_cp1252(section("UN_DEUX_ÉTÉ", draw_slope, "").substr(0, 60))));
  SK& sk = scene.programme.sk();
  EXPECT_EQ(sk.LV.row(4).SubItems(1).get(), "32");
  EXPECT_EQ(sk.LV.selected_row(), 4);
  EXPECT_EQ(scene.programme.vue().ligne_choisie, 4);
  EXPECT_EQ(scene.info(), "Patron sauvegardé...");
  EXPECT_EQ(sk.lblNmodel.Caption.get(), "4");
  EXPECT_EQ(sk.ImLst_Vig.Count(), 4);

  // The same stroke is found again, by the table and by the next run.
  scene.desktop.advance(1000);
  scene.draw(draw_l);
  scene.save("quatre");
  Saving next(scene.saved());
  EXPECT_THAT(next.rows(), ElementsAre("EQUERRE", "BARRE", "PENTE", "UN_DEUX_ÉTÉ", "QUATRE"));
}

TEST(Saving, InAPlainViewAddsAtTheEndWithTheFixedIcon) {
  Saving scene;
  scene.click(3);
  scene.draw(draw_l);
  scene.save("neuf");
  SK& sk = scene.programme.sk();
  EXPECT_THAT(scene.rows(), ElementsAre("EQUERRE", "BARRE", "PENTE", "NEUF"));
  EXPECT_EQ(sk.LV.row(4).SmallIcon.key, "On");
  EXPECT_EQ(sk.ImLst_Vig.Count(), 3);
}

TEST(Saving, NamesThatTheFileCannotHoldAreExplained) {
  const std::string saved = Saving().saved();
  for (const char* name :
       {"-", "pos", "POS", " ", "   ", "a[b", "a]", "a=b", ";a", "a\tb", "a\r\nb", "漢", "{U+6F22}"}) {
    Saving scene;
    scene.draw(draw_l);
    const std::string before = scene.info();
    scene.save(name);
    EXPECT_EQ(scene.count(), 3) << name;
    EXPECT_EQ(scene.saved(), saved) << name;
    EXPECT_THAT(scene.info(), HasSubstr("nom")) << name;
    EXPECT_NE(scene.info(), before) << name;
  }
  Saving cancelled;
  cancelled.save("");
  EXPECT_EQ(cancelled.count(), 3);
  EXPECT_EQ(cancelled.info(), "");
  Saving long_names;
  long_names.save("x");
  long_names.save(std::string(5000, 'y'));
  EXPECT_EQ(Saving(long_names.saved()).count(), 5);
  long_names.save(std::string(45000, 'z'));
  EXPECT_EQ(long_names.count(), 5);
  EXPECT_EQ(long_names.info(), "Ce nom est trop long.");
}

TEST(Saving, ANameInUseIsReplacedOnlyIfTheUserSaysSo) {
  Saving scene;
  scene.draw(draw_slope);
  const std::string before = scene.saved();
  scene.desktop.box_answers = {platform::vbNo};
  scene.save("equerre");
  EXPECT_EQ(scene.saved(), before);
  scene.desktop.box_answers = {platform::vbYes};
  scene.save("equerre");
  const std::string question = "MsgBox [Le patron EQUERRE existe déjà. Voulez-vous le remplacer ?] 4 [Strokemind]";
  EXPECT_THAT(scene.journal("MsgBox"), ElementsAre(question, question));
  EXPECT_EQ(scene.count(), 3);
  EXPECT_THAT(scene.rows(), ElementsAre("EQUERRE", "BARRE", "PENTE"));
  EXPECT_THAT(scene.saved(), HasSubstr(platform::to_cp1252(section("EQUERRE", draw_slope, "T:Bonjour"))));
  EXPECT_EQ(scene.programme.sk().LV.selected_row(), 1);
  EXPECT_EQ(*scene.programme.sk().ImLst_Vig(1)->pixels, *scene.programme.sk().ImLst_Vig(3)->pixels);
  // A name that a hand has written in lower case is the same to the file.
  Saving lower("[coin]\r\nInd=1\r\nX=.0\r\nY=.0\r\n");
  lower.desktop.box_answers = {platform::vbNo};
  lower.save("coin");
  EXPECT_EQ(lower.count(), 1);
}

TEST(Saving, NinetyNinePatronsAndNoMore) {
  Saving scene(many_patrons(98));
  scene.save("dernier");
  EXPECT_EQ(scene.count(), 99);
  scene.save("de trop");
  EXPECT_EQ(scene.count(), 99);
  EXPECT_THAT(scene.journal("MsgBox"),
              ElementsAre("MsgBox [Atention, vous ne pouvez enregistrer plus de 100 Patrons!] 4112 [Strokemind]"));
}

TEST(Saving, WhenTheDiskRefusesTheTableKeepsWhatTheNextSaveWrites) {
  Saving scene;
  scene.draw(draw_l);
  const std::string before = scene.saved();
  scene.desktop.journal.faults["replace"] = 1;
  scene.save("gardé");
  EXPECT_EQ(scene.saved(), before);
  EXPECT_EQ(scene.count(), 4);
  scene.fire(scene.programme.sk().lblpatron.DblClick);
  EXPECT_THAT(scene.saved(), HasSubstr(platform::to_cp1252("[GARDÉ]")));
}

// A disk that refuses the very first file leaves nothing of it to the next one.
TEST(Saving, WhenTheDiskRefusesTheFirstFile) {
  Saving scene("");
  scene.draw(draw_l);
  scene.desktop.journal.faults["replace"] = 1;
  scene.save("un");
  scene.save("deux");
  EXPECT_THAT(Saving(scene.saved()).rows(), ElementsAre("UN", "DEUX"));
}

TEST(Deleting, AsksThenForgets) {
  Saving scene;
  scene.remove(1, platform::vbCancel);
  EXPECT_EQ(scene.count(), 3);
  scene.remove(1);
  EXPECT_THAT(scene.journal("MsgBox"),
              testing::Each("MsgBox [Voulez-vous supprimer le Patron: EQUERRE] 4097 [Supprimer]"));
  EXPECT_THAT(scene.rows(), ElementsAre("BARRE", "PENTE"));
  EXPECT_THAT(scene.saved(), Not(HasSubstr("EQUERRE")));
  SK& sk = scene.programme.sk();
  EXPECT_EQ(sk.lblNmodel.Caption.get(), "2");
  EXPECT_EQ(sk.LV.selected_row(), 0);
  // Nothing is selected now: no question, no change.
  scene.fire(sk.lblCom(0).Click);
  EXPECT_EQ(scene.count(), 2);
  EXPECT_THAT(scene.journal("MsgBox"), testing::SizeIs(2));
  // A patron above the hole is still recognised, also in a view that has no row for it.
  scene.click(3);
  scene.draw(draw_slope);
  EXPECT_EQ(scene.info(), "Patron PENTE retrouvé!\r\nAction: P:/usr/bin/xterm");
  scene.click(0);
  scene.remove(1);
  scene.remove(1);
  EXPECT_EQ(scene.saved(), "[Pos]\r\nX=3450\r\nY=1200\r\n");
}

// The hole in a plain view is a row, but no patron.
TEST(Deleting, AHoleIsNoPatron) {
  Saving scene;
  scene.remove(1);
  scene.click(3);
  scene.remove(1);
  EXPECT_EQ(scene.count(), 2);
  EXPECT_THAT(scene.rows(), ElementsAre("BARRE", "PENTE"));
}

TEST(Deleting, InAPlainViewBringsTheThumbnailsBackAndLeavesTheFlag) {
  Saving scene;
  scene.click(3);
  scene.remove(2);
  SK& sk = scene.programme.sk();
  EXPECT_EQ(sk.LV.View.get(), platform::view_icon);
  EXPECT_EQ(sk.LV.Icons.get(), &sk.ImLst_Vig);
  EXPECT_FALSE(scene.programme.vue().vue_vignettes);
  EXPECT_TRUE(sk.ScrollY.Visible);
}

TEST(Deleting, ASaveTakesTheLowestHoleWithoutItsAction) {
  Saving scene;
  scene.remove(1);
  scene.draw(draw_slope);
  scene.save("neuf");
  EXPECT_EQ(scene.slot(0).Nom, "NEUF");
  EXPECT_EQ(scene.slot(0).Action, "");
  EXPECT_THAT(scene.rows(), ElementsAre("NEUF", "BARRE", "PENTE"));
  EXPECT_EQ(scene.programme.sk().LV.row(1).Icon.number, 1);
  EXPECT_EQ(scene.count(), 3);
  EXPECT_THAT(scene.saved(), HasSubstr(platform::to_cp1252("Actionassocié=\r\n[BARRE]")));

  // The hole in the last used place, and one just above the count.
  Saving second;
  second.remove(2);
  second.save("deux");
  EXPECT_EQ(second.slot(1).Nom, "DEUX");
  second.remove(3);
  second.save("trois");
  EXPECT_EQ(second.slot(2).Nom, "TROIS");
  EXPECT_EQ(Saving(second.saved()).count(), 3);
}

// Rows out of line with their slots lose neither a binding nor a clearing.
TEST(Deleting, BindingsOfTheRowsBelowAreKept) {
  Saving scene;
  scene.remove(1);
  scene.programme.sk().LV.row(1).SubItems(2) = "T:oui";
  scene.programme.sk().LV.row(2).SubItems(2) = "";
  scene.fire(scene.programme.sk().lblpatron.DblClick);
  Saving next(scene.saved());
  EXPECT_EQ(next.slot(0).Action, "T:oui");
  EXPECT_EQ(next.slot(1).Action, "");
}

}  // namespace
