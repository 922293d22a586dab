#include "tests/core/scene.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(Recognition, AMatchTypesItsText) {
  Scene scene;
  scene.start();
  scene.draw(draw_l);
  EXPECT_EQ(scene.info(), "Patron EQUERRE retrouvé!\r\nAction: T:Bonjour");
  SK& sk = scene.programme.sk();
  EXPECT_EQ(sk.lblinfo.ForeColor.get(), vert);
  EXPECT_FALSE(sk.TimerInfo.Enabled.get());
  EXPECT_EQ(sk.LV.selected_row(), 1);
  EXPECT_EQ(scene.programme.vue().ligne_choisie, 1);
  EXPECT_THAT(scene.journal("SendKeys"), ElementsAre("SendKeys [Bonjour]"));
  EXPECT_EQ(scene.programme.dessin().dessin_x[4], 0) << "the buffers are wiped";
}

TEST(Recognition, AMatchOpensItsProgram) {
  Scene scene;
  scene.start();
  scene.draw(draw_slope);
  EXPECT_EQ(scene.info(), "Patron PENTE retrouvé!\r\nAction: P:/usr/bin/xterm");
  const std::string owner = std::to_string(scene.programme.sk().hWnd);
  EXPECT_THAT(scene.journal("ShellExecuteA"), ElementsAre("ShellExecuteA " + owner + " open [/usr/bin/xterm] [] [] 1"));
}

TEST(Recognition, WithoutAnActionOnlyWordsStand) {
  Scene scene;
  scene.start();
  scene.programme.sk().LV.row(1).SubItems(2) = "";  // the row is the newer of the two
  scene.draw(draw_l);
  EXPECT_EQ(scene.info(), "Patron EQUERRE retrouvé!\r\nAction: Pas encore d'actions associées!");
  EXPECT_THAT(scene.journal("SendKeys"), IsEmpty());
}

TEST(Recognition, NoMatchIsRedForASecond) {
  Scene scene;
  scene.start();
  scene.programme.theme().couleur_theme = 0x00C0C0;
  scene.draw({{100, 100}, {300, 100}, {100, 300}, {300, 300}, {100, 100}});
  SK& sk = scene.programme.sk();
  EXPECT_EQ(scene.info(), "Patron inconnu");
  EXPECT_EQ(sk.lblinfo.ForeColor.get(), rouge);
  scene.desktop.advance(999);
  EXPECT_EQ(scene.info(), "Patron inconnu");
  scene.desktop.advance(1);
  EXPECT_EQ(scene.info(), "Prêt...");
  EXPECT_EQ(sk.lblinfo.ForeColor.get(), 0x00C0C0);
  EXPECT_FALSE(sk.TimerInfo.Enabled.get());
  sk.lblinfo.Caption = "x";
  scene.desktop.advance(5000);
  EXPECT_EQ(scene.info(), "x") << "the timer fires once per start";
}

TEST(Recognition, APatronNamedLikeADeletedOneIsUnknown) {
  Scene scene;
  scene.start();
  scene.programme.table().patrons[0].Nom = "-";
  scene.draw(draw_l);
  EXPECT_EQ(scene.info(), "Patron inconnu");
}

TEST(Recognition, APatronAboveAHoleIsFound) {
  Scene scene;
  scene.start();
  auto& table = scene.programme.table();
  table.patrons[0] = {};
  table.patrons[0].Nom = "-";
  table.nb_patrons = 2;
  scene.draw(draw_slope);
  EXPECT_THAT(scene.info(), testing::StartsWith("Patron PENTE retrouvé!"));
}

TEST(Recognition, TheLastRowOfANameDecides) {
  Scene scene;
  scene.start();
  auto& list = scene.programme.sk().LV;
  list.Add(4, "EQUERRE", {}, {}).SubItems(2) = "T:deux";
  scene.draw(draw_l);
  EXPECT_EQ(list.selected_row(), 4);
  EXPECT_THAT(scene.journal("SendKeys"), ElementsAre("SendKeys [deux]"));
}

TEST(Dispatch, NothingRunsOverTheMainWindow) {
  Scene scene;
  scene.desktop.tray = false;  // the window stays open
  scene.start();
  scene.desktop.cursor = {3450 / 15 + 10, 1200 / 15 + 10};
  scene.draw(draw_l);
  EXPECT_THAT(scene.journal("SendKeys"), IsEmpty());
  EXPECT_EQ(scene.info(), "Patron EQUERRE retrouvé!\r\nAction: T:Bonjour") << "shown as done all the same";
  const std::string own = std::to_string(scene.programme.sk().hWnd);
  EXPECT_EQ(scene.programme.sk().Text1.Text.get(), "fenetreDLL:0\r\nSK:" + own + "\r\nPPdc:0\r\nPPfp:" + own + "\r\n");
}

TEST(Dispatch, TracesTheWindowsItLookedAt) {
  Scene scene;
  scene.desktop.others = {{7, 0, 0, 0, 1920, 1080}, {8, 7, 1400, 800, 300, 200}};
  scene.start();
  scene.draw(draw_l);  // the pointer is over the child 8 of window 7; the patron's first point is (0, 0)
  const std::string own = std::to_string(scene.programme.sk().hWnd);
  EXPECT_EQ(scene.programme.sk().Text1.Text.get(),
            "fenetreDLL:7\r\nSK:" + own + "\r\nPPdc:0\r\nPPfp:8\r\nfenetre parent:7\r\n");
  EXPECT_THAT(scene.journal("SendKeys"), ElementsAre("SendKeys [Bonjour]"));
}

TEST(Dispatch, ReadsTheAction) {
  struct Case {
    const char* action;
    std::vector<std::string> calls;
  };
  for (const Case& c : std::vector<Case>{{"T:", {"SendKeys []"}},
                                         {"T:^a{DEL}é", {"SendKeys [^a{DEL}é]"}},
                                         {"t:x", {}},
                                         {"X:y", {}},
                                         {"T", {}},
                                         {"C:nulle part", {}},
                                         {"C:copier", {}}}) {
    Scene scene;
    scene.start();
    scene.programme.sk().LV.row(1).SubItems(2) = c.action;
    scene.draw(draw_l);
    EXPECT_EQ(scene.journal("SendKeys"), c.calls) << c.action;
    EXPECT_THAT(scene.journal("keybd_event"), IsEmpty()) << c.action;
    EXPECT_EQ(scene.info(), std::string("Patron EQUERRE retrouvé!\r\nAction: ") + c.action);
  }
}

TEST(ForceSendKeys, PutsTheLockKeysBack) {
  struct Case {
    std::size_t key;
    std::uint8_t before, after;
    int family;
    std::vector<std::string> calls;
  };
  const std::vector<std::string> num{"keybd_event 90 45 1 0", "keybd_event 90 45 3 0"};
  const std::vector<std::string> caps{"keybd_event 14 45 1 0", "keybd_event 14 45 3 0"};
  const std::vector<std::string> scroll{"keybd_event 91 45 1 0", "keybd_event 91 45 3 0"};
  for (const Case& c : std::vector<Case>{{0x90, 1, 0, platform::platform_nt, num},
                                         {0x14, 0, 1, platform::platform_nt, caps},
                                         {0x91, 0, 1, platform::platform_nt, scroll},
                                         {0x14, 1, 1, platform::platform_nt, {}},
                                         {0x14, 0x80, 1, platform::platform_nt, {}},  // held down reads as on
                                         {0x41, 0, 1, platform::platform_nt, {}},
                                         {0x90, 1, 0, 3, {}}}) {
    Scene scene;
    scene.start();
    scene.desktop.family = c.family;
    scene.desktop.keyboard[c.key] = c.before;
    scene.desktop.typing = [&](std::string_view) { scene.desktop.keyboard[c.key] = c.after; };
    scene.draw(draw_l);
    EXPECT_EQ(scene.journal("keybd_event"), c.calls) << c.key << " " << c.family;
  }
  Scene scene;
  scene.start();
  scene.desktop.family = platform::platform_9x;
  scene.desktop.keyboard[0x90] = 1;
  scene.desktop.typing = [&](std::string_view) { scene.desktop.keyboard[0x90] = 0; };
  scene.draw(draw_l);
  EXPECT_EQ(scene.desktop.keyboard[0x90], 0xFF) << "the byte's complement";
}

}  // namespace
