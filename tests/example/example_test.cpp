// The example profile under the hands of many people: each patron drawn in many ways, through sampler, normaliser,
// verdict and action of the whole program.
#include <fstream>
#include <numbers>
#include <random>
#include <sstream>

#include "recognition/verdict.h"
#include "tests/core/scene.h"
#include "tools/example/shapes.h"

namespace {

std::string example_profile() {
  std::ifstream file(SOURCE_TREE "/assets/example/Strokemind.AI", std::ios::binary);
  std::ostringstream bytes;
  bytes << file.rdbuf();
  return bytes.str();
}

// The corners as somebody draws them: anywhere on two monitors, small or large, too wide or too high, leaning, and with
// corners that miss by a few percent of the size.
example::Corners by_somebody(const example::Corners& shape, std::mt19937& random) {
  const auto between = [&](double least, double most) { return std::uniform_real_distribution(least, most)(random); };
  const double size = between(60, 600);
  const double width = size * between(0.8, 1.25);
  const double lean = between(-10, 10) * std::numbers::pi / 180;
  const double left = between(0, 3000);
  const double top = between(0, 700);
  example::Corners corners;
  for (const auto& [x, y] : shape) {
    const double wide = x * width + size * between(-0.04, 0.04);
    const double high = y * size + size * between(-0.04, 0.04);
    corners.emplace_back(left + wide * std::cos(lean) - high * std::sin(lean),
                         top + wide * std::sin(lean) + high * std::cos(lean));
  }
  return corners;
}

TEST(Example, EveryoneSPatronsAreRecognised) {
  constexpr int hands = 40;  // for each patron
  const std::vector<std::string> keys{"keybd_event", "SendKeys", "ShowWindow"};
  Scene scene(example_profile());
  scene.desktop.others = {{7, 0, 0, 0, 1920, 1080}};
  scene.start();
  ASSERT_EQ(scene.rows().size(), example::examples().size());
  std::mt19937 random(8);
  for (const example::Example& shape : example::examples()) {
    for (int hand = 0; hand < hands; ++hand) {
      SCOPED_TRACE(shape.name + ", hand " + std::to_string(hand));
      const auto points = hooklib::sample_stroke(example::by_hand(by_somebody(shape.corners, random)), 1);
      ASSERT_TRUE(points);
      scene.desktop.journal.lines.clear();
      scene.desktop.advance(1000);
      scene.draw(*points);
      ASSERT_EQ(scene.info(), "Patron " + shape.name + " retrouvé!\r\nAction: " + shape.action);
      const bool acted =
          std::any_of(keys.begin(), keys.end(), [&](const auto& key) { return !scene.journal(key).empty(); });
      ASSERT_TRUE(acted) << "the action is one that the program knows";
    }
  }
}

TEST(Example, NoPatronIsTakenForAnother) {
  Scene scene(example_profile());
  scene.start();
  const Mod_dessin::Table& table = scene.programme.table();
  for (int slot = 0; slot < table.nb_patrons; ++slot) {
    const Mod_dessin::Patron& drawn = table.patrons[static_cast<std::size_t>(slot)];
    Mod_dessin::Dessin dessin;
    std::copy(drawn.X.values.begin(), drawn.X.values.end(), dessin.dessin_x.begin());
    std::copy(drawn.Y.values.begin(), drawn.Y.values.end(), dessin.dessin_y.begin());
    dessin.dessin_nb = drawn.Ind;
    Mod_dessin::Table others = table;
    others.patrons[static_cast<std::size_t>(slot)].Ind = 0;
    const auto nearest = Mod_dessin::verdict(dessin, others, table.nb_patrons);
    EXPECT_FALSE(nearest.match()) << drawn.Nom << " looks like " << nearest.nom << ": " << nearest.score;
  }
}

}  // namespace
