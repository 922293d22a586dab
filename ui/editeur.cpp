#include "ui/editeur.h"

#include <array>
#include <cassert>
#include <cstdint>

#include "effects/mod_fade.h"
#include "forms/mod_fenetre.h"
#include "platform/text.h"

namespace ui {

namespace {

constexpr int left_button = 1;
constexpr int key_enter = 13;
constexpr int key_escape = 27;
constexpr int bouton_fermer = 4;
constexpr std::int16_t duree_montrer_ms = 1000;

// The headings of the three kinds of action.
constexpr int genre_commande = 1;
constexpr int genre_texte = 2;
constexpr int genre_programme = 3;

constexpr const char* invite_texte = "Entrer ici le texte de votre choix: \r\nValider en tappant sur la touche Entré.";
constexpr const char* invite_chemin = "Entrer ici son chemin d'accès:";

// Highlights one heading.
void accentuer(Actions& form, int index, std::int32_t couleur) {
  for (int heading = genre_commande; heading <= genre_programme; ++heading) {
    form.lblCom(heading).ForeColor = vert_sombre;
    form.lblCom(heading).chosen = heading == index;
  }
  form.lblCom(index).ForeColor = couleur;
}

// Puts a prompt into a box and selects it, so that the first key typed takes its place.
void inviter(platform::TextBox& box, const char* prompt) {
  box.Text = prompt;
  int characters = 0;
  const std::string& text = box.Text;
  for (std::size_t at = 0; at < text.size(); ++characters) platform::next_code_point(text, at);
  box.SelStart = 0;
  box.SelLength = characters;
  box.SetFocus();
}

// A prompt that is selected as a whole vanishes when the pointer crosses its box.
void effacer_invite(platform::TextBox& box, const char* prompt) {
  if (box.SelText() == prompt) box.SelText("");
}

}  // namespace

Editeur::Editeur(platform::Services& services, FormInstance<Actions>& actions, Programme programme)
    : services_(services), actions_(actions), programme_(programme) {
  actions_.Load = [this](Actions& form) { Form_Load(form); };
  actions_.Unload = [this](Actions&) { Form_Unload(); };
}

void Editeur::ouvrir() {
  if (programme_.sk.LV.SelectedItem() == nullptr) return;
  Actions& form = actions_();
  if (!services_.events.ended()) services_.windows.Show(form);
}

void Editeur::Form_Load(Actions& form) {
  const SK& sk = programme_.sk;
  form.Left = sk.Left;
  form.Top = sk.Top;
  charger_police_actions(form);
  if (services_.events.ended()) return;  // asked to go while a box was open
  Mod_fade::fondu_rvb(form.Pictitre, false, true, false, true, false, false);
  platform::ListItem* const item = programme_.sk.LV.SelectedItem();
  form.lblCom(0).Caption = "Choisir une des 3 possibilités suivantes pour le patron: " +
                           (item != nullptr ? item->Text.get() : std::string());
  for (const auto& heading : form.lblCom) heading->MouseIcon = form.Ico.Picture;
  for (const auto& command : form.lblComC) command->MouseIcon = form.Ico.Picture;
  connect(form);
  if (item != nullptr) lire_action(form, item->SubItems(2));
  std::int16_t duree = duree_montrer_ms;
  Mod_dessin::montrer_actions(services_.windows, form, duree);
}

// However the editor closes, and whatever the pause entry says, the hook runs afterwards.
void Editeur::Form_Unload() {
  assert(hook_ != nullptr);
  hook_->DLL_STOP(0);
  changer_icone(programme_.sk, programme_.systray, image_marche);
}

void Editeur::charger_police_actions(Actions& form) {
  Mod_dessin::installer_police(services_);
  Mod_dessin::nommer_police(form.Font);
  Mod_dessin::nommer_police(form.lblpatron.Font);
  for (const auto& heading : form.lblCom) Mod_dessin::nommer_police(heading->Font);
  Mod_dessin::nommer_police(form.Texte.Font);
  Mod_dessin::nommer_police(form.TextProg.Font);
  Mod_dessin::nommer_police(form.lblinfo.Font);
  // The last five commands keep the face of the design.
  constexpr int derniere = 11;
  for (int index = 0; index <= derniere; ++index) Mod_dessin::nommer_police(form.lblComC(index).Font);
}

// Shows what is bound now. A command's label is highlighted, though the labels stay hidden until their heading is
// pressed.
void Editeur::lire_action(Actions& form, const std::string& action) {
  const std::string genre = action.substr(0, 2);
  const std::string action_lue = action.size() > 2 ? action.substr(2) : std::string();
  const std::int32_t couleur = programme_.theme.couleur_theme;
  if (genre == "C:") {
    accentuer(form, genre_commande, couleur);
    form.Prog.Visible = false;
    form.Texte.Visible = false;
    for (const auto& command : form.lblComC) {
      command->chosen = command->Caption.get() == action_lue;
      if (command->chosen) command->ForeColor = couleur;
    }
  } else if (genre == "T:") {
    accentuer(form, genre_texte, couleur);
    form.Prog.Visible = false;
    form.Texte.Visible = true;
    form.Texte.Text = action_lue;
  } else if (genre == "P:") {
    accentuer(form, genre_programme, couleur);
    form.Prog.Visible = true;
    form.Texte.Visible = false;
    form.TextProg.Text = action_lue;
  }
}

void Editeur::connect(Actions& form) {
  const Theme& theme = programme_.theme;
  auto& fermeture = form.Shape3(bouton_fermer);
  form.KeyPress = [this](int& KeyAscii) {
    if (KeyAscii == key_escape) actions_.unload();
  };
  form.CloseRequest = [this] { actions_.unload(); };
  form.MouseMove = [&form, &fermeture](const platform::MouseEvent&) {
    fermeture.BackStyle = platform::transparent;
    for (const auto& line : form.Line2) line->BorderStyle = platform::border_none;
  };
  form.Bouton(bouton_fermer).Click = [this] { actions_.unload(); };
  form.Bouton(bouton_fermer).MouseMove = [this, &fermeture, &theme](const platform::MouseEvent&) {
    fermeture.BackStyle = platform::opaque;
    fermeture.BackColor = theme.couleur_theme;
    fermeture.Refresh();
    programme_.sk.lblinfo.Caption = "Fermer Actions.";
  };
  form.Bouton(bouton_fermer).MouseDown = [&fermeture](const platform::MouseEvent&) {
    fermeture.BackColor = 0;
    fermeture.Refresh();
  };
  for (const auto& heading : form.lblCom) {
    heading->MouseDown = [this, &form, index = heading->Index](const platform::MouseEvent& event) {
      lblCom_MouseDown(form, index, event.Button);
    };
  }
  for (const auto& command : form.lblComC) {
    command->MouseDown = [this, &form, index = command->Index](const platform::MouseEvent&) {
      lblComC_MouseDown(form, index);
    };
    command->MouseUp = [this, index = command->Index](const platform::MouseEvent&) { lblComC_MouseUp(index); };
  }
  form.Pictitre.MouseDown = [this, &form](const platform::MouseEvent& event) {
    if (event.Button == left_button) deplacer_actions(form);
  };
  form.Pictitre.MouseMove = [&fermeture](const platform::MouseEvent&) { fermeture.BackStyle = platform::transparent; };
  form.Raz.Click = [this] { Raz_Click(); };
  form.Raz.MouseMove = [&form](const platform::MouseEvent&) {
    for (const auto& line : form.Line2) line->BorderStyle = platform::border_solid;
  };
  form.Raz.MouseDown = [&form](const platform::MouseEvent&) {
    for (const auto& line : form.Line2) line->BorderStyle = platform::border_none;
  };
  connect_texts(form);
}

void Editeur::connect_texts(Actions& form) {
  form.Texte.KeyPress = [this, &form](int& KeyAscii) {
    if (KeyAscii == key_enter) {
      valider_texte("T:" + form.Texte.Text.get());
    } else if (KeyAscii == key_escape) {
      services_.windows.Hide(form);
    }
  };
  form.TextProg.KeyPress = [this, &form](int& KeyAscii) {
    if (KeyAscii == key_enter) valider_texte("P:" + form.TextProg.Text.get());
  };
  form.Texte.MouseMove = [&form](const platform::MouseEvent&) { effacer_invite(form.Texte, invite_texte); };
  form.TextProg.MouseMove = [&form](const platform::MouseEvent&) { effacer_invite(form.TextProg, invite_chemin); };
}

// Choosing a kind replaces what stood in its box.
void Editeur::lblCom_MouseDown(Actions& form, int Index, int Button) {
  if (Button == left_button) {
    switch (Index) {
      case genre_commande:
        form.Texte.Visible = false;
        form.Prog.Visible = false;
        for (const auto& command : form.lblComC) command->Visible = true;
        break;
      case genre_texte:
        form.Texte.Visible = true;
        form.Prog.Visible = false;
        inviter(form.Texte, invite_texte);
        break;
      case genre_programme:
        form.Texte.Visible = false;
        form.Prog.Visible = true;
        inviter(form.TextProg, invite_chemin);
        break;
      default:
        break;
    }
  }
  accentuer(form, Index, programme_.theme.couleur_theme);
}

void Editeur::lblComC_MouseDown(Actions& form, int Index) {
  for (const auto& command : form.lblComC) {
    command->ForeColor = vert_sombre;
    command->chosen = command->Index == Index;
  }
  form.lblComC(Index).ForeColor = programme_.theme.couleur_theme;
}

// Wherever the pointer is at the release, and whatever button it was.
void Editeur::lblComC_MouseUp(int Index) {
  associer("C:" + actions_().lblComC(Index).Caption.get());
  actions_.unload();
}

void Editeur::valider_texte(const std::string& action) {
  associer(action);
  actions_.unload();
  programme_.sk.LV.Refresh();
}

void Editeur::associer(const std::string& action) {
  platform::ListItem* const item = programme_.sk.LV.SelectedItem();
  if (item == nullptr) return;
  Mod_dessin::Table& table = programme_.table;
  const std::size_t slot = slot_of(table, item->Text, table.nb_patrons);
  if (slot < table.nb_patrons) table.patrons[slot].Action = action;
  item->SubItems(2) = action;
}

// The table follows when the file is next written: the list is what counts at once.
void Editeur::Raz_Click() {
  platform::ListItem* item = programme_.sk.LV.SelectedItem();
  if (item == nullptr || item->SubItems(2).get().empty()) return;
  const std::string nom = item->Text;
  const int answer =
      services_.dialogs.MsgBox("Etes-vous sûr de vouloir supprimer l'Action du patron: " + nom,
                               platform::vbSystemModal | platform::vbInformation | platform::vbYesNo, "Strokemind");
  // The rows may have been rebuilt while the box was open.
  item = programme_.sk.LV.SelectedItem();
  if (answer == platform::vbYes && item != nullptr && item->Text.get() == nom) item->SubItems(2) = "";
}

void Editeur::deplacer_actions(const Actions& form) {
  services_.windows.PostMessageA(form.hWnd, platform::WM_NCLBUTTONDOWN, platform::HTCAPTION, 0);
  services_.windows.ReleaseCapture();
}

}  // namespace ui
