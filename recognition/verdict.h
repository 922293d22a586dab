// Which patron a stroke is, if any: a pure function of the stroke buffers and the table.
#pragma once

#include <string>

#include "model/dessin.h"
#include "model/patrons.h"

namespace Mod_dessin {

inline constexpr float meilleur_depart = 2000.0F;  // a patron that scores this or more never becomes the candidate
inline constexpr float seuil = 25.0F;              // a match needs a score below this, in units of the miniature box

struct Verdict {
  std::string nom;                // of the patron with the lowest score; empty where none scored
  float score = meilleur_depart;  // its score
  bool match() const { return score < seuil; }
};

// Compares a normalised stroke with the slots 0 to bound - 1 of the table.
//
// The score of a patron of c points against a stroke of n is the mean, over k = 1 to m = c - 1, of the distance between
// the patron's point k, rounded to whole numbers and moved so that its first point falls on the stroke's first, and the
// stroke's point i = (k / m) * n rounded half to even. For k = m that is slot n, the one just past the stroke. Of equal
// scores the lowest slot wins; patrons of fewer than 2 points take no part. With n = 0 there is no verdict.
//
// n must be 0 to 500, bound 0 to 101.
Verdict verdict(const Dessin& dessin, const Table& table, int bound);

}  // namespace Mod_dessin
