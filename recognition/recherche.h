// What a verdict does to the screen, and the action that it sets off.
#pragma once

#include <string>

#include "actions/dispatch.h"
#include "forms/sk.h"
#include "model/dessin.h"
#include "model/patrons.h"
#include "model/theme.h"

namespace Mod_dessin {

class Recherche {
 public:
  Recherche(SK& sk, const Dessin& dessin, const Table& table, Vue& vue, const Theme& theme, Dispatch& dispatch)
      : sk_(sk), dessin_(dessin), table_(table), vue_(vue), theme_(theme), dispatch_(dispatch) {}

  // Compares the normalised stroke with every patron, says the outcome on the information line, and runs the action of
  // the patron found. Without a stroke nothing happens at all.
  void rechercher_patron();

  // The third column of the rows that bear the name, each of which is selected and brought into view; of several the
  // last counts. Empty where there is none.
  std::string action_du_patron(const std::string& nom);

  // Puts the information line back to rest after "Patron inconnu".
  void TimerInfo_Timer();

 private:
  void patron_retrouve(const std::string& nom);
  void patron_inconnu();
  // Whether a row of the list bears the name.
  bool en_liste(const std::string& nom);

  SK& sk_;
  const Dessin& dessin_;
  const Table& table_;
  Vue& vue_;
  const Theme& theme_;
  Dispatch& dispatch_;
};

}  // namespace Mod_dessin
