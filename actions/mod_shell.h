// The desktop's own commands. Each routine makes a shell object, calls one member of it and lets it go; whether the
// member had an effect is not looked at.
#pragma once

#include <string_view>

#include "platform/services.h"

namespace Mod_Shell {

void fenetres_cascade(platform::Shell& shell);
// One above the other for an empty `sens` and for "H" or "h", side by side for any other text.
void fenetres_mosaique(platform::Shell& shell, std::string_view sens);
// Minimises all windows or, where `reduit` says that they are minimised, brings them back.
void bureau_basculer(platform::Shell& shell, bool reduit);
void boite_arret(platform::Shell& shell);
void boite_executer(platform::Shell& shell);

}  // namespace Mod_Shell
