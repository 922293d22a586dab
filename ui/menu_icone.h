// The menu of the tray icon.
#pragma once

#include <functional>

#include "forms/instance.h"
#include "forms/menu.h"
#include "forms/sk.h"
#include "model/patrons.h"
#include "model/theme.h"
#include "platform/services.h"
#include "tray/systray.h"

namespace ui {

class MenuIcone {
 public:
  // `quitter` ends the program.
  MenuIcone(platform::Services& services, SK& sk, FormInstance<Menu>& menu, Mod_dessin::Table& table, Theme& theme,
            Cls_Systray& systray, std::function<void()> quitter);
  // From then on the pause entry reaches the hook library.
  void prendre(platform::HookLibrary& hook) { hook_ = &hook; }

  // Opens the menu at the pointer and returns when it is closed and what was chosen has run.
  void ouvrir();

 private:
  void Form_Load(Menu& menu);
  void Timer1_Timer();
  // The pop-up is gone: the form may go where its time came meanwhile.
  void fermer();
  void mnuVoir_Click();
  void mnuPause_Click();
  void mnucolor_Click();

  platform::Services& services_;
  SK& sk_;
  FormInstance<Menu>& menu_;
  Mod_dessin::Table& table_;
  Theme& theme_;
  Cls_Systray& systray_;
  std::function<void()> quitter_;
  platform::HookLibrary* hook_ = nullptr;
  bool ouvert_ = false;     // the pop-up is on the screen: the form must not go from under it
  bool en_retard_ = false;  // the form's time came while the pop-up was open
};

}  // namespace ui
