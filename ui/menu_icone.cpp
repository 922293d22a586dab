#include "ui/menu_icone.h"

#include <cassert>
#include <cstdint>
#include <utility>

#include "effects/coloriser.h"
#include "forms/mod_fenetre.h"
#include "store/liste.h"

namespace ui {

MenuIcone::MenuIcone(platform::Services& services, SK& sk, FormInstance<Menu>& menu, Mod_dessin::Table& table,
                     Theme& theme, Cls_Systray& systray, std::function<void()> quitter)
    : services_(services),
      sk_(sk),
      menu_(menu),
      table_(table),
      theme_(theme),
      systray_(systray),
      quitter_(std::move(quitter)) {
  menu_.Load = [this](Menu& loaded) { Form_Load(loaded); };
}

void MenuIcone::Form_Load(Menu& menu) {
  menu.mnuVoir.Click = [this] { mnuVoir_Click(); };
  menu.mnuPause.Click = [this] { mnuPause_Click(); };
  menu.mnucolor.Click = [this] { mnucolor_Click(); };
  menu.mnuExit.Click = [this] { quitter_(); };
  // Not from within the timer's own event: it is part of the form that goes.
  menu.Timer1.Elapsed = [this] { services_.events.post([this] { Timer1_Timer(); }); };
}

void MenuIcone::ouvrir() {
  if (ouvert_) return;
  Menu& menu = menu_();
  ouvert_ = true;
  services_.dialogs.PopupMenu(
      {&menu.mnuVoir, &menu.mnuSep1, &menu.mnuPause, &menu.mnuSep2, &menu.mnucolor, &menu.sep3, &menu.mnuExit});
  fermer();
  services_.events.DoEvents();
}

void MenuIcone::Timer1_Timer() {
  if (ouvert_) {
    en_retard_ = true;
  } else {
    menu_.unload();
  }
}

void MenuIcone::fermer() {
  ouvert_ = false;
  if (std::exchange(en_retard_, false)) menu_.unload();
}

void MenuIcone::mnuVoir_Click() {
  fermer();
  std::int16_t defaut = 0;
  Mod_dessin::montrer_fenetre(services_.windows, sk_, defaut);
}

void MenuIcone::mnuPause_Click() {
  Menu& menu = menu_();
  const bool pause = !menu.mnuPause.Checked;
  menu.mnuPause.Checked = pause;
  assert(hook_ != nullptr);
  hook_->DLL_STOP(pause ? 1 : 0);
  changer_icone(sk_, systray_, pause ? image_arret : image_marche);
}

void MenuIcone::mnucolor_Click() {
  fermer();
  services_.dialogs.ShowColor(sk_.CommonDialog1);
  if (services_.events.ended()) return;
  theme_.couleur_theme = sk_.CommonDialog1.Color;
  coloriser(sk_, theme_, theme_.couleur_theme);
  Mod_dessin::rebatir_vignettes(sk_, table_);
}

}  // namespace ui
