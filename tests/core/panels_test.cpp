#include "platform/drawing.h"
#include "tests/core/scene.h"

namespace {

using testing::HasSubstr;

constexpr int aide = 6;
constexpr int apropos = 7;

struct Panels : Scene {
  Panels() : Panels(three_patrons) {}
  explicit Panels(const std::string& profile) : Scene(profile) { start(); }
  SK& sk() { return programme.sk(); }
  // The user clicks a button: release, then click.
  void push(int bouton) {
    sk().Bouton(bouton).MouseUp({1, 0, 1, 1});
    const auto handler = sk().Bouton(bouton).Click;
    handler();
  }
  // Rolls `yields` rounds of the help loop, then does `last` inside it.
  void after(int yields, std::function<void()> last) {
    desktop.during_yield = [this, yields, last = std::move(last)] {
      if (yields > 1) return after(yields - 1, last);
      last();
    };
  }
  // The first row of the panel that bears ink; its height where none does.
  int top_of_text() {
    const platform::Canvas& canvas = sk().Pictxt.canvas;
    for (int y = 0; y < canvas.height(); ++y) {
      for (int x = 0; x < canvas.width(); ++x) {
        if (canvas.colour_at(x, y).value_or(0) != 0) return y;
      }
    }
    return canvas.height();
  }
};

TEST(Help, RollsAPixelAStepFromTheBottomUp) {
  Panels panels;
  // The counter starts high: the first round steps, then every fourth of 10 ms.
  constexpr int line = simulation::glyph_height;
  constexpr int steps_to_first_line = 10 + line + 1;  // the text starts that far below
  std::vector<int> tops;
  panels.after(4 * (steps_to_first_line + line + 20) + 1, [&] {
    tops.push_back(panels.top_of_text());
    panels.after(40, [&] {
      tops.push_back(panels.top_of_text());
      panels.push(aide);
    });
  });
  panels.push(aide);
  ASSERT_EQ(tops.size(), 2U);
  EXPECT_LT(tops[0], 192);
  EXPECT_EQ(tops[0] - tops[1], 10) << "40 rounds of 10 ms are ten steps";
  EXPECT_FALSE(panels.sk().Pictxt.Visible);
  EXPECT_TRUE(panels.sk().ScrollX.Visible) << "whatever the view";
  EXPECT_EQ(panels.sk().ScaleMode.get(), platform::scale_twips);
}

TEST(Help, StepsAfterMoreThan30Milliseconds) {
  Panels panels;
  const auto steps = [&](int rounds_ms) {
    int drawn = 0;
    panels.after(1, [&] {
      const platform::Canvas before = panels.sk().Pictxt.canvas;
      panels.sk().Pictxt.PSet(5, 100);
      panels.desktop.ticks += rounds_ms - 10;  // with the loop's own sleep
      panels.after(1, [&] {
        drawn = panels.top_of_text() == 99 ? 1 : 0;
        panels.push(aide);
      });
    });
    panels.push(aide);
    return drawn;
  };
  EXPECT_EQ(steps(30), 0);
  EXPECT_EQ(steps(31), 1);
}

TEST(Help, PausesResumesAndStartsAnew) {
  Panels panels;
  panels.after(200, [&] { panels.sk().Pictxt.Click(); });
  panels.push(aide);
  const platform::Canvas paused = panels.sk().Pictxt.canvas;
  EXPECT_LT(panels.top_of_text(), 192);
  panels.desktop.advance(1000);
  EXPECT_EQ(panels.sk().Pictxt.canvas, paused);
  EXPECT_TRUE(panels.sk().Pictxt.Visible);
  // Resumed from within the click, and once more from within that: both loops end at the next pause.
  panels.after(2, [&] {
    panels.sk().Pictxt.Click();
    panels.after(50, [&] { panels.sk().Pictxt.Click(); });
    panels.sk().Pictxt.Click();
  });
  panels.sk().Pictxt.Click();
  EXPECT_NE(panels.sk().Pictxt.canvas, paused);
  panels.push(aide);
  EXPECT_FALSE(panels.sk().Pictxt.Visible);
  panels.after(1, [&] {
    EXPECT_EQ(panels.top_of_text(), 192) << "an empty panel";
    panels.push(aide);
  });
  panels.push(aide);
}

TEST(Help, TheProgramGoesOnMeanwhileAndMayEnd) {
  Panels panels;
  panels.after(3, [&] {
    panels.draw(draw_l);
    EXPECT_THAT(panels.info(), HasSubstr("Patron EQUERRE retrouvé!"));
    panels.push(apropos);
    EXPECT_FALSE(panels.sk().TmrPic.Enabled) << "the other panel cannot be opened";
    panels.sk().Pictxt.MouseMove({0, 0, 1, 1});
    EXPECT_EQ(panels.info(), "Recliquez sur 'Aides' ou sur le texte pour basculer le défilement.");
    panels.click(3);
    EXPECT_EQ(panels.sk().LV.View.get(), platform::view_report);
    panels.push(4);
  });
  panels.push(aide);
  EXPECT_TRUE(panels.desktop.ended());
}

TEST(Help, SurvivesTheWrapOfTheTickCounter) {
  Panels panels;
  panels.desktop.ticks = std::numeric_limits<std::int32_t>::max() - 100;
  panels.after(400, [&] { panels.push(aide); });
  panels.push(aide);
  EXPECT_LT(panels.top_of_text(), 192);
}

struct About : Panels {
  // A picture whose left half is white and whose right half is black.
  About() {
    platform::PictureBox& picture = sk().PicScr;
    for (int y = 0; y < picture.canvas.height(); ++y) {
      for (int x = 0; x < picture.canvas.width(); ++x) picture.PSet(x, y, x < 100 ? 0xFFFFFF : 0);
    }
  }
  // The colours of the first cells of the row in the middle, left and right.
  std::pair<int, int> cells() {
    const auto at = [&](int x) { return panel().colour_at(x, 18 * 5 + 1).value_or(-1); };
    return {at(2), at(65 * 5 + 2)};
  }
  const platform::Canvas& panel() { return sk().Pictxt.canvas; }
};

TEST(AboutPanel, ThirteenFramesOfEachPolarity) {
  About about;
  about.push(apropos);
  EXPECT_TRUE(about.sk().TmrPic.Enabled);
  EXPECT_TRUE(about.sk().Pictxt.Visible);
  for (int frame = 1; frame <= 26; ++frame) {
    about.desktop.advance(200);
    const std::pair expected = frame <= 13 ? std::pair{255 * 256, 50 * 256} : std::pair{0, 255 * 256};
    EXPECT_EQ(about.cells(), expected) << "frame " << frame;
  }
  about.sk().Pictxt.MouseMove({0, 0, 1, 1});
  EXPECT_EQ(about.info(), "Recliquez sur 'à propos'");
  about.push(aide);
  about.sk().Pictxt.Click();
  EXPECT_EQ(about.sk().ScaleMode.get(), platform::scale_twips) << "the help stays shut";
  about.push(apropos);
  EXPECT_FALSE(about.sk().Pictxt.Visible);
  EXPECT_FALSE(about.sk().TmrPic.Enabled);
}

TEST(AboutPanel, TheFloorIsForPositiveFramesAlone) {
  for (const auto& [green, positive, negative] : {std::tuple{49, 50, 206}, std::tuple{50, 50, 205}, {51, 51, 204}}) {
    About about;
    platform::PictureBox& picture = about.sk().PicScr;
    for (int y = 0; y < picture.canvas.height(); ++y) {
      for (int x = 0; x < picture.canvas.width(); ++x) picture.PSet(x, y, 0xFF00FF | green << 8);
    }
    about.push(apropos);
    about.desktop.advance(200);
    EXPECT_EQ(about.cells().first, positive * 256);
    about.sk().Check1.Value = 1;
    about.desktop.advance(200);
    EXPECT_EQ(about.cells().first, negative * 256);
  }
}

// The strips are printed once; what is printed at a second opening falls below them.
TEST(AboutPanel, TheStripsStayAsFirstPrinted) {
  About about;
  about.push(apropos);
  const platform::Canvas first = about.sk().PicSplash(0).canvas;
  EXPECT_NE(first, SK().PicSplash(0).canvas);
  about.push(apropos);
  about.push(apropos);
  EXPECT_EQ(about.sk().PicSplash(0).canvas, first);
}

}  // namespace
