// From an action string to what it does.
//
// An action string is a prefix of two characters and a body with nothing between them: "P:" and something that the
// shell can open, "T:" and a text in the notation of platform/sendkeys.h, "C:" and the label of a command. Nothing is
// escaped.
#pragma once

#include <cstdint>
#include <string>

#include "actions/commandes.h"
#include "forms/sk.h"
#include "model/patrons.h"
#include "platform/services.h"

class Dispatch {
 public:
  Dispatch(platform::Services& services, SK& sk, const Mod_dessin::Table& table)
      : services_(services), sk_(sk), table_(table), commandes_(services, sk) {}

  // Runs `action` unless the top-level window under the pointer is the main form. `index` is the slot of the patron
  // that asked for it. An unknown prefix or label, and an action of fewer than two characters, do nothing. Leaves a
  // trace of the windows that it looked at in Text1.
  void executer_action(const std::string& action, std::int16_t index);

 private:
  platform::Handle top_level(platform::Handle window) const;
  void trace(const std::string& name, const std::string& value, bool anew = false);

  platform::Services& services_;
  SK& sk_;
  const Mod_dessin::Table& table_;
  Commandes commandes_;
};
