#include "ui/apercu.h"

#include <cassert>
#include <cstddef>
#include <string>

#include "capture/nuage.h"

namespace Mod_dessin {

void montrer_patron(SK& sk, const Table& table, Dessin& dessin) {
  assert(sk.LV.SelectedItem() != nullptr);
  sk.PicIco.Refresh();
  sk.PicRef.Refresh();
  // Where no slot has the name, the spare one, which has no points, stands in.
  const Patron& patron = table.patrons[slot_of(table, sk.LV.SelectedItem()->Text, table_capacity)];
  const auto count = static_cast<std::size_t>(patron.Ind);
  const Nuage nuage(facon_apercu, patron.X.values, patron.Y.values, count);
  sk.PicIco.Cls();
  for (std::size_t k = 0; k < count; ++k) {
    const double x = nuage.x(patron.X.values[k], sk.PicIco.Width);
    const double y = nuage.y(patron.Y.values[k], sk.PicIco.Height);
    sk.PicIco.PSet(x, y);
    dessin.dessin_x[k] = static_cast<float>(x);
    dessin.dessin_y[k] = static_cast<float>(y);
  }
  sk.lblRes.Caption = std::to_string(patron.Ind) + " Points.";
}

}  // namespace Mod_dessin
