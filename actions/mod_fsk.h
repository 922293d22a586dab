// Typing a text so that the lock keys stand afterwards as they stood before.
#pragma once

#include <string_view>

#include "platform/services.h"

namespace Mod_FSK {

// Whether a lock key's byte of the keyboard state is not 0: a lock key that is held down counts as well.
bool etat_num(platform::Input& input);
bool etat_maj(platform::Input& input);
bool etat_defil(platform::Input& input);

// Toggles a lock key, by the keyboard state on the 9x family and by key events on the NT family.
void bascule_num(platform::Input& input);
void bascule_maj(platform::Input& input);
void bascule_defil(platform::Input& input);

// Types `text` in the notation of platform/sendkeys.h, then toggles back each lock key that has changed.
void force_send_keys(platform::Input& input, std::string_view text, bool wait);

}  // namespace Mod_FSK
