// The verdict written down just as it is defined, with nothing saved: what the real one is measured and checked
// against.
#pragma once

#include <cmath>
#include <cstdint>
#include <vector>

#include "recognition/verdict.h"

inline Mod_dessin::Verdict plain_verdict(const Mod_dessin::Dessin& dessin, const Mod_dessin::Table& table, int bound) {
  Mod_dessin::Verdict best;
  if (dessin.dessin_nb == 0) return best;
  for (int s = 0; s < bound; ++s) {
    const Mod_dessin::Patron& p = table.patrons[static_cast<std::size_t>(s)];
    if (p.Ind < 2) continue;
    std::vector<std::int32_t> px;
    std::vector<std::int32_t> py;
    for (std::size_t k = 0; k < static_cast<std::size_t>(p.Ind); ++k) {
      px.push_back(static_cast<std::int32_t>(std::nearbyint(p.X.values[k])));
      py.push_back(static_cast<std::int32_t>(std::nearbyint(p.Y.values[k])));
    }
    const auto ox = static_cast<float>(static_cast<double>(px[0]) - dessin.dessin_x[0]);
    const auto oy = static_cast<float>(static_cast<double>(py[0]) - dessin.dessin_y[0]);
    const int m = p.Ind - 1;
    double sum = 0;
    for (int k = 1; k <= m; ++k) {
      const auto i = static_cast<std::size_t>(
          std::nearbyint(static_cast<double>(k) / static_cast<double>(m) * static_cast<double>(dessin.dessin_nb)));
      const double ex = static_cast<double>(px[static_cast<std::size_t>(k)]) - dessin.dessin_x[i] - ox;
      const double ey = static_cast<double>(py[static_cast<std::size_t>(k)]) - dessin.dessin_y[i] - oy;
      sum += std::sqrt(ex * ex + ey * ey);
    }
    const auto score = static_cast<float>(sum / m);
    if (best.score > score) best = {p.Nom, score};
  }
  return best;
}
