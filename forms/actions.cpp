#include "forms/actions.h"

#include <array>
#include <string>

#include "forms/sk.h"

namespace {

void etiquette(platform::Label& label, const char* caption, std::int32_t colour,
               platform::Alignment alignment = platform::Alignment::left) {
  label.Caption = caption;
  label.ForeColor = colour;
  label.Alignment = alignment;
}

void dire(platform::Label& button, const char* spoken) {
  button.spoken = spoken;
  button.role = platform::Role::button;
}

struct Commande {
  const char* caption;
  float left, top, width;  // twips
};
// By index.
constexpr std::array<Commande, nb_commandes> commandes = {{
    {"Couper", 840, 2280, 735},
    {"Copier", 840, 2520, 735},
    {"Coller", 840, 2760, 735},
    {"Tout", 840, 3000, 735},
    {"Agrandir", 2040, 2280, 975},
    {"Diminuer", 2040, 2520, 975},
    {"Bureau", 3120, 2280, 855},
    {"Fermer", 3120, 2760, 975},
    {"Précédent", 2040, 3480, 975},
    {"Suivant", 2040, 3720, 975},
    {"Stroke-Mind", 3120, 2520, 1335},
    {"Session", 3120, 3120, 1335},
    {"Fin", 3120, 3360, 1335},
    {"Cascade", 2040, 2760, 975},
    {"Vertical", 2040, 3000, 975},
    {"Horizontal", 2040, 3240, 975},
    {"Exécuter", 3120, 3600, 1335},
}};

}  // namespace

Actions::Actions()
    : Form("Actions", 4995, 4155),
      Contour(*this, "Contour", {0, 0, 5000, 4148}),
      Pictitre(*this, "Pictitre", {8, 8, 4960, 230}),
      lblpatron(Pictitre, "lblpatron", {1920, 0, 1095, 255}),
      Line1(*this, "Line1", {240, 2040, 5040, 2040}),
      Texte(*this, "Texte", {360, 2280, 4095, 1695}),
      Prog(*this, "Prog", {240, 2160, 4215, 1815}),
      lblinfo(Prog, "lblinfo", {120, 120, 3615, 255}),
      TextProg(Prog, "TextProg", {120, 480, 3375, 255}),
      Shape1(*this, "Shape1", {4560, 2760, 375, 495}),
      Raz(*this, "Raz", {4560, 2760, 375, 495}),
      Ico(*this, "Ico", {0, 0, 480, 480}) {
  Caption = "Actions:";
  Icon = platform::Picture{image_marche, "on"};
  Contour.BackStyle = platform::opaque;
  Contour.BorderColor = vert;
  Pictitre.ForeColor = vert;
  auto& cadre = Shape3.add(4, Pictitre, "Shape3", {4680, 15, 180, 195});
  cadre.BorderColor = vert;
  etiquette(Bouton.add(4, Pictitre, "Bouton", {4680, 15, 165, 195}), "", vert);
  dire(Bouton(4), "Fermer Actions");
  dire(Raz, "Supprimer l'action");
  Pictitre.spoken = "Barre de titre";
  Texte.spoken = "Texte à taper";
  Prog.spoken = "Programme";
  TextProg.spoken = "Chemin du programme";
  etiquette(lblpatron, "ACTIONS:", vert, platform::Alignment::centre);
  lblpatron.Font = platform::Font{"MS Sans Serif", 8.25F, true};

  etiquette(lblCom.add(0, *this, "lblCom", {480, 360, 4095, 495}), "", vert, platform::Alignment::centre);
  etiquette(lblCom.add(1, *this, "lblCom", {1440, 840, 1815, 375}), "Commandes", vert_sombre);
  etiquette(lblCom.add(2, *this, "lblCom", {1440, 1200, 1695, 375}), "Texte", vert_sombre);
  etiquette(lblCom.add(3, *this, "lblCom", {1440, 1560, 2055, 375}), "Programmes/logiciels", vert_sombre);
  for (const int heading : {1, 2, 3}) lblCom(heading).role = platform::Role::choice;
  Line1.BorderColor = vert;
  Line1.BorderStyle = platform::border_dotted;
  constexpr float hauteur = 255;
  for (int index = 0; index < nb_commandes; ++index) {
    const Commande& commande = commandes[static_cast<std::size_t>(index)];
    auto& label = lblComC.add(index, *this, "lblComC", {commande.left, commande.top, commande.width, hauteur});
    etiquette(label, commande.caption, vert_sombre);
    label.Visible = false;
    label.role = platform::Role::choice;
  }

  for (platform::TextBox* box : {&Texte, &TextProg}) {
    box->ForeColor = vert;
    box->BackColor = 0;
  }
  Texte.MultiLine = true;
  Texte.Visible = false;
  Prog.Visible = false;
  etiquette(lblinfo, "Chemin du programmes:", vert);
  TextProg.takes_files = true;

  Shape1.BorderColor = vert;
  Line2.add(0, *this, "Line2", {4560, 2760, 4920, 3240});
  Line2.add(1, *this, "Line2", {4560, 3240, 4920, 2760});
  for (const auto& line : Line2) {
    line->BorderColor = vert;
    line->BorderStyle = platform::border_none;
  }
  Ico.Visible = false;
  Ico.Picture = platform::Picture{image_pointeur, "pointer"};
}
