// The rows and miniatures of the list, which are thrown away and built again from the table.
#pragma once

#include "forms/sk.h"
#include "model/patrons.h"

namespace Mod_dessin {

// Draws a miniature of every live patron and fills the list with one row each, in slot order, in the icon view.
void rebatir_vignettes(SK& sk, const Table& table);

}  // namespace Mod_dessin
