// The preview of a patron that was picked from the list.
#pragma once

#include "forms/sk.h"
#include "model/dessin.h"
#include "model/patrons.h"

namespace Mod_dessin {

// Draws the patron of the selected row in the miniature box, which it fills, and tells its number of points. The dots
// are as wide as the last painter left them. The scaled points go into the stroke buffers, whose count stays that of
// the last stroke. Needs a selected row; a name that is in no slot shows an empty box and 0 points.
void montrer_patron(SK& sk, const Table& table, Dessin& dessin);

}  // namespace Mod_dessin
