#include "store/enregistrement.h"

#include <algorithm>
#include <string_view>

#include "capture/miniature.h"
#include "platform/text.h"
#include "store/liste.h"

namespace Mod_dessin {

namespace {

constexpr int limite = 99;  // patrons; the message speaks of one more
constexpr const char* titre = "Strokemind";

// The name that an answer stands for: upper case, "_" for each blank but the last of an answer made of blanks alone.
std::string nom_de(const std::string& answer) {
  std::string nom = platform::upper_case(answer);
  std::size_t length = 0;
  for (std::size_t at = 0; at < nom.size(); ++length) platform::next_code_point(nom, at);
  std::size_t left = length - 1;
  for (char& c : nom) {
    if (c != ' ' || left == 0) continue;
    c = '_';
    --left;
  }
  return nom;
}

bool is_control(char c) {
  const auto code = static_cast<unsigned char>(c);
  return code < 0x20 || code == 0x7F;
}

}  // namespace

// Why the file cannot hold a patron of that name; empty where it can.
std::string Enregistrement::refus(const std::string& nom) const {
  if (nom == nom_efface) return "Le nom \"-\" est réservé.";
  if (platform::equal_ignoring_case(nom, "Pos")) return "Le nom \"Pos\" est réservé.";
  if (nom.find(' ') != std::string::npos) return "Un nom ne se fait pas que de blancs.";
  if (std::any_of(nom.begin(), nom.end(), is_control)) return "Caractère de contrôle interdit dans un nom.";
  if (nom.find_first_of("[]=;") != std::string::npos) {
    return "Caractères interdits dans un nom: [ ] = ;";
  }
  // A name that spells the number of a character would come back as that character.
  if (!platform::fits_cp1252(nom) || platform::from_cp1252(platform::to_cp1252(nom)) != nom) {
    return "Ce nom a un caractère impossible à garder.";
  }
  // All names are read back through one buffer.
  std::size_t names = nom.size() + 1;
  for (const Patron& patron : table_.patrons) names += patron.Nom.size() + 1;
  if (names + sizeof "Pos" + 2 > Mod_ini::tampon) return "Ce nom est trop long.";
  return {};
}

void Enregistrement::enregistrer_patron() {
  if (table_.nb_patrons >= limite) {
    dialogs_.MsgBox("Atention, vous ne pouvez enregistrer plus de 100 Patrons!",
                    platform::vbSystemModal | platform::vbCritical, titre);
    return;
  }
  const std::string answer =
      dialogs_.InputBox("Entrez le nom du Patron à enregistrer,SVP!\r\nUn maximun de 20 carActionsères est autorisé.",
                        "Patron n°" + std::to_string(table_.nb_patrons + 1), "");
  if (answer.empty()) return;
  const std::string nom = nom_de(answer);
  if (const std::string why = refus(nom); !why.empty()) {
    sk_.lblinfo.Caption = why;
    return;
  }
  // The file tells names apart without regard to case.
  const auto same = std::find_if(table_.patrons.begin(), table_.patrons.end(), [&](const Patron& patron) {
    return !patron.Nom.empty() && platform::equal_ignoring_case(patron.Nom, nom);
  });
  if (same != table_.patrons.end()) {
    if (!remplacer(static_cast<std::size_t>(same - table_.patrons.begin()))) return;
  } else {
    const std::size_t slot = slot_of(table_, nom_efface, table_.nb_patrons);
    prendre_dessin(slot);
    table_.patrons[slot].Nom = nom;
    table_.patrons[slot].Action.clear();
    ajouter_ligne(slot);
    choisir_ligne(nom);
    sk_.lblinfo.Caption = "Patron sauvegardé...";
    ++table_.nb_patrons;
    sk_.lblNmodel.Caption = std::to_string(table_.nb_patrons);
  }
  profil_.ecrire_patrons();
}

// Gives the patron the last stroke, where the user agrees. Its action, its row and the count stay.
bool Enregistrement::remplacer(std::size_t slot) {
  const std::string nom = table_.patrons[slot].Nom;
  if (dialogs_.MsgBox("Le patron " + nom + " existe déjà. Voulez-vous le remplacer ?", platform::vbYesNo, titre) !=
      platform::vbYes) {
    return false;
  }
  prendre_dessin(slot);
  bool en_ordre = true;
  for (int row = 1; row <= sk_.LV.Count(); ++row) {
    platform::ListItem& item = sk_.LV.row(row);
    en_ordre = en_ordre && item.Icon.number == row;
    if (item.Text.get() == nom) item.SubItems(1) = std::to_string(dessin_.dessin_nb);
  }
  if (sk_.LV.Icons == &sk_.ImLst_Vig) {
    // A row that took a hole shows another patron's image until the next rebuild: that one must not change.
    const int image = en_ordre ? ligne_de(nom) : 0;
    if (image != 0) {
      sk_.ImLst_Vig.Replace(image, image_de(sk_.PicIco));
    } else {
      rebatir_vignettes(sk_, table_);
    }
  }
  choisir_ligne(nom);
  sk_.lblinfo.Caption = "Patron sauvegardé...";
  return true;
}

// Fetches the stroke afresh: raw coordinates, so that it is never normalised twice.
void Enregistrement::prendre_dessin(std::size_t slot) {
  capture_.lire_info_dll();
  dessiner_miniature(dessin_, sk_.PicIco, sk_.PicRef);
  Patron& patron = table_.patrons[slot];
  patron.X = {{dessin_.dessin_x.begin(), dessin_.dessin_x.end()}, ""};
  patron.Y = {{dessin_.dessin_y.begin(), dessin_.dessin_y.end()}, ""};
  patron.Ind = dessin_.dessin_nb;
}

// Among miniatures the row stands in line with its slot, and so does its image once the list is rebuilt.
void Enregistrement::ajouter_ligne(std::size_t slot) {
  const std::string& nom = table_.patrons[slot].Nom;
  platform::ListItem* row = nullptr;
  if (vue_.vue_vignettes) {
    const int place = static_cast<int>(slot) + 1;
    sk_.ImLst_Vig.Add(image_de(sk_.PicIco));
    sk_.LV.Icons = &sk_.ImLst_Vig;
    row = &sk_.LV.Add(place, nom, {place, ""}, {});
  } else {
    sk_.LV.Icons = &sk_.ImageList132;
    row = &sk_.LV.Add(table_.nb_patrons + 1, nom, {0, "On"}, {0, "On"});
  }
  row->SubItems(1) = std::to_string(dessin_.dessin_nb);
}

// The last row of that name; 0 where there is none.
int Enregistrement::ligne_de(const std::string& nom) {
  for (int row = sk_.LV.Count(); row > 0; --row) {
    if (sk_.LV.row(row).Text.get() == nom) return row;
  }
  return 0;
}

void Enregistrement::choisir_ligne(const std::string& nom) {
  const int row = ligne_de(nom);
  if (row == 0) return;
  vue_.ligne_choisie = static_cast<std::int16_t>(row);
  sk_.LV.EnsureVisible(vue_.ligne_choisie);
  sk_.LV.select(vue_.ligne_choisie);
  sk_.LV.Refresh();
}

void Enregistrement::supprimer_patron(const std::string& nom) {
  if (nom.empty() || nom == nom_efface) return;
  constexpr std::size_t dernier = table_capacity - 1;  // the walk ends there, and what stands there is not deleted
  const std::size_t slot = slot_of(table_, nom, table_capacity);
  if (slot >= dernier) return;
  const platform::ListItem* chosen = sk_.LV.SelectedItem();
  const int answer =
      dialogs_.MsgBox("Voulez-vous supprimer le Patron: " + (chosen != nullptr ? chosen->Text.get() : ""),
                      platform::vbSystemModal | platform::vbOKCancel, "Supprimer");
  if (answer == platform::vbCancel) return;
  if (table_.nb_patrons > 0) --table_.nb_patrons;
  sk_.LV.Refresh();
  sk_.LV.Arrange = platform::arrange_left;
  sk_.lblNmodel.Caption = std::to_string(table_.nb_patrons);
  sk_.lblRes.Caption = "";
  Patron& patron = table_.patrons[slot];
  patron.Nom = nom_efface;
  patron.Ind = 0;
  patron.X = {};
  patron.Y = {};
  rebatir_vignettes(sk_, table_);
  profil_.ecrire_patrons();
}

}  // namespace Mod_dessin
