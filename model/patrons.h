// The table of patrons: the gestures that the user has saved, with the action bound to each.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "model/dessin.h"

namespace Mod_dessin {

inline constexpr int table_slots = 101;         // slots 0 to 100; slot 100 is never filled and ends every walk
inline constexpr int table_capacity = 100;      // slots that a load fills
inline constexpr const char* nom_efface = "-";  // the name of a deleted slot

// The coordinates of one axis in drawing order. A list read from a file keeps the file's own text of its numbers until
// the patron is replaced, so that a load and a save leave the file as it was.
struct Coordinates {
  std::vector<double> values;
  std::string text;  // the numbers as the file spells them, each with "." before it; empty where they were drawn here
  bool operator==(const Coordinates&) const = default;
};

struct Patron {
  std::string Nom;       // upper case, no blank; empty: never used; "-": deleted
  Coordinates X, Y;      // normalised to the miniature box; at least Ind values each
  std::int16_t Ind = 0;  // number of points, 0 to 501
  std::string Action;    // prefix "T:", "C:" or "P:" and a body; empty: none bound
  bool operator==(const Patron&) const = default;
};

struct Table {
  std::array<Patron, table_slots> patrons;
  std::uint8_t nb_patrons = 0;  // live patrons; less than the highest used slot + 1 while there are holes
  bool operator==(const Table&) const = default;
};

// The highest used slot + 1; equal to nb_patrons while the table has no hole.
int highest_used(const Table& table);

// The first of the slots 0 to bound - 1 whose name is `nom`, by exact comparison; `bound` where there is none.
std::size_t slot_of(const Table& table, const std::string& nom, int bound);

// What the list shows and which row was last chosen.
struct Vue {
  bool vue_vignettes = false;      // the list shows miniatures
  std::int16_t ligne_choisie = 0;  // row, from 1, last chosen by a pick, a save or a match
};

}  // namespace Mod_dessin
