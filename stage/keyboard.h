// The keyboard of a screen, as the server knows it.
#pragma once

#include <string>

#include "stage/xserver.h"

namespace stage {

// Sets the layout: "us", "fr bepo", "us,ru"; with a key to change the group, to the second group. Throws where there is
// no such layout.
void set_layout(const XServer& server, const std::string& layout);
// The key maps of every keyboard of the server, as text.
std::string key_maps(const XServer& server);
// How many keys are down, and the modifiers and the group in force: "0 down, locked 2, group 1".
std::string key_state(const XServer& server);

}  // namespace stage
