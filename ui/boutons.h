// The home-made buttons of the main window, its two commands, and the word in its status bar.
#pragma once

#include <functional>

#include "forms/sk.h"
#include "model/theme.h"
#include "platform/services.h"

namespace ui {

// What a click sets off.
struct Gestes {
  std::function<void()> terminer;                         // ends the program
  std::function<void(int index)> basculer;                // views (0 to 3), help (6), About (7)
  std::function<void()> relacher_aide;                    // the help button was released
  std::function<void(const std::string& nom)> supprimer;  // deletes the patron of the selected row, if there is one
  std::function<void()> enregistrer;
  std::function<void()> ecrire;  // rewrites the profile file
};

class Boutons {
 public:
  Boutons(platform::Windows& windows, SK& sk, const Theme& theme, Gestes gestes)
      : windows_(windows), sk_(sk), theme_(theme), gestes_(std::move(gestes)) {}
  // Fills in the handlers of Bouton, lblCom and the double click on lblpatron.
  void connect();

 private:
  void Bouton_Click(int Index);
  void Bouton_MouseMove(int Index);
  // Pressed and released alike: the mark takes the theme colour.
  void Bouton_MouseDown(int Index);
  void Bouton_MouseUp(int Index);
  void lblCom_Click(int Index);
  void lblCom_MouseMove(int Index);

  platform::Windows& windows_;
  SK& sk_;
  const Theme& theme_;
  Gestes gestes_;
};

}  // namespace ui
