// The one place where everything is put together: what lives for the run, and how it comes up and goes down.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>

#include "actions/dispatch.h"
#include "capture/capture.h"
#include "forms/actions.h"
#include "forms/instance.h"
#include "forms/menu.h"
#include "forms/sk.h"
#include "model/dessin.h"
#include "model/patrons.h"
#include "model/theme.h"
#include "platform/services.h"
#include "recognition/recherche.h"
#include "store/enregistrement.h"
#include "store/mod_ini.h"
#include "store/profil.h"
#include "tray/systray.h"
#include "ui/boutons.h"
#include "ui/editeur.h"
#include "ui/fenetre.h"
#include "ui/menu_icone.h"
#include "ui/panneaux.h"
#include "ui/poignees.h"
#include "ui/vue_liste.h"

class Programme {
 public:
  explicit Programme(platform::Services& services);
  ~Programme();
  Programme(const Programme&) = delete;
  Programme& operator=(const Programme&) = delete;

  // Loads the main form. Where the window or the hook library cannot be had, it says so and ends with status 1.
  void start();
  // Closes the editor, then the main form, which saves and ends the program. Safe to call at any moment, and again.
  void quit();

  SK& sk() { return sk_; }
  Mod_dessin::Table& table() { return table_; }
  Mod_dessin::Dessin& dessin() { return dessin_; }
  Mod_dessin::Vue& vue() { return vue_; }
  Theme& theme() { return theme_; }
  FormInstance<Menu>& menu() { return menu_; }
  FormInstance<Actions>& actions() { return actions_; }

 private:
  void Form_Load();
  void Form_Unload();
  void Form_Terminate();
  bool load_hook();
  void connect();
  ui::Gestes gestes();

  platform::Services& services_;
  SK sk_;
  FormInstance<Menu> menu_;
  FormInstance<Actions> actions_;

  Mod_dessin::Dessin dessin_;
  Mod_dessin::Table table_;
  Mod_dessin::Vue vue_;
  Theme theme_;

  Mod_ini ini_;
  Mod_dessin::Profil profil_;
  Dispatch dispatch_;
  Mod_dessin::Recherche recherche_;
  Cls_Systray systray_;
  std::unique_ptr<platform::HookLibrary> hook_;
  // From the loading of the hook library on.
  std::optional<Capture> capture_;
  std::optional<Mod_dessin::Enregistrement> enregistrement_;

  ui::Editeur editeur_;
  ui::MenuIcone menu_icone_;
  ui::Fenetre fenetre_;
  ui::VueListe vue_liste_;
  ui::Panneaux panneaux_;
  ui::Boutons boutons_;
  ui::Poignees poignees_;

  bool patrons_loaded_ = false;  // before that the table must not be written
  bool unloading_ = false;
  int status_ = 0;  // of the program when it ends
};
