#include "tests/core/scene.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// Dots of a picture, by colour, as x, y of its pixels.
std::vector<std::pair<int, int>> dots(const platform::Canvas& canvas) {
  std::vector<std::pair<int, int>> found;
  for (int y = 0; y < canvas.height(); ++y) {
    for (int x = 0; x < canvas.width(); ++x) {
      if (canvas.at(x, y) != 0) found.emplace_back(x, y);
    }
  }
  return found;
}

TEST(List, EachViewHasItsRowsImagesAndHandle) {
  Scene scene;
  scene.start();
  SK& sk = scene.programme.sk();
  EXPECT_THAT(scene.rows(), ElementsAre("EQUERRE", "BARRE", "PENTE"));
  EXPECT_EQ(sk.ImLst_Vig.Count(), 3);
  scene.pick(2);
  struct View {
    int bouton, View;
    bool thumbnails, handle_x;
    platform::ImageList* images;
  };
  for (const View& view : {View{1, platform::view_icon, false, true, &sk.ImageList132},
                           View{2, platform::view_list, false, true, &sk.ImageList132},
                           View{3, platform::view_report, false, false, &sk.ImageList132},
                           View{0, platform::view_icon, true, true, &sk.ImLst_Vig}}) {
    sk.ScrollX.Left = 99;
    scene.click(view.bouton);
    EXPECT_EQ(sk.LV.View.get(), view.View) << view.bouton;
    EXPECT_EQ(scene.programme.vue().vue_vignettes, view.thumbnails) << view.bouton;
    EXPECT_EQ(sk.LV.Icons.get(), view.images) << view.bouton;
    EXPECT_EQ(sk.ScrollX.Visible.get(), view.handle_x) << view.bouton;
    EXPECT_EQ(sk.ScrollY.Visible.get(), !view.handle_x) << view.bouton;
    EXPECT_EQ(sk.ScrollX.Left.get(), 2405) << view.bouton;
    EXPECT_EQ(sk.LV.selected_row(), 2) << "the chosen row comes back";
    EXPECT_EQ(sk.LV.Arrange.get(), platform::arrange_left);
    EXPECT_EQ(sk.LV.row(3).SubItems(1).get(), "32") << view.bouton;
    EXPECT_EQ(sk.LV.row(3).SubItems(2).get(), "P:/usr/bin/xterm") << view.bouton;
  }
}

// After a delete in the same run the two rebuilds see other slots.
TEST(List, AHoleShowsOnlyInThePlainViews) {
  Scene scene;
  scene.start();
  scene.pick(1);
  scene.fire(scene.programme.sk().lblCom(0).Click);
  EXPECT_THAT(scene.rows(), ElementsAre("BARRE", "PENTE"));
  scene.click(3);
  EXPECT_THAT(scene.rows(), ElementsAre("-", "BARRE"));
  scene.click(0);
  EXPECT_THAT(scene.rows(), ElementsAre("BARRE", "PENTE"));
}

TEST(List, PickingShowsThePatronAcrossTheWholeBox) {
  Scene scene(
      "[COIN]\r\nInd=3\r\nX=.0.0.64\r\nY=.0.48.48\r\n[MUR]\r\nInd=2\r\nX=.5.5\r\nY=.0.30\r\n"
      "[POINT]\r\nInd=1\r\nX=.0\r\nY=.0\r\n[VIDE]\r\nInd=0\r\nX=\r\nY=\r\n");
  scene.start();
  SK& sk = scene.programme.sk();
  Mod_dessin::Dessin& dessin = scene.programme.dessin();
  scene.draw(draw_l);
  const auto shown = [&](int row) {
    sk.PicIco.DrawWidth = 1;
    scene.pick(row);
    return dots(sk.PicIco.canvas);
  };
  // 1024 / 15 by 768 / 15, rounded; the far ones lie on the box's edge, one beyond its last pixel.
  EXPECT_THAT(shown(1), ElementsAre(std::pair{0, 0}));
  EXPECT_THAT(std::vector<float>(dessin.dessin_x.begin(), dessin.dessin_x.begin() + 3), ElementsAre(0, 0, 68));
  EXPECT_THAT(std::vector<float>(dessin.dessin_y.begin(), dessin.dessin_y.begin() + 3), ElementsAre(0, 51, 51));
  EXPECT_EQ(dessin.dessin_nb, 32) << "the count stays the stroke's";
  EXPECT_EQ(sk.lblRes.Caption.get(), "3 Points.");
  EXPECT_EQ(scene.programme.vue().ligne_choisie, 1);
  // A flat axis is scaled by the other's extent; one point divides by zero on both.
  EXPECT_THAT(shown(2), ElementsAre(std::pair{0, 0}));
  EXPECT_EQ(dessin.dessin_y[1], 51);
  EXPECT_THAT(shown(3), ElementsAre(std::pair{0, 0}));
  EXPECT_THAT(shown(4), IsEmpty());
  EXPECT_EQ(sk.lblRes.Caption.get(), "0 Points.");
}

TEST(List, EnterAndDoubleClickOpenTheEditorOnASelectedRow) {
  Scene scene;
  scene.start();
  SK& sk = scene.programme.sk();
  int key = 13;
  scene.fire(sk.LV.KeyPress, key);
  scene.fire(sk.LV.DblClick);
  EXPECT_FALSE(scene.programme.actions().loaded()) << "nothing is selected";
  scene.fire(sk.LV.ItemClick, 1);
  EXPECT_EQ(scene.programme.vue().ligne_choisie, 0);
  scene.pick(2);
  key = 'x';
  scene.fire(sk.LV.KeyPress, key);
  EXPECT_FALSE(scene.programme.actions().loaded());
  key = 13;
  scene.fire(sk.LV.KeyPress, key);
  EXPECT_TRUE(scene.programme.actions().on_screen());
}

struct Drag {
  int patrons;
  int view;  // button that chooses it
  float x, y;
  std::vector<std::string> scrolled;  // by the second of two moves to (50, 50), (x, y)
};

TEST(List, DraggingScrolls) {
  for (const Drag& drag : {Drag{4, 0, 60, 50, {}}, Drag{5, 0, 60, 50, {"10 0"}}, Drag{5, 0, 40, 50, {"-10 0"}},
                           Drag{5, 0, 50, 60, {}}, Drag{11, 1, 60, 50, {}}, Drag{12, 1, 60, 50, {"10 0"}},
                           Drag{11, 2, 60, 50, {}}, Drag{12, 2, 60, 50, {"1 0"}}, Drag{12, 2, 40, 50, {"-1 0"}},
                           Drag{12, 3, 50, 60, {}}, Drag{13, 3, 50, 60, {"0 -10"}}, Drag{13, 3, 50, 40, {"0 10"}}}) {
    Scene scene(many_patrons(drag.patrons));
    scene.start();
    scene.click(drag.view);
    SK& sk = scene.programme.sk();
    sk.lblinfo.Caption = "un conseil";
    sk.LV.MouseMove({2, 0, 1, 1});
    EXPECT_EQ(scene.info(), "");
    sk.LV.MouseMove({1, 0, 50, 50});
    const std::string to_list = "PostMessageA " + std::to_string(sk.LV.hWnd) + " 4116 ";
    const std::size_t before = scene.journal(to_list).size();
    sk.Shape3(2).BackStyle = platform::opaque;
    sk.LV.MouseMove({1, 0, drag.x, drag.y});
    auto calls = scene.journal(to_list);
    calls.erase(calls.begin(), calls.begin() + static_cast<std::ptrdiff_t>(before));
    for (std::string& call : calls) call.erase(0, to_list.size());
    EXPECT_EQ(calls, drag.scrolled) << drag.patrons << " patrons, view " << drag.view;
    // A list too short to scroll leaves the marks too.
    const bool too_short = drag.patrons == 4 || drag.patrons == 11 || (drag.patrons == 12 && drag.view == 3);
    EXPECT_EQ(sk.Shape3(2).BackStyle.get() == platform::opaque, too_short) << drag.patrons << " " << drag.view;
  }
}

}  // namespace
