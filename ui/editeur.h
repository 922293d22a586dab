// The action editor: binds the patron of the selected row to a command, a text or a program.
#pragma once

#include <string>

#include "forms/actions.h"
#include "forms/instance.h"
#include "forms/sk.h"
#include "model/patrons.h"
#include "model/theme.h"
#include "platform/services.h"
#include "tray/systray.h"

namespace ui {

class Editeur {
 public:
  // What the editor works on, beside its own form.
  struct Programme {
    SK& sk;
    Mod_dessin::Table& table;
    const Theme& theme;
    Cls_Systray& systray;
  };
  Editeur(platform::Services& services, FormInstance<Actions>& actions, Programme programme);
  // From then on the closing of the editor reaches the hook library.
  void prendre(platform::HookLibrary& hook) { hook_ = &hook; }

  // Shows the editor for the selected row; nothing where none is selected. A hidden editor comes back as it was.
  void ouvrir();

 private:
  void Form_Load(Actions& form);
  void Form_Unload();
  void connect(Actions& form);
  void connect_texts(Actions& form);
  void lire_action(Actions& form, const std::string& action);
  void charger_police_actions(Actions& form);
  void lblCom_MouseDown(Actions& form, int Index, int Button);
  void lblComC_MouseDown(Actions& form, int Index);
  void lblComC_MouseUp(int Index);
  void valider_texte(const std::string& action);
  void Raz_Click();
  void deplacer_actions(const Actions& form);
  // Stores the action in the patron of the selected row, where there is one, and in the row.
  void associer(const std::string& action);

  platform::Services& services_;
  FormInstance<Actions>& actions_;
  Programme programme_;
  platform::HookLibrary* hook_ = nullptr;
};

}  // namespace ui
