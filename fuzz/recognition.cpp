// Any stroke against any table: a verdict without a fault, the name of a patron of the table or none.
#include <cmath>

#include "bench/plain_verdict.h"
#include "capture/miniature.h"
#include "forms/sk.h"
#include "fuzz/input.h"
#include "recognition/verdict.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Input input(data, size);
  static SK sk;
  Mod_dessin::Dessin dessin;
  dessin.dessin_nb = static_cast<std::int16_t>(input.number<std::uint16_t>() % Mod_dessin::dessin_slots);
  const auto flags = input.number<std::uint8_t>();
  const bool raw = (flags & 1) != 0;
  const bool tame = (flags & 2) != 0;  // as the program itself saves them
  for (std::size_t k = 0; k < 40; ++k) {
    dessin.dessin_x[k] = static_cast<float>(input.number<std::int32_t>());
    dessin.dessin_y[k] = static_cast<float>(input.number<std::int32_t>());
  }
  if (raw) Mod_dessin::dessiner_miniature(dessin, sk.PicIco, sk.PicRef);
  Mod_dessin::Table table;
  const std::size_t patrons = input.number<std::uint8_t>() % 8U;
  for (std::size_t slot = 0; slot < patrons; ++slot) {
    Mod_dessin::Patron& patron = table.patrons[slot];
    patron.Nom = slot % 3 == 2 ? Mod_dessin::nom_efface : "P" + std::to_string(slot);
    patron.Ind = static_cast<std::int16_t>(input.number<std::uint16_t>() % (Mod_dessin::dessin_slots + 1));
    const auto count = static_cast<std::size_t>(patron.Ind);
    // A profile can spell any double, but neither an infinity nor what is no number.
    const auto finite = [&]() -> double {
      if (tame) return input.number<std::int16_t>() / 64.0;
      const auto value = input.number<double>();
      return std::isfinite(value) ? value : 0;
    };
    for (std::size_t k = 0; k < count; ++k) {
      patron.X.values.push_back(finite());
      patron.Y.values.push_back(finite());
    }
  }
  table.nb_patrons = static_cast<std::uint8_t>(patrons);
  const Mod_dessin::Verdict found = Mod_dessin::verdict(dessin, table, Mod_dessin::highest_used(table));
  promise(found.nom.empty() || Mod_dessin::slot_of(table, found.nom, Mod_dessin::table_slots) < patrons);
  promise(!std::isnan(found.score));
  if (tame) {
    const Mod_dessin::Verdict plain = plain_verdict(dessin, table, Mod_dessin::highest_used(table));
    promise(found.nom == plain.nom && found.score == plain.score);
  }
  return 0;
}
