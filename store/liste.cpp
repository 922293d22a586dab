#include "store/liste.h"

#include <memory>
#include <string>

#include "capture/nuage.h"

namespace Mod_dessin {

namespace {

void dessiner_vignette(platform::PictureBox& PicIco, const Patron& patron) {
  const auto count = static_cast<std::size_t>(patron.Ind);
  const Nuage nuage(facon_vignette, patron.X.values, patron.Y.values, count);
  for (std::size_t j = 0; j < count; ++j) {
    nuage.set_width(PicIco, j);
    PicIco.PSet(nuage.x(patron.X.values[j], PicIco.Width), nuage.y(patron.Y.values[j], PicIco.Height));
  }
}

void completer(platform::ListItem& row, const Patron& patron) {
  row.SubItems(1) = std::to_string(patron.Ind);
  row.SubItems(2) = patron.Action;
}

}  // namespace

platform::ListImage image_de(const platform::PictureBox& PicIco) {
  return {"", {}, std::make_shared<const platform::Canvas>(PicIco.canvas.on_ground(PicIco.BackColor))};
}

void reprendre_actions(SK& sk, Table& table) {
  for (int row = 1; row <= sk.LV.Count(); ++row) {
    platform::ListItem& item = sk.LV.row(row);
    const std::string& nom = item.Text;
    auto slot = static_cast<std::size_t>(row - 1);
    if (slot >= table_slots || table.patrons[slot].Nom != nom) {
      if (nom.empty() || nom == nom_efface) continue;
      slot = slot_of(table, nom, table_slots);
    }
    if (slot < table_slots) table.patrons[slot].Action = item.SubItems(2);
  }
}

void rebatir_vignettes(SK& sk, Table& table) {
  reprendre_actions(sk, table);
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
    sk.ImLst_Vig.Add(image_de(sk.PicIco));
    if (sk.LV.Icons == nullptr) sk.LV.Icons = &sk.ImLst_Vig;
    completer(sk.LV.Add(n, patron.Nom, {n, ""}, {}), patron);
    sk.PicIco.Cls();
  }
  sk.LV.Arrange = platform::arrange_left;
  sk.LV.View = platform::view_icon;
  sk.LV.Refresh();
}

void remplir_liste(SK& sk, Table& table) {
  reprendre_actions(sk, table);
  const std::string marche = "On";
  sk.LV.Icons = nullptr;
  sk.LV.SmallIcons = nullptr;
  sk.LV.Clear();
  sk.LV.Refresh();
  for (std::size_t slot = 0; slot < table.nb_patrons; ++slot) {
    const Patron& patron = table.patrons[slot];
    if (sk.LV.Icons == nullptr) sk.LV.Icons = &sk.ImageList132;
    if (sk.LV.SmallIcons == nullptr) sk.LV.SmallIcons = &sk.ImageList;
    completer(sk.LV.Add(sk.LV.Count() + 1, patron.Nom, {0, marche}, {0, marche}), patron);
  }
  sk.LV.Arrange = platform::arrange_top;
}

}  // namespace Mod_dessin
