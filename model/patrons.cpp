#include "model/patrons.h"

namespace Mod_dessin {

int highest_used(const Table& table) {
  int bound = table_slots;
  while (bound > 0) {
    const std::string& name = table.patrons[static_cast<std::size_t>(bound - 1)].Nom;
    if (!name.empty() && name != nom_efface) break;
    --bound;
  }
  return bound;
}

}  // namespace Mod_dessin
