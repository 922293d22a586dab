// The stroke buffers.
#pragma once

#include <array>
#include <cstdint>

namespace Mod_dessin {

inline constexpr int dessin_slots = 501;  // the longest stroke has 500 points; the matcher reads one slot past it

// A stroke in drawing order: screen pixels after it has been fetched, units of the miniature box once normalised. The
// count stands apart from the slots: wiping leaves it alone, and slots beyond it keep what an earlier stroke left.
struct Dessin {
  std::array<float, dessin_slots> dessin_x{};
  std::array<float, dessin_slots> dessin_y{};
  std::int16_t dessin_nb = 0;  // 0 to 500
};

inline void effacer_tampons(Dessin& dessin) {
  dessin.dessin_x.fill(0.0F);
  dessin.dessin_y.fill(0.0F);
}

}  // namespace Mod_dessin
