// What the pointer does on the bare main window and on its title bar.
#pragma once

#include <functional>

#include "forms/sk.h"

namespace ui {

// Fills in the handlers. `terminer` ends the program.
void connect_fenetre(SK& sk, std::function<void()> terminer);

}  // namespace ui
