#include "forms/sk.h"

#include <string>
#include <tuple>

namespace {

// A label of the design: green text, transparent.
void etiquette(platform::Label& label, std::string caption, platform::Alignment alignment = platform::Alignment::left) {
  label.Caption = std::move(caption);
  label.ForeColor = vert;
  label.Alignment = alignment;
}

void police(platform::Property<platform::Font>& font, std::string name, float size, bool bold = false) {
  font = platform::Font{std::move(name), size, bold};
}

// What a control is called, and taken for, where it is heard.
void dire(platform::Control& control, const char* spoken, platform::Role role = platform::Role::content) {
  control.spoken = spoken;
  control.role = role;
}

// A green rounded shape and the label without caption that lies over it.
void bouton(SK& sk, int index, platform::Surface& surface, platform::Rectangle shape, platform::Rectangle label,
            const char* spoken) {
  auto& outline = sk.Shape3.add(index, surface, "Shape3", shape);
  outline.BorderColor = vert;
  outline.BackColor = vert;  // shows under the pointer, when the shape fills
  outline.rounded = true;
  auto& over = sk.Bouton.add(index, surface, "Bouton", label);
  etiquette(over, "");
  dire(over, spoken, platform::Role::button);
}

void regle(SK& sk, int index, float top) {
  sk.Line1.add(index, sk, "Line1", {0, top, 5000, top}).BorderColor = vert;
}

void commande(SK& sk, int index, platform::Rectangle frame, platform::Rectangle place, std::string caption) {
  auto& outline = sk.Shape.add(index, sk, "Shape", frame);
  outline.BorderColor = vert;
  outline.rounded = true;
  outline.Visible = false;
  auto& label = sk.lblCom.add(index, sk, "lblCom", place);
  etiquette(label, std::move(caption), platform::Alignment::centre);
  label.role = platform::Role::button;
}

void poignee(SK& sk, platform::PictureBox& handle, int index, platform::Rectangle shape) {
  handle.BackColor = vert_fonce;
  handle.ForeColor = vert;
  auto& outline = sk.Shape3.add(index, handle, "Shape3", shape);
  outline.BorderColor = vert;
  outline.rounded = true;
}

// The help, line by line as it rolls.
const char* const texte_aide =
    ":::::::::::::::::::::::::::::::::::::::::::::::::::::             \r\n"
    "              ::Aide de Strokemind::\r\n"
    "Cliquez sur le texte pour mettre en pause ou \r\n"
    " reprendre la lecture\r\n"
    ":::::::::::::::::::::::::::::::::::::::::::::::::::::    \r\n"
    "Strokemind(SK) permet dès son lancement de \r\n"
    "faire du dessin à l'écrant! \r\n"
    "Vous ne pouvez cependant pas dessiner sur\r\n"
    " plusieures fenêtres à la fois, car, sitôt le \r\n"
    "dessin terminé, SK l'interprête et recherche \r\n"
    "un patron (ou modèle) de ce dessin. \r\n"
    "Si le patron est reconnu, et qu'une action lui \r\n"
    "à été associé, cette dernière ce lance \r\n"
    "automatiquement.\r\n"
    "Note: Le dessin ce fait dès que vous maintener\r\n"
    "le bouton droit de la souris appuyer. \r\n"
    "Vous pouvez à tout moment annuler le dessin \r\n"
    "et retrouver l'utilisation normale du clic\r\n"
    "droit en maintenant la touche \"Ctrl\" appuyer. \r\n"
    "(Cf: icone à coté de l'heure)\r\n"
    "Pour sauvegarder un patron, il faut d'abord \r\n"
    "réaliser un dessin à l'écran. Une fois le \r\n"
    "dessin fait, vous pouvez voir son image dans\r\n"
    "la miniature. Si vous estimez que vous saurez \r\n"
    "le reproduire vous pouvez appuyer sur \"Save\".\r\n"
    "Enfin, pour ajouter une action à cette \r\n"
    "sauvegarde double cliquez sur un patron \r\n"
    "vous accèdez au choix de l'action à lui \r\n"
    "associer.\r\n"
    "Il y a trois type d'action possible, Lancer \r\n"
    "une commande, une application de votre \r\n"
    "choix ou un texte de votre choix.\r\n"
    "                \r\n";

void barres(SK& sk) {
  for (platform::PictureBox* bar : {&sk.Pictitre, &sk.PicRes}) bar->ForeColor = vert;

  etiquette(sk.lblcaption, "STROKE-MIND", platform::Alignment::centre);
  police(sk.lblcaption.Font, "MS Sans Serif", 9.75F, true);
  bouton(sk, 4, sk.Pictitre, {100, 15, 180, 195}, {100, 15, 165, 195}, "Terminer l'application");
  bouton(sk, 5, sk.Pictitre, {4680, 15, 180, 195}, {4680, 15, 165, 195}, "Cacher l'application");

  etiquette(sk.lblRes, "");
  etiquette(sk.lblNmodel, "", platform::Alignment::right);
  etiquette(sk.lblpatron, "Patron(s)", platform::Alignment::centre);
  etiquette(sk.Bouton.add(7, sk.PicRes, "Bouton", {3600, 15, 165, 195}), "?");
  etiquette(sk.Bouton.add(6, sk.PicRes, "Bouton", {3840, 15, 165, 195}), "A");
  dire(sk.Bouton(7), "À propos", platform::Role::button);
  dire(sk.Bouton(6), "Aide", platform::Role::button);
  bouton(sk, 0, sk.PicRes, {4080, 15, 180, 195}, {4080, 15, 165, 195}, "Affichage: grandes icônes");
  bouton(sk, 1, sk.PicRes, {4280, 15, 180, 195}, {4280, 15, 165, 195}, "Affichage: petites icônes");
  bouton(sk, 2, sk.PicRes, {4470, 15, 180, 195}, {4470, 0, 165, 195}, "Affichage: liste");
  bouton(sk, 3, sk.PicRes, {4660, 15, 180, 195}, {4660, 0, 165, 195}, "Affichage: détails");
  dire(sk.lblpatron, "Patron(s), enregistrer sur fichier", platform::Role::button);
  dire(sk.Pictitre, "Barre de titre");
  dire(sk.PicRes, "Barre d'état");
}

void panneau(SK& sk) {
  sk.Pictxt.ForeColor = vert;
  sk.Pictxt.Visible = false;
  sk.Pictxt.role = platform::Role::notice;
  police(sk.Pictxt.Font, "OCR A Extended", 8.25F);
  for (const auto& [index, top, width] : {std::tuple{0, 0.0F, 5000.0F}, std::tuple{1, 2730.0F, 4930.0F}}) {
    auto& strip = sk.PicSplash.add(index, sk.Pictxt, "PicSplash", {8, top, width, 150});
    strip.BackColor = vert;
    strip.ForeColor = 0;
    // As high as the strip; the name is set with the others'.
    police(strip.Font, "MS Sans Serif", 6.75F);
  }
  poignee(sk, sk.ScrollX, 6, {0, 0, 495, 165});
  poignee(sk, sk.ScrollY, 7, {0, 0, 165, 495});
  sk.ScrollY.Visible = false;
  dire(sk.ScrollX, "Défilement horizontal");
  dire(sk.ScrollY, "Défilement vertical");
}

void hors_de_vue(SK& sk) {
  sk.PicRef.ScaleMode = platform::scale_pixels;
  sk.PicRef.ForeColor = vert;
  sk.PicScr.Visible = false;
  sk.PicScr.Picture = platform::Picture{image_apropos, "about"};
  sk.PicTmp.Visible = false;
  police(sk.PicTmp.Font, "OCR A Extended", 5.25F);
  sk.Check1.Visible = false;
  sk.Check1.Caption = "sens";
  sk.Text1.MultiLine = true;
  sk.Text1.Text = "Text1";
  sk.Texte.MultiLine = true;
  sk.Texte.ForeColor = vert;
  sk.Texte.BackColor = 0;
  sk.Texte.Text = texte_aide;

  const platform::Picture marche{image_marche, "on"};
  const platform::Picture arret{image_arret, "off"};
  sk.ImageList132.Add({"On", marche, nullptr});
  sk.ImageList132.Add({"Off", arret, nullptr});
  sk.ImageList.Add({"On", marche, nullptr});
  sk.Icon = marche;
}

}  // namespace

SK::SK()
    : Form("SK", 14445, 4500),
      Contour(*this, "Contour", {0, 0, 5000, 4500}),
      Pictitre(*this, "Pictitre", {8, 8, 4970, 230}),
      PicRes(*this, "PicRes", {8, 3128, 4970, 230}),
      LV(*this, "LV", {45, 240, 4890, 2865}),
      ScrollX(*this, "ScrollX", {2405, 2950, 495, 165}),
      ScrollY(*this, "ScrollY", {4800, 1560, 160, 495}),
      Pictxt(*this, "Pictxt", {0, 240, 4950, 2880}),
      PicIco(*this, "PicIco", {200, 3355, 1024, 768}),
      lblcaption(Pictitre, "lblcaption", {1680, 0, 2055, 255}),
      lblRes(PicRes, "lblRes", {120, 15, 1935, 255}),
      lblNmodel(PicRes, "lblNmodel", {1920, 15, 495, 255}),
      lblpatron(PicRes, "lblpatron", {2520, 15, 975, 255}),
      lblinfo(*this, "lblinfo", {120, 4145, 5000, 360}),
      PicRef(*this, "PicRef", {6000, 120, 4950, 2985}),
      PicScr(*this, "PicScr", {5520, 360, 3105, 2760}),
      PicTmp(*this, "PicTmp", {5520, 1320, 4930, 2745}),
      Check1(*this, "Check1", {5520, 4560, 1215, 255}),
      Text1(*this, "Text1", {10080, 1680, 2655, 1575}),
      Texte(*this, "Texte", {11280, 480, 5235, 4200}),
      CommonDialog1(*this, "CommonDialog1"),
      TimerInfo(*this, "TimerInfo", 1000, false),
      TmrPic(*this, "TmrPic", 200, false),
      ImLst_Vig(*this, "ImLst_Vig"),
      ImageList132(*this, "ImageList132"),
      ImageList(*this, "ImageList") {
  Caption = "Strokemind";
  Left = 3450;
  Top = 1200;
  Contour.BorderColor = vert;
  regle(*this, 4, 3120);
  regle(*this, 0, 4140);
  barres(*this);
  LV.ForeColor = vert;
  LV.ColumnHeaders = {{"Nom", 1600}, {"Nombre de Points", 500}, {"Actions ou Commandes", 2850}};
  panneau(*this);
  dire(LV, "Patrons");
  dire(PicIco, "Miniature du dernier dessin");
  PicIco.ScaleMode = platform::scale_pixels;
  PicIco.BackColor = vert_fonce;
  PicIco.ForeColor = vert;
  commande(*this, 0, {1440, 3480, 1575, 555}, {1560, 3555, 1335, 420}, "Supprimer le patron");
  commande(*this, 2, {3240, 3480, 1575, 555}, {3360, 3555, 1335, 420}, "Enregistrer le dessin ");
  etiquette(lblinfo, "");
  lblinfo.role = platform::Role::status;
  hors_de_vue(*this);
}
