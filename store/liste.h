// The rows and miniatures of the list, which are thrown away and built again from the table.
#pragma once

#include "forms/sk.h"
#include "model/patrons.h"

namespace Mod_dessin {

// Copies the actions of the list's rows into the table. The list is always the newer of the two. A row in line with its
// slot is taken as it stands; one out of line, as after a delete in the same run, goes to the slot of its name.
void reprendre_actions(SK& sk, Table& table);

// Both rebuilds below take the actions of the old rows into the table first.

// Draws a miniature of every live patron and fills the list with one row each, in slot order, in the icon view.
void rebatir_vignettes(SK& sk, Table& table);
// Fills the list with one row for each of the slots 0 to nb_patrons - 1, deleted ones included, all with the same icon.
// The view is the caller's to set.
void remplir_liste(SK& sk, Table& table);

// What stands in the miniature box, as an image of a list.
platform::ListImage image_de(const platform::PictureBox& PicIco);

}  // namespace Mod_dessin
