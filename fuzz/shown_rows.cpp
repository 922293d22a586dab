#include "fuzz/shown_rows.h"

#include <algorithm>
#include <array>

using Mod_dessin::nom_efface;
using Mod_dessin::Patron;

void ShownRows::miniatures(const std::string& deleted) {
  saved_.reset();
  rows_.clear();
  for (const Patron& patron : programme_.table().patrons) {
    if (!patron.Nom.empty() && patron.Nom != nom_efface && patron.Nom != deleted) rows_.push_back(patron.Nom);
  }
  view_ = platform::view_icon;
  drawn_ = true;
}

// The plain views go by slots: a hole has a row, and for each hole a patron at the top has none.
void ShownRows::view(int button) {
  constexpr std::array<int, 4> views = {platform::view_icon, platform::view_icon, platform::view_list,
                                        platform::view_report};
  miniatures_ = button == 0;
  miniatures();
  view_ = views.at(static_cast<std::size_t>(button));
  if (miniatures_) return;
  const Mod_dessin::Table& table = programme_.table();
  rows_.clear();
  for (std::size_t slot = 0; slot < table.nb_patrons; ++slot) rows_.push_back(table.patrons[slot].Nom);
  drawn_ = false;
}

// Among miniatures a row goes where its slot is, in the plain views behind as many rows as there are patrons.
void ShownRows::saves(const std::string& name) {
  settle();
  const Mod_dessin::Table& table = programme_.table();
  const std::size_t slot = slot_of(table, nom_efface, table.nb_patrons);
  saved_ = {name, miniatures_ ? slot : table.nb_patrons};
}

// Whether a save came to pass is known when something else happens.
void ShownRows::settle() {
  if (!saved_) return;
  const auto& [name, before] = *saved_;
  if (slot_of(programme_.table(), name, Mod_dessin::table_capacity) < Mod_dessin::table_capacity) {
    rows_.insert(rows_.begin() + static_cast<std::ptrdiff_t>(std::min(before, rows_.size())), name);
    drawn_ = miniatures_;
  }
  saved_.reset();
}

std::string ShownRows::fault() {
  settle();
  SK& sk = programme_.sk();
  if (sk.LV.View != view_) return "the list shows the view that was chosen";
  if (sk.LV.Count() != static_cast<int>(rows_.size())) return "the list has a row for each patron that it shows";
  for (int number = 1; number <= sk.LV.Count(); ++number) {
    if (std::string fault = fault_of_row(number); !fault.empty()) return fault;
  }
  if (rows_.empty()) return {};
  if (sk.LV.Icons != (drawn_ ? &sk.ImLst_Vig : &sk.ImageList132)) return "the images are those of the view";
  if (drawn_ && sk.ImLst_Vig.Count() < sk.LV.Count()) return "each row has its miniature";
  return {};
}

std::string ShownRows::fault_of_row(int number) {
  platform::ListItem& row = programme_.sk().LV.row(number);
  const std::string& name = rows_[static_cast<std::size_t>(number - 1)];
  if (row.Text.get() != name) return "row " + std::to_string(number) + " is " + name + ", not " + row.Text.get();
  const Mod_dessin::Table& table = programme_.table();
  const std::size_t slot = slot_of(table, name, Mod_dessin::table_capacity);
  const int points = name == nom_efface ? 0 : table.patrons.at(slot).Ind;
  if (row.SubItems(1).get() != std::to_string(points)) return "a row tells its patron's points: " + name;
  return {};
}
