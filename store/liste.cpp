#include "store/liste.h"

#include <memory>
#include <string>

#include "capture/axe.h"

namespace Mod_dessin {

namespace {

void dessiner_vignette(platform::PictureBox& PicIco, const Patron& patron) {
  Axe x;
  Axe y;
  const auto count = static_cast<std::size_t>(patron.Ind);
  for (std::size_t j = 0; j < count; ++j) {
    x.take(patron.X.values[j]);
    y.take(patron.Y.values[j]);
  }
  x.close();
  y.close();
  for (std::size_t j = 0; j < count; ++j) {
    PicIco.DrawWidth = j + 1 == count ? 3 : 1;
    PicIco.PSet(x.scaled(patron.X.values[j], PicIco.Width), y.scaled(patron.Y.values[j], PicIco.Height));
  }
}

}  // namespace

void rebatir_vignettes(SK& sk, const Table& table) {
  sk.LV.Icons = nullptr;
  sk.LV.Clear();
  sk.LV.Refresh();
  sk.ImLst_Vig.Clear();
  int n = 0;
  for (std::size_t slot = 0; slot < table_capacity; ++slot) {
    const Patron& patron = table.patrons[slot];
    sk.PicIco.Cls();
    if (patron.Nom.empty() || patron.Nom == nom_efface) continue;
    ++n;
    dessiner_vignette(sk.PicIco, patron);
    sk.ImLst_Vig.Add(
        {"", {}, std::make_shared<const platform::Canvas>(sk.PicIco.canvas.on_ground(sk.PicIco.BackColor))});
    if (sk.LV.Icons == nullptr) sk.LV.Icons = &sk.ImLst_Vig;
    platform::ListItem& row = sk.LV.Add(n, patron.Nom, {n, ""}, {});
    row.SubItems(1) = std::to_string(patron.Ind);
    row.SubItems(2) = patron.Action;
    sk.PicIco.Cls();
  }
  sk.LV.Arrange = platform::arrange_left;
  sk.LV.View = platform::view_icon;
  sk.LV.Refresh();
}

}  // namespace Mod_dessin
