// The 17 commands that an action can name by its label.
#pragma once

#include <string>

#include "forms/sk.h"
#include "platform/services.h"

class Commandes {
 public:
  Commandes(platform::Services& services, SK& sk) : services_(services), sk_(sk) {}

  // Runs the command of exactly that label; no other text does anything. `cible` is the top-level window that the
  // window commands act on; the keys go to whatever has the keyboard.
  void executer(const std::string& label, platform::Handle cible);

 private:
  void bureau();
  void agrandir(platform::Handle cible);

  platform::Services& services_;
  SK& sk_;
  // Whether the last "Bureau" minimised the windows. It follows the command's own history, not the desktop.
  bool bureau_reduit_ = false;
};
