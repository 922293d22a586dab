// The program's own pictures.
#pragma once

#include <QCursor>
#include <QIcon>
#include <QImage>

#include "platform/controls.h"

namespace desktop {

// All sizes of a picture; null where it is none, or where the program has no such picture.
QIcon icon_of(const platform::Picture& picture);
// A picture that has one size, 0xAARRGGBB in rows without gaps; null as above.
QImage picture_of(const platform::Picture& picture);
// A picture as a mouse pointer; the usual pointer where it is none.
QCursor pointer_of(const platform::Picture& picture);

}  // namespace desktop
