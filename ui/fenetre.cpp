#include "ui/fenetre.h"

#include <utility>

#include "ui/marques.h"

namespace ui {

void Fenetre::connect() {
  sk_.MouseMove = [this](const platform::MouseEvent& event) { Form_MouseMove(event); };
  offrir_menu(sk_.Pictitre);
  offrir_menu(sk_.lblcaption);
}

// Mouse events of the tray icon come here too, each as a move with the left button: with the window hidden they open
// the menu. The information line, too, stands only until the pointer crosses the bare form.
void Fenetre::Form_MouseMove(const platform::MouseEvent& event) {
  constexpr int tray_event = 1;
  effacer_marques(sk_, 0, 5);
  effacer_cadres(sk_);
  sk_.lblinfo.Caption = "";
  if (event.Button == tray_event && !services_.windows.on_screen(sk_)) menu_.ouvrir();
}

// Where there is no tray, a press of the right button on the title bar offers its menu.
void Fenetre::offrir_menu(platform::Control& surface) {
  surface.MouseDown = [this, before = std::move(surface.MouseDown)](const platform::MouseEvent& event) {
    constexpr int right_button = 2;
    before(event);
    if (event.Button == right_button && !services_.shell.tray_present()) menu_.ouvrir();
  };
}

}  // namespace ui
