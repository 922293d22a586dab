// Moving by hand: the two handles that scroll the list, and the surfaces by which the window is dragged. The pointer's
// moves over these surfaces also take off the marks that the buttons left behind.
#pragma once

#include <cstdint>
#include <functional>

#include "forms/sk.h"
#include "model/patrons.h"
#include "model/theme.h"
#include "platform/services.h"

namespace ui {

// Place of the window's corner, twips.
struct Coin {
  float Left, Top;
  bool operator==(const Coin&) const = default;
};

// Where a window goes that stands at `from` and whose surface was pressed at `depart` (twips of the surface), now that
// the pointer is at (X, Y) of the same surface. Closer than 20 pixels to an edge of the screen it sticks: at the left
// and the top on the edge, at the right beside it, at the bottom 510 twips above it. Both axes measure with the width
// of a pixel.
Coin place_tiree(Coin from, float width, float height, Coin depart, float X, float Y, const platform::Screen& screen);

class Poignees {
 public:
  Poignees(platform::Windows& windows, SK& sk, const Mod_dessin::Table& table, const Mod_dessin::Vue& vue,
           const Theme& theme)
      : windows_(windows), sk_(sk), table_(table), vue_(vue), theme_(theme) {}
  // Fills in the handlers of the handles and of the seven surfaces, and the press on lblCom.
  void connect();

 private:
  void ScrollX_MouseMove(const platform::MouseEvent& event);
  void ScrollY_MouseMove(const platform::MouseEvent& event);
  void suivre_curseur(platform::Control& handle, int Button, float X, float Y);
  void deplacer_curseur(platform::Control& handle, float X, float Y) const;
  void deplacer_fenetre(float X, float Y);
  // Lets the window be dragged by `surface`; `survol` runs first at every move over it.
  void tirer_par(platform::Control& surface, std::function<void()> survol);

  platform::Windows& windows_;
  SK& sk_;
  const Mod_dessin::Table& table_;
  const Mod_dessin::Vue& vue_;
  const Theme& theme_;
  // The point by which a handle is held: where the pointer last moved over it with no button down, twips of the handle.
  std::int16_t ancre_x_ = 0;
  std::int16_t ancre_y_ = 0;
  Coin depart_{0, 0};  // the last press on a surface, in the surface's own twips
};

}  // namespace ui
