// Saving the last stroke as a patron, and deleting a patron.
#pragma once

#include <cstddef>
#include <string>

#include "capture/capture.h"
#include "forms/sk.h"
#include "model/dessin.h"
#include "model/patrons.h"
#include "platform/services.h"
#include "store/profil.h"

namespace Mod_dessin {

class Enregistrement {
 public:
  Enregistrement(platform::Dialogs& dialogs, SK& sk, Table& table, Vue& vue, Dessin& dessin, Profil& profil,
                 Capture& capture)
      : dialogs_(dialogs), sk_(sk), table_(table), vue_(vue), dessin_(dessin), profil_(profil), capture_(capture) {}

  // Asks for a name and stores the last stroke under it, in the table, the list and the file. A name in use is replaced
  // where the user says so. Where the name cannot be kept in the file, the information line says why.
  void enregistrer_patron();

  // Deletes the patron of that name where the user agrees: its slot is free again, the list is rebuilt as miniatures,
  // and the file follows. A name of no patron, an empty one among them, does nothing.
  void supprimer_patron(const std::string& nom);

 private:
  bool remplacer(std::size_t slot);
  std::string refus(const std::string& nom) const;
  void prendre_dessin(std::size_t slot);
  void ajouter_ligne(std::size_t slot);
  int ligne_de(const std::string& nom);
  void choisir_ligne(const std::string& nom);

  platform::Dialogs& dialogs_;
  SK& sk_;
  Table& table_;
  Vue& vue_;
  Dessin& dessin_;
  Profil& profil_;
  Capture& capture_;
};

}  // namespace Mod_dessin
