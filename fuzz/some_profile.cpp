#include "fuzz/some_profile.h"

#include <array>

Profile some_profile(Chances& chances) {
  Profile profile;
  bool doubled = false;
  const int patrons = chances.once_in(20) ? chances.between(97, 100) : chances.one_of({0, 0, 1, 3, 5, 7, 13, 14});
  for (int n = 1; n <= patrons; ++n) {
    // Lower case is unusual, but kept.
    const std::string name = (chances.once_in(20) ? "q" : "P") + std::to_string(n);
    std::array<std::string, 4> values = {name, "2", ".0.64", "." + std::to_string(n % 64) + ".1"};
    // One thing wrong at a time: two might be right together.
    switch (chances.below(120)) {
      case 0:
        values[0] = chances.one_of({"A - B", "-", "pos"});
        profile.odd = true;
        break;
      case 1:
        values[0] = chances.one_of({"P0", "p0"});
        profile.odd = profile.odd || doubled;
        doubled = true;
        break;
      case 2:
        values[1] = chances.one_of({"3", "1", "-1", "02", "x", "", "99999"});
        profile.odd = true;
        break;
      case 3:
        values[2] = chances.one_of({"", ".0", "0.64", ".a.b", ".0.."});
        profile.odd = true;
        break;
      case 4:
        values[3] = chances.one_of({"", ".1", ".1.2.3"});
        profile.odd = true;
        break;
      default:
        break;
    }
    const std::string action =
        chances.one_of({"", "T:Bonjour", "P:/usr/bin/xterm", "C:Copier", "C:Bureau", "C:Stroke-Mind", "x"});
    profile.text += "[" + values[0] + "]\r\nInd=" + values[1] + "\r\nX=" + values[2] + "\r\nY=" + values[3] +
                    "\r\nActionassoci\xE9=" + action + "\r\n";
  }
  if (chances.once_in(3)) {
    profile.text += "; a note\r\n";
    profile.odd = true;
  }
  if (chances.once_in(2)) profile.text += "[Pos]\r\nX=3450\r\nY=1200,5\r\n";
  return profile;
}
