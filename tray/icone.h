// The picture that shows whether the hook runs.
#pragma once

#include "forms/sk.h"

// Gives the main form image `n` of ImageList132: image_marche for a running hook, image_arret for a stopped one.
void changer_icone(SK& sk, int n);
