// The four views of the list, and the two panels that lie over it: the rolling help and About.
#pragma once

#include "effects/mod_matrix.h"
#include "effects/mod_scroll.h"
#include "forms/sk.h"
#include "model/patrons.h"
#include "model/theme.h"
#include "platform/services.h"

namespace ui {

class Panneaux {
 public:
  Panneaux(platform::Services& services, SK& sk, Mod_dessin::Table& table, Mod_dessin::Vue& vue, const Theme& theme)
      : services_(services),
        sk_(sk),
        table_(table),
        vue_(vue),
        theme_(theme),
        scroll_(services, sk.Pictxt),
        matrix_(services, sk) {}
  // Fills in the handlers of the panel and of its timer.
  void connect();

  // A click on one of the buttons 0 to 3 (views), 6 (help) and 7 (About). With the other panel open the last two do
  // nothing. Opening the help returns when the roll ends.
  void basculer(int Index);
  // The release of the help button comes before its click: each opening starts at the first line.
  void relacher_aide() { scroll_.ligne_courante = 0; }

 private:
  void choisir_vue(int Index);
  void basculer_aide();
  void ouvrir_aide();
  void fermer_aide();
  void basculer_apropos();
  void ouvrir_apropos();
  void ranger_liste();
  void Pictxt_Click();
  void Pictxt_MouseMove();

  platform::Services& services_;
  SK& sk_;
  Mod_dessin::Table& table_;
  Mod_dessin::Vue& vue_;
  const Theme& theme_;
  Mod_Scroll scroll_;
  Mod_Matrix matrix_;
  // Never both: the panel shows the help, or About, or is not there.
  bool aide_active_ = false;
  bool apropos_actif_ = false;
};

}  // namespace ui
