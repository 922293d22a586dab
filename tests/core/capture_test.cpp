#include "capture/capture.h"

#include "capture/miniature.h"
#include "tests/core/scene.h"

namespace {

using Mod_dessin::Dessin;
using testing::ElementsAre;

// Normalises one axis of a stroke, the other running from 0 to 100.
std::vector<float> normalised_x(const std::vector<float>& raw) {
  SK sk;
  Dessin dessin;
  for (std::size_t k = 0; k < raw.size(); ++k) dessin.dessin_x[k] = raw[k], dessin.dessin_y[k] = static_cast<float>(k);
  dessin.dessin_nb = static_cast<std::int16_t>(raw.size());
  Mod_dessin::dessiner_miniature(dessin, sk.PicIco, sk.PicRef);
  return {dessin.dessin_x.begin(), dessin.dessin_x.begin() + dessin.dessin_nb};
}

TEST(Normalisation, EachAxisByItself) {
  EXPECT_THAT(normalised_x({100, 200, 300}), ElementsAre(0, 32, 64));
  EXPECT_THAT(normalised_x({100, 110}), ElementsAre(0, 64)) << "an extent of 10 fills the box";
  EXPECT_THAT(normalised_x({300, 305}), ElementsAre(0, 5 * 64.0F / -299)) << "a thin axis collapses";
  EXPECT_THAT(normalised_x({300, 309}), ElementsAre(0, 9 * 64.0F / -299));
  EXPECT_THAT(normalised_x({1, 5}), ElementsAre(0, 0)) << "a divisor of zero gives 0";
  EXPECT_THAT(normalised_x({2100, 2200}), ElementsAre(100 * 64.0F / 200, 64)) << "measured from 2000";
  EXPECT_THAT(normalised_x({-100, -50}), ElementsAre(0, 32)) << "measured up to 0";
  EXPECT_THAT(normalised_x({10.5F, 110.5F}), ElementsAre(0.5F * 64 / 100, 100.5F * 64 / 100)) << "10.5 rounds to 10";
}

TEST(Normalisation, LeavesTheSlotsBeyondTheStroke) {
  SK sk;
  Dessin dessin;
  dessin.dessin_x.fill(7);
  dessin.dessin_nb = 0;
  sk.PicIco.PSet(1, 1);
  Mod_dessin::dessiner_miniature(dessin, sk.PicIco, sk.PicRef);
  EXPECT_EQ(sk.PicIco.canvas.at(1, 1), 0U) << "both boxes are cleared";
  EXPECT_EQ(dessin.dessin_x[0], 7);
}

TEST(Report, FetchesAndPlots) {
  Scene scene;
  scene.start();
  scene.draw({{5, 5}, {20, 20}, {40, 30}});  // recognised or not, the first report comes long after the start
  scene.desktop.advance(700);
  scene.draw({{5, 5}, {20, 20}, {40, 30}});
  SK& sk = scene.programme.sk();
  EXPECT_EQ(sk.lblRes.Caption.get(), "3 Points.");
  EXPECT_EQ(scene.programme.dessin().dessin_x[2], 40) << "700 ms after the last report the stroke stays in pixels";
  EXPECT_EQ(sk.PicIco.canvas.at(5, 5), 0xFFFFFFFFU);
  EXPECT_EQ(sk.PicIco.canvas.at(20, 20), 0xFF00FF00U);
  EXPECT_EQ(sk.PicIco.canvas.at(41, 29), 0xFFFFFFFFU) << "the end is three dots wide";
  EXPECT_EQ(sk.PicIco.DrawWidth, 3);
}

TEST(Report, GateOf700Milliseconds) {
  struct Case {
    int wait;
    bool recognised;
  };
  for (const Case& gate : {Case{700, false}, Case{701, true}, Case{1, false}}) {
    Scene scene;
    scene.start();
    scene.draw(draw_l);
    EXPECT_EQ(scene.journal("SendKeys").size(), 1U) << "the first stroke is recognised";
    scene.desktop.advance(gate.wait);
    scene.draw(draw_l);
    EXPECT_EQ(scene.journal("SendKeys").size(), gate.recognised ? 2U : 1U) << gate.wait;
  }
  // A burst stays suppressed as long as it lasts; a wrap of the counter neither ends nor blocks anything.
  Scene scene;
  scene.start();
  scene.desktop.ticks = 0x7FFFFFFF - 100;
  for (int n = 0; n < 5; ++n) {
    scene.draw(draw_l);
    scene.desktop.ticks = scene.desktop.later(600);
  }
  EXPECT_EQ(scene.journal("SendKeys").size(), 1U);
}

TEST(Report, SlotsBeyondTheStrokeKeepALongerOne) {
  Scene scene;
  scene.start();
  scene.draw(draw_l);
  scene.draw({{10, 10}, {200, 20}, {30, 30}, {500, 400}});
  scene.draw({{1, 1}, {50, 50}, {90, 90}});
  EXPECT_EQ(scene.programme.dessin().dessin_nb, 3);
  EXPECT_EQ(scene.programme.dessin().dessin_x[3], 500);
  scene.desktop.advance(701);
  scene.draw({{1, 1}, {50, 50}, {90, 90}});
  EXPECT_EQ(scene.programme.dessin().dessin_x[3], 0) << "wiped after a recognition";
  EXPECT_EQ(scene.programme.dessin().dessin_nb, 3) << "the count is left alone";
}

TEST(Report, OddStrokes) {
  Scene scene;
  scene.start();
  scene.draw({});
  EXPECT_EQ(scene.programme.sk().lblRes.Caption.get(), "0 Points.");
  EXPECT_EQ(scene.info(), "") << "no stroke, no verdict";
  scene.desktop.advance(701);
  scene.draw({{7, 9}});
  EXPECT_EQ(scene.programme.dessin().dessin_nb, 1);
  EXPECT_EQ(scene.programme.sk().PicIco.DrawWidth, 3);
  EXPECT_EQ(scene.info(), "Patron inconnu");
  scene.desktop.advance(701);
  scene.draw(std::vector<point_hook>(500, {3, 4}));
  EXPECT_EQ(scene.programme.dessin().dessin_nb, 500);
}

// What the hook and the icon are told, event by event.
struct Step {
  const char* event;
  std::vector<std::string> calls;  // DLL_STOP
  int image;
};

void play(Scene& scene, const Step& step) {
  const std::size_t before = scene.journal("DLL_STOP").size();
  const std::string event = step.event;
  if (event == "ctrl+") scene.key(hook_key_down, key_control);
  if (event == "ctrl-") scene.key(hook_key_up, key_control);
  if (event == "shift+") scene.key(hook_key_down, key_shift);
  if (event == "shift-") scene.key(hook_key_up, key_shift);
  if (event == "other") scene.key(hook_key_down, 'X'), scene.key(hook_key_up, key_stroke);
  if (event == "tick") scene.programme.menu()().mnuPause.Checked = true;
  if (event == "wait") scene.desktop.advance(1800);
  if (event == "open") scene.desktop.services.windows.Show(scene.programme.actions()());
  auto calls = scene.journal("DLL_STOP");
  calls.erase(calls.begin(), calls.begin() + static_cast<std::ptrdiff_t>(before));
  EXPECT_EQ(calls, step.calls) << event;
  EXPECT_EQ(scene.programme.sk().Icon.get().handle, static_cast<std::uint32_t>(step.image)) << event;
}

TEST(Report, StopsAndResumes) {
  const std::vector<std::string> stop{"DLL_STOP 1"};
  const std::vector<std::string> resume{"DLL_STOP 0"};
  Scene scene;
  scene.start();
  for (const Step& step :
       std::vector<Step>{{"other", {}, image_marche},
                         {"ctrl+", stop, image_arret},
                         {"ctrl+", stop, image_arret},
                         {"ctrl-", resume, image_marche},
                         {"shift+", stop, image_arret},
                         {"shift-", {}, image_arret},  // a stop that came from Shift lasts until Ctrl comes up
                         {"ctrl-", resume, image_marche},
                         {"tick", {}, image_marche},
                         {"ctrl+", {}, image_marche},  // ticked: keys do nothing
                         {"ctrl-", {}, image_marche},
                         {"wait", {}, image_marche},  // the form goes and takes the tick with it
                         {"ctrl+", stop, image_arret},
                         {"ctrl-", resume, image_marche},
                         {"open", {}, image_marche},
                         {"ctrl+", {}, image_marche},  // no stop while the editor is open
                         {"ctrl-", resume, image_marche},
                         {"shift+", stop, image_arret}}) {
    play(scene, step);
  }
}

TEST(Report, WhilePausedTouchesNothing) {
  Scene scene;
  scene.start();
  scene.draw(draw_l);
  scene.desktop.advance(3000);
  scene.programme.menu()().mnuPause.Checked = true;
  const std::string before = scene.info();
  scene.draw({{1, 1}, {2, 2}});
  EXPECT_EQ(scene.programme.dessin().dessin_nb, 32);
  EXPECT_EQ(scene.programme.sk().lblRes.Caption.get(), "32 Points.");
  EXPECT_EQ(scene.info(), before);
  scene.desktop.advance(1800);
  scene.draw(draw_l);
  EXPECT_EQ(scene.journal("SendKeys").size(), 2U) << "the dropped report did not start the 700 ms anew";
}

}  // namespace
