// The table of patrons on its way from the profile file and back.
//
// One section a patron, named like it, with "Ind", "X", "Y" and "Actionassocié" in that order; "Pos", the place of the
// main window, comes last. A list of coordinates has "." before each number, and "," as decimal mark.
#pragma once

#include <array>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>

#include "forms/sk.h"
#include "model/patrons.h"
#include "store/mod_ini.h"

namespace Mod_dessin {

class Profil {
 public:
  Profil(Mod_ini& ini, SK& sk, Table& table) : ini_(ini), sk_(sk), table_(table) {}

  // Fills the table from the file. What the table cannot take in whole is kept aside before the file is next written.
  void charger_patrons();
  // Copies the list's actions into the table and writes the file anew, in one replacement. False: the old file stands.
  bool ecrire_patrons();

  // Puts the main form where the file says that it last stood, as far as it says so.
  void lire_position();

  // Splits a text at `separateur` and at blanks, after dropping its first `debut` characters, into `morceaux`, of which
  // slots that the split does not reach keep what they held. Gives the number of slots filled.
  int decouper(std::string texte, char separateur, int debut);

 private:
  static constexpr int nb_morceaux = 5001;

  // One axis of the window's place: as the file spells it, and where the window came to stand then. The spelling is
  // kept until the window has moved.
  struct Place {
    std::string texte;
    float pose = 0;
  };
  void lire_axe(const std::string& section, const char* key, platform::Property<float>& axis, Place& place);
  static std::string texte_axe(float now, const Place& place);
  std::string section_position();
  bool looks_like_position(const std::string& section);
  bool keys_among(const std::string& section, std::initializer_list<const char*> known);
  void lire_patron(Patron& patron);
  bool lire_liste(const std::string& section, const char* key, Coordinates& list);
  static std::string liste_texte(const Coordinates& list, int count);

  Mod_ini& ini_;
  SK& sk_;
  Table& table_;
  std::array<std::optional<std::string>, nb_morceaux> morceaux_;
  Place gauche_, haut_;
};

}  // namespace Mod_dessin
