#include "recognition/recherche.h"

#include "recognition/verdict.h"

namespace Mod_dessin {

void Recherche::rechercher_patron() {
  if (dessin_.dessin_nb == 0) return;
  // Up to the highest used slot: a patron above a hole is recognised too.
  const Verdict found = verdict(dessin_, table_, highest_used(table_));
  if (found.match()) {
    patron_retrouve(found.nom);
  } else {
    patron_inconnu();
  }
}

void Recherche::patron_retrouve(const std::string& nom) {
  const std::size_t slot = slot_of(table_, nom, table_capacity);
  if (nom == nom_efface || slot == table_capacity) return patron_inconnu();

  sk_.lblinfo.Caption = "Patron " + nom + " retrouvé!";
  sk_.lblinfo.ForeColor = vert;
  std::string action = action_du_patron(nom);
  // In the plain views a patron above a hole has no row.
  if (!en_liste(nom)) action = table_.patrons[slot].Action;
  if (action.empty()) {
    action = "Pas encore d'actions associées!";
  } else {
    dispatch_.executer_action(action, static_cast<std::int16_t>(slot));
  }
  if (const int row = sk_.LV.selected_row()) {
    vue_.ligne_choisie = static_cast<std::int16_t>(row);
    sk_.LV.EnsureVisible(row);
  }
  sk_.LV.Refresh();
  sk_.lblinfo.Caption = sk_.lblinfo.Caption.get() + "\r\n" + "Action: " + action;
}

void Recherche::patron_inconnu() {
  sk_.lblinfo.Caption = "Patron inconnu";
  sk_.lblinfo.ForeColor = rouge;
  sk_.TimerInfo.Enabled = true;
}

bool Recherche::en_liste(const std::string& nom) {
  for (int row = 1; row <= sk_.LV.Count(); ++row) {
    if (sk_.LV.row(row).Text.get() == nom) return true;
  }
  return false;
}

std::string Recherche::action_du_patron(const std::string& nom) {
  std::string action;
  for (int row = 1; row <= sk_.LV.Count(); ++row) {
    platform::ListItem& item = sk_.LV.row(row);
    if (item.Text.get() != nom) continue;
    sk_.LV.select(row);
    sk_.LV.EnsureVisible(row);
    sk_.LV.Refresh();
    action = item.SubItems(2);
  }
  return action;
}

void Recherche::TimerInfo_Timer() {
  sk_.lblinfo.ForeColor = theme_.couleur_theme;
  sk_.TimerInfo.Enabled = false;
  sk_.lblinfo.Caption = "Prêt...";
}

}  // namespace Mod_dessin
