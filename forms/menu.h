// The form that carries the tray menu and its timer. It is never shown.
#pragma once

#include "platform/controls.h"

class Menu : public platform::Form {
 public:
  Menu() : Form("Menu", 0, 0), Timer1(*this, "Timer1", duree_ms, true) { windowless = true; }

  static constexpr int duree_ms = 1800;  // from the load to the unload
  platform::MenuItem mnuVoir{"Voir"};
  platform::MenuItem mnuSep1{"-"};
  platform::MenuItem mnuPause{"Pause"};
  platform::MenuItem mnuSep2{"-"};
  platform::MenuItem mnucolor{"Couleurs"};
  platform::MenuItem sep3{"-"};
  platform::MenuItem mnuExit{"Exit"};
  platform::Timer Timer1;
};
