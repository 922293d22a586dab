// The program's own pictures.
#pragma once

#include <QIcon>

#include "platform/controls.h"

namespace desktop {

// All sizes of a picture; null where it is none, or where the program has no such picture.
QIcon icon_of(const platform::Picture& picture);

}  // namespace desktop
