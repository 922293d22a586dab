// Showing and hiding the windows with an animation, keeping them in front, and their font.
#pragma once

#include <cstdint>

#include "forms/actions.h"
#include "forms/sk.h"
#include "platform/services.h"

// Puts a window into the topmost band or takes it out, without moving, sizing or activating it. Gives the platform's
// own result.
namespace Mod_fenêtre {
bool toujours_devant(platform::Windows& windows, platform::Handle hWnd, bool devant);
}

namespace Mod_dessin {

inline constexpr std::int16_t duree_depart_ms = 1000;  // of the show at start
inline constexpr std::int16_t duree_defaut_ms = 500;   // of a show when none is given
inline constexpr int duree_cacher_ms = 300;            // of the hide

// Blends the main window in and keeps it in front. A duration of 0 stands for 500 and becomes 500 for the caller too.
void montrer_fenetre(platform::Windows& windows, SK& sk, std::int16_t& ms);
// The same for the action editor.
void montrer_actions(platform::Windows& windows, Actions& actions, std::int16_t& ms);
// Blends the main window out. The form's own Visible is not touched.
void cacher_fenetre(platform::Windows& windows, SK& sk);

inline constexpr const char* fichier_police = "OCRAEXT.TTF";
inline constexpr const char* nom_police = "OCR A Extended";

// Makes the program's font known, or says in a box that it cannot be had.
void installer_police(platform::Services& services);
// Sets its name, and leaves size and weight alone.
void nommer_police(platform::Property<platform::Font>& font);
// Makes the program's font known and sets it on the main form; says so in a box where the font cannot be had.
void charger_police(platform::Services& services, SK& sk);

}  // namespace Mod_dessin
