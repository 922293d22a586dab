// What the pointer does on the bare main window, on its tray icon, and on its title bar.
#pragma once

#include "forms/sk.h"
#include "platform/services.h"
#include "ui/menu_icone.h"

namespace ui {

class Fenetre {
 public:
  Fenetre(platform::Services& services, SK& sk, MenuIcone& menu) : services_(services), sk_(sk), menu_(menu) {}
  // Fills in the form's MouseMove, and adds to the presses on the title bar.
  void connect();

 private:
  void Form_MouseMove(const platform::MouseEvent& event);
  void offrir_menu(platform::Control& surface);

  platform::Services& services_;
  SK& sk_;
  MenuIcone& menu_;
};

}  // namespace ui
