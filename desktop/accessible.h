// What assistive technology sees of painted labels: to it each is an object of its own, as if it were a widget.
#pragma once

#include "desktop/surface_widget.h"

namespace desktop {

// From now on labels are told of. Once, before the first window.
void install_accessible_labels();

// Something of a label on that surface has changed, its text perhaps.
void announce(SurfaceWidget& surface, platform::Label& label);

}  // namespace desktop
