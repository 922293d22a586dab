#include "tests/core/scene.h"
#include "ui/poignees.h"

namespace {

using ui::Coin;

TEST(Window, MarksComeAndGoBySurface) {
  Scene scene;
  scene.start();
  SK& sk = scene.programme.sk();
  const platform::MouseEvent move{0, 0, 5, 5};
  const auto mark_everything = [&] {
    for (const auto& bouton : sk.Bouton) bouton->MouseMove(move);
    for (const auto& commande : sk.lblCom) commande->MouseMove(move);
    sk.Shape(0).Visible = true;
    sk.lblinfo.Caption = "un conseil";
  };
  // What is still marked: buttons by number, "c" for a command, "i" for the information line.
  const auto marked = [&] {
    std::string marks;
    for (int n = 0; n <= 5; ++n) {
      if (sk.Shape3(n).BackStyle == platform::opaque) marks += static_cast<char>('0' + n);
    }
    for (int n = 6; n <= 7; ++n) {
      if (sk.Bouton(n).ForeColor == 0) marks += static_cast<char>('0' + n);
    }
    for (int n : {0, 2}) {
      if (sk.Shape(n).Visible) marks += 'c';
    }
    return marks + (scene.info().empty() ? "" : "i");
  };
  const std::vector<std::pair<platform::MouseHandler*, std::string>> surfaces = {
      {&sk.MouseMove, "67"},
      {&sk.PicRes.MouseMove, "45cci"},
      {&sk.Pictitre.MouseMove, "012367cci"},
      {&sk.LV.MouseMove, "67cc"},
      {&sk.Pictxt.MouseMove, "01234567cc"},
      {&sk.lblRes.MouseMove, "01234567cci"},
      {&sk.lblCom(0).MouseMove, "01234567ci"}};
  for (std::size_t n = 0; n < surfaces.size(); ++n) {
    mark_everything();
    ASSERT_EQ(marked(), "01234567cci");
    (*surfaces[n].first)(move);
    EXPECT_EQ(marked(), surfaces[n].second) << "surface " << n;
  }
  sk.lblpatron.MouseMove(move);
  EXPECT_EQ(scene.info(), "Nombre total de patrons enregistrés.\r\n(Double Clic pour enregistrement sur fichier)");
}

TEST(Window, PressesTakeTheThemeColour) {
  Scene scene;
  scene.start();
  SK& sk = scene.programme.sk();
  scene.programme.theme().couleur_theme = 0x112233;
  sk.Bouton(3).MouseDown({2, 0, 1, 1});
  EXPECT_EQ(sk.Shape3(3).BackColor.get(), 0x112233);
  sk.Bouton(7).MouseMove({0, 0, 1, 1});
  sk.Bouton(7).MouseUp({1, 0, 1, 1});
  EXPECT_EQ(sk.Bouton(7).ForeColor.get(), 0x112233);
  sk.lblCom(2).MouseDown({1, 0, 1, 1});
  EXPECT_EQ(sk.Shape(2).BorderStyle.get(), platform::border_dotted);
  sk.lblCom(2).MouseUp({1, 0, 1, 1});
  EXPECT_EQ(sk.Shape(2).BorderStyle.get(), platform::border_solid);
  scene.click(5);
  EXPECT_EQ(scene.journal("AnimateWindow").back(), "AnimateWindow 101 500 90000");
}

TEST(Window, SticksToTheEdgesOfItsScreen) {
  const platform::Screen screen{0, 0, 15000, 12000, 15};
  const platform::Screen second{15000, 1500, 15000, 12000, 15};
  const auto to = [](float left, float top, const platform::Screen& on) {
    return ui::place_tiree({left, top}, 5000, 4500, {10, 10}, 10, 10, on);
  };
  EXPECT_EQ(to(299, -299, screen), (Coin{0, 0}));
  EXPECT_EQ(to(300, -300, screen), (Coin{300, -300})) << "at 20 pixels it goes on following";
  EXPECT_EQ(to(10000 + 299, 7500 - 299, screen), (Coin{10000, 7500 - 510}));
  EXPECT_EQ(to(10000 - 300, 7500 + 300, screen), (Coin{9700, 7800}));
  EXPECT_EQ(to(15100, 1300, second), (Coin{15000, 1500}));
  EXPECT_EQ(to(14000, 400, second), (Coin{14000, 400}));
  EXPECT_EQ(ui::place_tiree({1000, 1000}, 5000, 4500, {10, 20}, 25, 13, screen), (Coin{1015, 993}));
}

TEST(Window, IsDraggedByItsSurfacesWithTheLeftButton) {
  Scene scene;
  scene.start();
  SK& sk = scene.programme.sk();
  for (platform::Control* surface : std::initializer_list<platform::Control*>{
           &sk.lblcaption, &sk.lblinfo, &sk.lblNmodel, &sk.lblpatron, &sk.lblRes, &sk.PicRes, &sk.Pictitre}) {
    sk.Left = 3000;
    sk.Top = 3000;
    surface->MouseDown({1, 0, 100, 50});
    surface->MouseMove({1, 0, 130, 20});
    surface->MouseMove({2, 0, 500, 500});
    EXPECT_EQ((Coin{sk.Left, sk.Top}), (Coin{3030, 2970})) << surface->Name;
  }
}

struct Handle {
  int patrons, view;
  bool across;
  std::vector<std::string> scrolled;  // by a drag 30 units further
};

TEST(Handles, ScrollTheListByItsLength) {
  for (const Handle& handle :
       {Handle{6, 0, true, {}}, Handle{7, 0, true, {"7 0"}}, Handle{12, 1, true, {}}, Handle{13, 2, true, {"13 0"}},
        Handle{13, 3, false, {}}, Handle{14, 3, false, {"0 14"}}, Handle{14, 0, false, {}}}) {
    Scene scene(many_patrons(handle.patrons));
    scene.start();
    scene.click(handle.view);
    SK& sk = scene.programme.sk();
    platform::PictureBox& box = handle.across ? sk.ScrollX : sk.ScrollY;
    box.MouseMove({0, 0, 40, 40});
    box.MouseMove({1, 0, 70, 70});
    const std::string to_list = "PostMessageA " + std::to_string(sk.LV.hWnd) + " 4116 ";
    auto calls = scene.journal(to_list);
    for (std::string& call : calls) call.erase(0, to_list.size());
    EXPECT_EQ(calls, handle.scrolled) << handle.patrons << " in view " << handle.view;
  }
}

TEST(Handles, FollowThePointerWithinTheirLimits) {
  Scene scene(many_patrons(20));
  scene.start();
  scene.click(3);
  SK& sk = scene.programme.sk();
  EXPECT_EQ(sk.ScrollY.Top.get(), 1560) << "until the first release";
  sk.ScrollX.MouseMove({0, 0, 40.5F, 7});
  sk.ScrollX.MouseMove({1, 0, 100, 90});
  EXPECT_EQ((Coin{sk.ScrollX.Left, sk.ScrollX.Top}), (Coin{2465, 2950})) << "40,5 is held at 40, and the row is kept";
  sk.ScrollX.MouseMove({1, 0, 9000, 0});
  EXPECT_EQ(sk.ScrollX.Left.get(), 4759);
  sk.ScrollX.MouseMove({1, 0, -9000, 0});
  EXPECT_EQ(sk.ScrollX.Left.get(), 51);
  // The right button scrolls the list and leaves the handle.
  const std::size_t before = scene.journal("PostMessageA").size();
  sk.ScrollX.MouseMove({2, 0, 60, 0});
  EXPECT_EQ(sk.ScrollX.Left.get(), 51);
  EXPECT_EQ(scene.journal("PostMessageA").size(), before + 1);
  sk.ScrollX.MouseUp({2, 0, 0, 0});
  EXPECT_EQ(sk.ScrollX.Left.get(), 2405);
  sk.ScrollY.MouseMove({0, 0, 5, 40});
  sk.ScrollY.MouseMove({1, 0, 5, 9000});
  EXPECT_EQ((Coin{sk.ScrollY.Left, sk.ScrollY.Top}), (Coin{4800, 3209}));
  sk.ScrollY.MouseMove({1, 0, 5, -9000});
  EXPECT_EQ(sk.ScrollY.Top.get(), 260);
  sk.ScrollY.MouseUp({1, 0, 0, 0});
  EXPECT_EQ(sk.ScrollY.Top.get(), 1860);
}

}  // namespace
