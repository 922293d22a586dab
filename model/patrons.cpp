#include "model/patrons.h"

#include <algorithm>

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

std::size_t slot_of(const Table& table, const std::string& nom, int bound) {
  const auto end = table.patrons.begin() + bound;
  const auto found = std::find_if(table.patrons.begin(), end, [&](const Patron& patron) { return patron.Nom == nom; });
  return static_cast<std::size_t>(found - table.patrons.begin());
}

}  // namespace Mod_dessin
