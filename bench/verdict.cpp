// How long a verdict takes over a full table, against the plain transcription of its definition in the same run.
#include "recognition/verdict.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <random>
#include <vector>

#include "bench/plain_verdict.h"

namespace {

using Mod_dessin::Dessin;
using Mod_dessin::Table;

constexpr int patrons = 99;
constexpr int points = 500;
constexpr int rounds = 201;

// A smooth random curve in the miniature box, the more like the stroke the smaller `spread`.
void fill(Table& table, Dessin& dessin, double spread) {
  std::mt19937 random(11);
  std::uniform_real_distribution<double> uniform(0, 1);
  const auto curve = [&](double weight, std::vector<double>& x, std::vector<double>& y) {
    const double a = uniform(random) * weight, b = uniform(random) * weight, c = uniform(random) * weight;
    for (int k = 0; k < points; ++k) {
      const double t = 6.283 * k / points;
      x.push_back(32 + 32 * std::sin((1 + a) * t + b));
      y.push_back(24 + 24 * std::cos((1 + b) * t + c));
    }
  };
  std::vector<double> x, y;
  curve(0, x, y);
  dessin.dessin_nb = points;
  for (std::size_t k = 0; k < points; ++k) {
    dessin.dessin_x[k] = static_cast<float>(x[k]);
    dessin.dessin_y[k] = static_cast<float>(y[k]);
  }
  for (int s = 0; s < patrons; ++s) {
    Mod_dessin::Patron& patron = table.patrons[static_cast<std::size_t>(s)];
    patron = {"P" + std::to_string(s), {}, {}, points, ""};
    curve(spread, patron.X.values, patron.Y.values);
  }
}

template <class F>
double microseconds(const F& verdict, const Dessin& dessin, const Table& table, float& score) {
  const auto start = std::chrono::steady_clock::now();
  score = verdict(dessin, table, patrons).score;
  return std::chrono::duration<double, std::micro>(std::chrono::steady_clock::now() - start).count();
}

double median(std::vector<double> values) {
  std::nth_element(values.begin(), values.begin() + values.size() / 2, values.end());
  return values[values.size() / 2];
}

bool measure(const char* what, double spread) {
  Table table;
  Dessin dessin;
  fill(table, dessin, spread);
  std::vector<double> plain, real, ratio;
  for (int n = 0; n < rounds; ++n) {
    float expected = 0;
    float found = 0;
    plain.push_back(microseconds(plain_verdict, dessin, table, expected));
    real.push_back(microseconds(Mod_dessin::verdict, dessin, table, found));
    ratio.push_back(real.back() / plain.back());
    if (expected != found) {
      std::printf("%s: scores differ: %.9g and %.9g\n", what, static_cast<double>(expected),
                  static_cast<double>(found));
      return false;
    }
  }
  std::printf("%-28s plain %8.1f us   verdict %8.1f us   ratio %.3f\n", what, median(plain), median(real),
              median(ratio));
  return true;
}

}  // namespace

int main() {
  std::printf("%d patrons of %d points against a stroke of %d; medians of %d runs in turn\n", patrons, points, points,
              rounds);
  const bool same = measure("patrons of many kinds", 3) && measure("patrons all like the stroke", 0.02) &&
                    measure("patrons equal to the stroke", 0);
  return same ? 0 : 1;
}
