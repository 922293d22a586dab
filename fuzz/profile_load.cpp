// Any file may lie where the profile is: it is taken in as far as it goes, and the table stays within its bounds.
#include "forms/sk.h"
#include "fuzz/input.h"
#include "recognition/verdict.h"
#include "simulation/profile_files.h"
#include "store/liste.h"
#include "store/profil.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  simulation::Journal journal;
  simulation::ProfileFiles files(journal);
  files.files["Strokemind.AI"] = Input(data, size).text(size);
  platform::ProfileService service(files);
  Mod_ini ini(service, "Strokemind.AI");
  static SK sk;
  Mod_dessin::Table table;
  Mod_dessin::Profil profil(ini, sk, table);
  profil.lire_position();
  profil.charger_patrons();
  int live = 0;
  for (const Mod_dessin::Patron& patron : table.patrons) {
    promise(patron.Nom != Mod_dessin::nom_efface);
    live += patron.Nom.empty() ? 0 : 1;
    promise(patron.Ind >= 0 && patron.Ind <= Mod_dessin::dessin_slots);
    const auto count = static_cast<std::size_t>(patron.Ind);
    promise(patron.X.values.size() >= count && patron.Y.values.size() >= count);
  }
  promise(live == table.nb_patrons && live <= Mod_dessin::table_capacity);
  Mod_dessin::Dessin dessin;
  dessin.dessin_nb = 2;
  dessin.dessin_x[1] = 64;
  Mod_dessin::verdict(dessin, table, Mod_dessin::highest_used(table));
  // Drawing every miniature takes its time, and a few show it all.
  if (live > 0 && live <= 3) Mod_dessin::rebatir_vignettes(sk, table);
  return 0;
}
