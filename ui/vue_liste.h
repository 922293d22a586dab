// What the user does with the list of patrons: picking a row, opening the editor on it, scrolling by dragging.
#pragma once

#include <cstdint>
#include <functional>

#include "forms/sk.h"
#include "model/dessin.h"
#include "model/patrons.h"
#include "platform/services.h"

namespace ui {

// Scrolls a list by pixels, in list view sideways by columns. Returns at once: the list moves when events are served.
void ListViewScroll(platform::Windows& windows, const platform::ListView& lvw, std::int32_t dx, std::int32_t dy);

class VueListe {
 public:
  // `ouvrir_editeur` opens the action editor on the selected row.
  VueListe(platform::Windows& windows, SK& sk, const Mod_dessin::Table& table, Mod_dessin::Vue& vue,
           Mod_dessin::Dessin& dessin, std::function<void()> ouvrir_editeur)
      : windows_(windows), sk_(sk), table_(table), vue_(vue), dessin_(dessin), ouvrir_(std::move(ouvrir_editeur)) {}
  // Fills in the handlers of the list.
  void connect();

 private:
  void LV_ItemClick();
  void LV_MouseMove(const platform::MouseEvent& event);
  // Scrolls after the pointer; false where the list is too short to be scrolled.
  bool suivre(const platform::MouseEvent& event);

  platform::Windows& windows_;
  SK& sk_;
  const Mod_dessin::Table& table_;
  Mod_dessin::Vue& vue_;
  Mod_dessin::Dessin& dessin_;
  std::function<void()> ouvrir_;
  // Where the last scrolling move was, rounded to whole units.
  std::int32_t dernier_x_ = 0;
  std::int32_t dernier_y_ = 0;
};

}  // namespace ui
