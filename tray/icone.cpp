#include "tray/icone.h"

void changer_icone(SK& sk, int n) {
  if (const platform::ListImage* const image = sk.ImageList132(n)) sk.Icon = image->picture;
}
