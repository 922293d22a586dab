#include "recognition/verdict.h"

#include <algorithm>
#include <array>
#include <cassert>
#include <cmath>
#include <cstdint>
#include <limits>

namespace Mod_dessin {

namespace {

// The stroke as a patron of a given number of points sees it: its point i(k) for each k. Patrons of the same length
// share it, and most patrons have the same length.
struct Gathered {
  int points = 0;  // c, 0 before the first use
  std::array<double, dessin_slots> x, y;

  void gather(const Dessin& dessin, int c) {
    if (points == c) return;
    points = c;
    const double m = c - 1;
    for (int k = 1; k < c; ++k) {
      const auto i = static_cast<std::size_t>(std::nearbyint(k / m * dessin.dessin_nb));
      x[static_cast<std::size_t>(k)] = dessin.dessin_x[i];
      y[static_cast<std::size_t>(k)] = dessin.dessin_y[i];
    }
  }
};

// How many distances are summed between two looks at the bound.
constexpr int block = 16;

// To a whole number within 32 bits, a half to the even neighbour, without a branch or a call, so that a compiler can do
// several at a time: a double near 2^52 has no room for a fraction, and adding rounds it away.
double rounded(double value) {
  constexpr double no_fraction = 6755399441055744.0;  // 1.5 * 2^52
  constexpr double lowest = std::numeric_limits<std::int32_t>::min();
  constexpr double highest = std::numeric_limits<std::int32_t>::max();
  const double bounded = value < lowest ? lowest : value > highest ? highest : value;
  return (bounded + no_fraction) - no_fraction;
}

// Distances of `count` points from the k-th on. (ox, oy) moves the patron's first point onto the stroke's.
void distances(const double* px, const double* py, const double* sx, const double* sy, double ox, double oy, int count,
               double* distance) {
  for (int j = 0; j < count; ++j) {
    const double ex = rounded(px[j]) - sx[j] - ox;
    const double ey = rounded(py[j]) - sy[j] - oy;
    distance[j] = std::sqrt(ex * ex + ey * ey);
  }
}

// The mean distance, or any value not below `best` as soon as it is certain that the mean will not be below it: the
// sum only grows, and so do the division and the rounding of it.
float score(const Patron& patron, const Dessin& dessin, const Gathered& stroke, float best) {
  const int m = patron.Ind - 1;
  const double* const px = patron.X.values.data();
  const double* const py = patron.Y.values.data();
  const auto ox = static_cast<float>(rounded(px[0]) - dessin.dessin_x[0]);
  const auto oy = static_cast<float>(rounded(py[0]) - dessin.dessin_y[0]);
  // A little above the sum at which the mean reaches `best`, so that rounding cannot make it too low.
  const double enough = static_cast<double>(best) * m * 1.000001;
  double sum = 0;
  std::array<double, block> distance;
  for (int k = 1; k <= m; k += block) {
    const int count = std::min(block, m + 1 - k);
    const double* const sx = stroke.x.data() + k;
    const double* const sy = stroke.y.data() + k;
    if (count == block) {
      distances(px + k, py + k, sx, sy, ox, oy, block, distance.data());
    } else {
      distances(px + k, py + k, sx, sy, ox, oy, count, distance.data());
    }
    // One after the other, in their order: another order would round differently.
    for (int j = 0; j < count; ++j) sum += distance[static_cast<std::size_t>(j)];
    if (sum > enough) return best;
  }
  return static_cast<float>(sum / m);
}

}  // namespace

Verdict verdict(const Dessin& dessin, const Table& table, int bound) {
  assert(dessin.dessin_nb >= 0 && dessin.dessin_nb < dessin_slots);
  assert(bound >= 0 && bound <= table_slots);
  Verdict best;
  if (dessin.dessin_nb == 0) return best;
  Gathered stroke;
  for (int s = 0; s < bound; ++s) {
    const Patron& patron = table.patrons[static_cast<std::size_t>(s)];
    if (patron.Ind < 2) continue;
    stroke.gather(dessin, patron.Ind);
    const float found = score(patron, dessin, stroke, best.score);
    if (best.score > found) {
      best.score = found;
      best.nom = patron.Nom;
    }
  }
  return best;
}

}  // namespace Mod_dessin
