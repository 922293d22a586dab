#include "forms/mod_fenetre.h"
#include "tests/core/scene.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(Start, InTheOrderTold) {
  Scene scene;
  scene.start();
  const std::vector<std::string> order = {"load form SK",
                                          "AddFontResourceA /opt/strokemind/OCRAEXT.TTF",
                                          "PostMessageA 0 29 0 0",
                                          "load Strokemind.so",
                                          "InitHook 101",
                                          "Shell_NotifyIconA 0 icon 1",
                                          "Shell_NotifyIconA 1 icon 1",
                                          "Hide SK",
                                          "SetForegroundWindow 101",
                                          "AnimateWindow 101 1000 a0000",
                                          "Refresh PicScr",
                                          "Refresh PicTmp",
                                          "Refresh Pictitre",
                                          "Refresh PicRes",
                                          "Refresh ScrollX",
                                          "Refresh ScrollY",
                                          "Refresh LV",
                                          "Refresh SK",
                                          "Refresh PicIco",
                                          "SetWindowPos 101 -1 0 0 0 0 53",
                                          "AnimateWindow 101 300 90000",
                                          "AddFontResourceA /opt/strokemind/OCRAEXT.TTF",
                                          "PostMessageA 0 29 0 0",
                                          "Refresh LV",
                                          "Refresh LV"};
  EXPECT_EQ(scene.desktop.journal.lines, order);
  SK& sk = scene.programme.sk();
  EXPECT_EQ(sk.Left.get(), 3450);
  EXPECT_EQ(sk.Top.get(), 1200);
  EXPECT_EQ(sk.Width.get(), 5000);
  EXPECT_EQ(sk.lblNmodel.Caption.get(), "3");
  EXPECT_EQ(sk.lblRes.Caption.get(), "");
  EXPECT_TRUE(scene.programme.vue().vue_vignettes);
  for (const platform::Font& font : {sk.Font.get(), sk.Bouton(7).Font.get(), sk.LV.Font.get(), sk.Pictxt.Font.get()}) {
    EXPECT_EQ(font.Name, "OCR A Extended");
  }
  EXPECT_EQ(sk.lblcaption.Font.get().Size, 9.75F) << "only the name is set";
  EXPECT_FALSE(scene.desktop.on_screen(sk));
}

TEST(Start, StaysInSightWhereNothingCouldBringItBack) {
  Scene without_tray;
  without_tray.desktop.tray = false;
  without_tray.start();
  EXPECT_TRUE(without_tray.desktop.on_screen(without_tray.programme.sk()));

  Scene first_start("");
  first_start.start();
  SK& sk = first_start.programme.sk();
  EXPECT_TRUE(first_start.desktop.on_screen(sk));
  EXPECT_EQ(sk.lblNmodel.Caption.get(), "0");
  EXPECT_EQ(sk.LV.Count(), 0);
  first_start.draw(draw_l);
  EXPECT_EQ(first_start.info(), "Patron inconnu");
}

TEST(Start, SaysWhatIsMissing) {
  Scene no_font;
  no_font.desktop.journal.faults["font"] = -1;
  no_font.start();
  EXPECT_EQ(no_font.journal("MsgBox"), std::vector<std::string>(2, "MsgBox [Police non charger] 4112 [SK Erreur:]"));
  EXPECT_EQ(no_font.programme.sk().lblNmodel.Caption.get(), "3") << "the start goes on";

  Scene no_library;
  no_library.desktop.journal.faults["load"] = 1;
  no_library.start();
  EXPECT_THAT(no_library.journal("MsgBox"), ElementsAre(testing::HasSubstr("/opt/strokemind/Strokemind.so")));
  EXPECT_EQ(no_library.desktop.exit_status(), 1);
  EXPECT_THAT(no_library.journal("replace"), IsEmpty());

  Scene no_window;
  no_window.desktop.journal.faults["window"] = 1;
  no_window.start();
  EXPECT_EQ(no_window.desktop.exit_status(), 1);
}

TEST(Stop, InTheOrderTold) {
  Scene scene;
  scene.start();
  scene.draw(draw_l);
  scene.fire(scene.programme.sk().LV.DblClick);
  const std::size_t before = scene.desktop.journal.lines.size();
  scene.programme.sk().Bouton(4).Click();
  scene.programme.quit();
  const std::vector<std::string> lines(scene.desktop.journal.lines.begin() + static_cast<std::ptrdiff_t>(before),
                                       scene.desktop.journal.lines.end());
  EXPECT_THAT(lines, ElementsAre("DLL_STOP 0", "Shell_NotifyIconA 1 icon 1", "unload form Actions",
                                 "AnimateWindow 101 300 90000", "replace Strokemind.AI", "Shell_NotifyIconA 2 icon 1",
                                 "unload form Menu", "EndHook", "End 0"));
  EXPECT_EQ(scene.saved(), three_patrons);
}

TEST(Stop, BeforeThePatronsAreLoadedSavesNothing) {
  Scene scene;
  scene.desktop.journal.faults["font"] = 1;
  scene.desktop.during_dialog = [&] { scene.programme.quit(); };
  scene.start();
  EXPECT_EQ(scene.desktop.exit_status(), 0);
  EXPECT_EQ(scene.saved(), three_patrons);
  EXPECT_THAT(scene.journal("replace"), IsEmpty());
  EXPECT_FALSE(scene.desktop.hook.state.window != 0) << "no hook is left behind";
}

TEST(Windows, ShowingTakesTheDefaultDuration) {
  Scene scene;
  scene.start();
  std::int16_t ms = 0;
  Mod_dessin::montrer_fenetre(scene.desktop.services.windows, scene.programme.sk(), ms);
  EXPECT_EQ(ms, 500);
  EXPECT_THAT(scene.journal("AnimateWindow 101 500"), ElementsAre("AnimateWindow 101 500 a0000"));
  Mod_fenêtre::toujours_devant(scene.desktop.services.windows, 9, false);
  EXPECT_EQ(scene.desktop.journal.lines.back(), "SetWindowPos 9 -2 0 0 0 0 53");
}

TEST(Windows, TheBareFormClearsMarksAndInformation) {
  Scene scene;
  scene.start();
  SK& sk = scene.programme.sk();
  sk.Shape3(0).BackStyle = platform::opaque;
  sk.Shape3(6).BackStyle = platform::opaque;
  sk.Shape(2).Visible = true;
  sk.lblinfo.Caption = "x";
  sk.MouseMove({0, 0, 10, 10});
  EXPECT_EQ(sk.Shape3(0).BackStyle.get(), platform::transparent);
  EXPECT_EQ(sk.Shape3(6).BackStyle.get(), platform::opaque) << "the handles keep theirs";
  EXPECT_FALSE(sk.Shape(2).Visible.get());
  EXPECT_EQ(sk.lblinfo.Caption.get(), "");
}

}  // namespace
