#include "ui/boutons.h"

#include <array>
#include <string>

#include "ui/marques.h"

namespace ui {

namespace {

constexpr int bouton_terminer = 4;
constexpr int bouton_cacher = 5;
constexpr int bouton_aide = 6;  // this and the next are letters without a shape
constexpr int commande_supprimer = 0;
constexpr int duree_cacher_ms = 500;

constexpr std::array<const char*, 8> conseils = {"Affichage: Grandes Icônes.",
                                                 "Affichage: Petites Icônes.",
                                                 "Affichage: Listes.",
                                                 "Affichage: Détails.",
                                                 "Terminer l'application",
                                                 "Cacher l'application",
                                                 "Aides: ",
                                                 "A propos ... "};
constexpr const char* conseil_supprimer = "Supprimer le patron sélectioné.";
constexpr const char* conseil_enregistrer = "Enregistrer le dernier dessin réalisé.";

}  // namespace

void Boutons::connect() {
  for (const auto& bouton : sk_.Bouton) {
    const int index = bouton->Index;
    bouton->Click = [this, index] { Bouton_Click(index); };
    bouton->MouseMove = [this, index](const platform::MouseEvent&) { Bouton_MouseMove(index); };
    bouton->MouseDown = [this, index](const platform::MouseEvent&) { Bouton_MouseDown(index); };
    bouton->MouseUp = [this, index](const platform::MouseEvent&) { Bouton_MouseUp(index); };
  }
  for (const auto& commande : sk_.lblCom) {
    const int index = commande->Index;
    commande->Click = [this, index] { lblCom_Click(index); };
    commande->MouseMove = [this, index](const platform::MouseEvent&) { lblCom_MouseMove(index); };
    commande->MouseUp = [this, index](const platform::MouseEvent&) {
      sk_.Shape(index).BorderStyle = platform::border_solid;
    };
  }
  sk_.lblpatron.DblClick = [this] { gestes_.ecrire(); };
}

void Boutons::Bouton_Click(int Index) {
  switch (Index) {
    case bouton_terminer:
      gestes_.terminer();
      break;
    case bouton_cacher:
      windows_.AnimateWindow(sk_.hWnd, duree_cacher_ms, platform::AW_HIDE | platform::AW_BLEND);
      break;
    default:
      gestes_.basculer(Index);
      break;
  }
}

void Boutons::Bouton_MouseMove(int Index) {
  if (Index < bouton_aide) {
    sk_.Shape3(Index).BackStyle = platform::opaque;
  } else {
    sk_.Bouton(Index).ForeColor = 0;
  }
  sk_.lblinfo.Caption = conseils.at(static_cast<std::size_t>(Index));
}

void Boutons::Bouton_MouseDown(int Index) {
  if (Index < bouton_aide) {
    sk_.Shape3(Index).BackColor = theme_.couleur_theme;
  } else {
    sk_.Bouton(Index).ForeColor = theme_.couleur_theme;
  }
}

void Boutons::Bouton_MouseUp(int Index) {
  Bouton_MouseDown(Index);
  if (Index == bouton_aide) gestes_.relacher_aide();
}

void Boutons::lblCom_MouseMove(int Index) {
  effacer_cadres(sk_);
  sk_.Shape(Index).Visible = true;
  sk_.lblinfo.Caption = Index == commande_supprimer ? conseil_supprimer : conseil_enregistrer;
}

void Boutons::lblCom_Click(int Index) {
  effacer_cadres(sk_);
  const platform::ListItem* const chosen = sk_.LV.SelectedItem();
  const std::string nom = chosen != nullptr ? chosen->Text.get() : std::string();
  if (Index == commande_supprimer) {
    gestes_.supprimer(nom);
    for (int row = 1; row <= sk_.LV.Count(); ++row) {
      if (sk_.LV.row(row).Text.get() != nom) continue;
      sk_.LV.EnsureVisible(row);
      sk_.LV.select(row);
    }
  } else {
    gestes_.enregistrer();
  }
}

}  // namespace ui
