#include "ui/panneaux.h"

#include <array>
#include <cstdint>
#include <string>

#include "platform/drawing.h"
#include "store/liste.h"

namespace ui {

namespace {

constexpr int bouton_vignettes = 0;
constexpr int bouton_aide = 6;
constexpr int bouton_apropos = 7;

struct VueListe {
  int View;
  bool vignettes;
  bool poignee_x, poignee_y;
};
// Of the buttons 0 to 3. The first two show the same view with other images.
constexpr std::array<VueListe, 4> vues = {{{platform::view_icon, true, true, false},
                                           {platform::view_icon, false, true, false},
                                           {platform::view_list, false, true, false},
                                           {platform::view_report, false, false, true}}};

constexpr float repos_poignee_x = 2405;  // twips

constexpr const char* adresse = "          contact@strokemind.invalid";

int twips(const platform::Property<float>& length) {
  return static_cast<int>(length.get());
}

}  // namespace

void Panneaux::connect() {
  sk_.Pictxt.Click = [this] { Pictxt_Click(); };
  sk_.Pictxt.MouseMove = [this](const platform::MouseEvent&) { Pictxt_MouseMove(); };
  sk_.TmrPic.Elapsed = [this] { matrix_.dessiner_mosaique(); };
}

void Panneaux::basculer(int Index) {
  if (Index == bouton_aide) {
    basculer_aide();
  } else if (Index == bouton_apropos) {
    basculer_apropos();
  } else {
    choisir_vue(Index);
  }
}

void Panneaux::choisir_vue(int Index) {
  const VueListe& vue = vues.at(static_cast<std::size_t>(Index));
  if (Index == bouton_vignettes) {
    Mod_dessin::rebatir_vignettes(sk_, table_);
  } else {
    Mod_dessin::remplir_liste(sk_, table_);
  }
  sk_.LV.View = vue.View;
  vue_.vue_vignettes = vue.vignettes;
  sk_.ScrollX.Visible = vue.poignee_x;
  sk_.ScrollY.Visible = vue.poignee_y;
  ranger_liste();
}

// The common end: the handle at rest, the rows in order, the chosen one in sight.
void Panneaux::ranger_liste() {
  sk_.ScrollX.Left = repos_poignee_x;
  sk_.LV.Arrange = platform::arrange_top;
  sk_.LV.Arrange = platform::arrange_left;
  sk_.LV.SortOrder = 1;
  sk_.LV.SortOrder = 0;
  // A number that names no row does nothing.
  sk_.LV.select(vue_.ligne_choisie);
  sk_.LV.EnsureVisible(vue_.ligne_choisie);
  sk_.LV.Refresh();
}

void Panneaux::basculer_aide() {
  if (apropos_actif_) return;
  aide_active_ = !aide_active_;
  if (aide_active_) {
    ouvrir_aide();
  } else {
    fermer_aide();
  }
  ranger_liste();
}

void Panneaux::ouvrir_aide() {
  sk_.PicSplash(0).Visible = false;
  sk_.PicSplash(1).Visible = false;
  sk_.Pictxt.Cls();
  sk_.Pictxt.ForeColor = theme_.couleur_theme;
  // Without the ornaments, which would be spelt out.
  std::string texte = sk_.Texte.Text;
  std::erase(texte, ':');
  sk_.Pictxt.spoken = texte;
  sk_.Pictxt.Visible = true;
  sk_.ScrollX.Visible = false;
  sk_.ScrollY.Visible = true;
  sk_.ScaleMode = platform::scale_pixels;
  sk_.Pictxt.ScaleMode = platform::scale_pixels;
  scroll_.preparer(sk_.Texte.Text);
  scroll_.defilement_actif = true;
  scroll_.defiler_aide();
}

// Runs inside a yield of the roll, which ends by itself at its next test.
void Panneaux::fermer_aide() {
  sk_.Pictxt.Visible = false;
  sk_.ScrollX.Visible = true;
  sk_.ScrollY.Visible = false;
  sk_.ScaleMode = platform::scale_twips;
  sk_.Pictxt.ScaleMode = platform::scale_twips;
  scroll_.defilement_actif = false;
  scroll_.lignes_aide.clear();
  sk_.PicSplash(0).Visible = true;
  sk_.PicSplash(1).Visible = true;
}

void Panneaux::basculer_apropos() {
  if (aide_active_) return;
  apropos_actif_ = !apropos_actif_;
  if (apropos_actif_) {
    ouvrir_apropos();
  } else {
    sk_.Pictxt.Visible = false;
    sk_.TmrPic.Enabled = false;
  }
  ranger_liste();
}

void Panneaux::ouvrir_apropos() {
  sk_.PicSplash(0).spoken = "Strokemind pour XP, version 2.0.0";
  sk_.PicSplash(1).spoken = std::string("Mail: ") + adresse;
  sk_.Pictxt.spoken = "À propos: " + sk_.PicSplash(0).spoken.get() + ", " + sk_.PicSplash(1).spoken.get();
  sk_.Pictxt.Visible = true;
  sk_.Pictxt.Cls();
  sk_.Check1.Value = 0;
  // The strips are never wiped: what is printed at a later opening falls below their edge.
  platform::Print(services_.fonts, sk_.PicSplash(0), {" Strokemind pour XP", "         Version    2.0.0"});
  platform::Print(services_.fonts, sk_.PicSplash(1), {" Mail:", adresse});
  // The twips go in as pixels, as they are: the picture covers the whole work surface.
  platform::StretchBlt(sk_.PicTmp, twips(sk_.PicTmp.Width), twips(sk_.PicTmp.Height), sk_.PicScr,
                       twips(sk_.PicScr.Width), twips(sk_.PicScr.Height));
  sk_.TmrPic.Enabled = true;
}

// Pauses and resumes the roll; in About nothing follows.
void Panneaux::Pictxt_Click() {
  scroll_.defilement_actif = !scroll_.defilement_actif;
  if (scroll_.defilement_actif && aide_active_) scroll_.defiler_aide();
}

void Panneaux::Pictxt_MouseMove() {
  if (aide_active_) {
    sk_.lblinfo.Caption = "Recliquez sur 'Aides' ou sur le texte pour basculer le défilement.";
  } else if (apropos_actif_) {
    sk_.lblinfo.Caption = "Recliquez sur 'à propos'";
  } else {
    sk_.lblinfo.Caption = "";
  }
}

}  // namespace ui
