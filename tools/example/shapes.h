// The eight patrons of the example profile, and how a hand draws them.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "hooklib/sampler.h"

namespace example {

// Corners of a shape in drawing order, x to the right and y downwards. Only the proportions count.
using Corners = std::vector<std::pair<double, double>>;

struct Example {
  std::string name;
  std::string action;
  Corners corners;
};

// The letter, from its upper end round the left to its lower end: an arc that leaves 110 degrees open.
inline Corners letter_c() {
  constexpr double radian = 3.14159265358979 / 180;
  Corners corners;
  for (int degrees = 55; degrees <= 305; degrees += 5) {
    corners.emplace_back(std::cos(degrees * radian), -std::sin(degrees * radian));
  }
  return corners;
}

inline std::vector<Example> examples() {
  return {
      {"DROITE", "C:Suivant", {{0, 0}, {1, 0}}},
      {"GAUCHE", "C:Précédent", {{1, 0}, {0, 0}}},
      {"HAUT", "T:^{HOME}", {{0, 1}, {0, 0}}},
      {"BAS", "T:^{END}", {{0, 0}, {0, 1}}},
      {"C", "C:Copier", letter_c()},
      {"V", "C:Coller", {{0, 0}, {0.5, 1}, {1, 0}}},
      {"TOIT", "C:Agrandir", {{0, 1}, {0.5, 0}, {1, 1}}},
      {"CROIX", "C:Fermer", {{0, 0}, {1, 1}, {1, 0}, {0, 1}}},
  };
}

// The motion of a mouse that reports 125 times a second while a hand goes along the corners, given in pixels, at an
// even speed.
inline std::vector<hooklib::Sample> by_hand(const Corners& corners) {
  constexpr double step = 5;                // pixels between two reports
  constexpr std::uint32_t interval_ms = 8;  // between two reports
  std::vector<hooklib::Sample> motion{{corners.front().first, corners.front().second, 0}};
  for (std::size_t n = 1; n < corners.size(); ++n) {
    const auto [x, y] = corners[n - 1];
    const double dx = corners[n].first - x;
    const double dy = corners[n].second - y;
    const int steps = std::max(1, static_cast<int>(std::lround(std::hypot(dx, dy) / step)));
    for (int k = 1; k <= steps; ++k) {
      motion.push_back(
          {std::round(x + dx * k / steps), std::round(y + dy * k / steps), motion.back().time_ms + interval_ms});
    }
  }
  return motion;
}

}  // namespace example
