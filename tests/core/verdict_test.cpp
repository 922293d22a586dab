#include "recognition/verdict.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <random>

#include "bench/plain_verdict.h"

namespace {

using namespace Mod_dessin;

Patron patron(const std::string& name, std::vector<double> x, std::vector<double> y) {
  const auto count = static_cast<std::int16_t>(x.size());
  return {name, {std::move(x), ""}, {std::move(y), ""}, count, ""};
}

Dessin three_points() {
  Dessin dessin;
  for (std::size_t k = 0; k < 3; ++k) dessin.dessin_x[k] = static_cast<float>(10 + 10 * k), dessin.dessin_y[k] = 10;
  dessin.dessin_nb = 3;
  return dessin;
}

TEST(Verdict, WorkedExample) {
  Table table;
  table.patrons[0] = patron("BARRE", {110, 120, 130}, {50, 50, 50});
  Dessin dessin = three_points();
  Verdict found = verdict(dessin, table, 1);
  EXPECT_EQ(found.nom, "BARRE");
  EXPECT_NEAR(found.score, 20.8114, 1e-4);
  EXPECT_TRUE(found.match());

  // What an earlier, longer stroke left in the slot behind the stroke takes part.
  dessin.dessin_x[3] = 500, dessin.dessin_y[3] = 400;
  found = verdict(dessin, table, 1);
  EXPECT_NEAR(found.score, 310.3686, 1e-4);
  EXPECT_FALSE(found.match());
}

TEST(Verdict, ThresholdIsStrict) {
  // A patron of two points: the score is the distance at the slot behind the stroke, here exactly as chosen.
  Dessin dessin;
  dessin.dessin_nb = 1;
  for (const auto& [distance, match] : {std::pair{25.0F, false}, {24.999998F, true}, {2000.0F, false}}) {
    dessin.dessin_x[1] = distance;
    Table table;
    table.patrons[0] = patron("A", {0, 0}, {0, 0});
    const Verdict found = verdict(dessin, table, 1);
    EXPECT_EQ(found.score, distance);
    EXPECT_EQ(found.match(), match);
    EXPECT_EQ(found.nom.empty(), distance == meilleur_depart);
  }
}

TEST(Verdict, WhoTakesPart) {
  Table table;
  table.patrons[0] = patron("UN_POINT", {0}, {0});
  table.patrons[1] = patron(nom_efface, {}, {});
  table.patrons[2] = patron("PREMIER", {0, 10, 20}, {0, 0, 0});
  table.patrons[3] = patron("SECOND", {0, 10, 20}, {0, 0, 0});
  EXPECT_EQ(verdict(three_points(), table, 4).nom, "PREMIER") << "of equal scores the lower slot wins";
  EXPECT_EQ(verdict(three_points(), table, 2).nom, "") << "fewer than two points take no part";
  EXPECT_EQ(highest_used(table), 4);
  table.patrons[3].Nom = nom_efface;
  EXPECT_EQ(highest_used(table), 3);
  EXPECT_EQ(highest_used(Table{}), 0);
  Dessin empty = three_points();
  empty.dessin_nb = 0;
  EXPECT_EQ(verdict(empty, table, 4).score, meilleur_depart);
}

TEST(Verdict, EqualsTheDefinitionToTheLastBit) {
  std::mt19937 random(7);
  const auto number = [&](int low, int high) { return std::uniform_int_distribution(low, high)(random); };
  for (int round = 0; round < 10000; ++round) {
    Table table;
    const int bound = number(1, 8);
    for (int s = 0; s < bound; ++s) {
      std::vector<double> x, y;
      const int points = number(0, 9) == 0 ? number(0, 501) : number(0, 3) == 0 ? 32 : number(2, 40);
      for (int k = 0; k < points; ++k) x.push_back(number(-100, 6500) / 100.0), y.push_back(number(0, 9600) / 200.0);
      table.patrons[static_cast<std::size_t>(s)] = patron(std::to_string(s), x, y);
    }
    Dessin dessin;
    dessin.dessin_nb = static_cast<std::int16_t>(number(0, 4) == 0 ? number(1, 500) : 32);
    for (std::size_t k = 0; k <= static_cast<std::size_t>(dessin.dessin_nb); ++k) {
      dessin.dessin_x[k] = static_cast<float>(number(0, 64000)) / 1000.0F;
      dessin.dessin_y[k] = static_cast<float>(number(0, 48000)) / 1000.0F;
    }
    const Verdict expected = plain_verdict(dessin, table, bound);
    const Verdict found = verdict(dessin, table, bound);
    ASSERT_EQ(found.nom, expected.nom) << "round " << round;
    ASSERT_EQ(found.score, expected.score) << "round " << round;
  }
}

}  // namespace
