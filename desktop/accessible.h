// What assistive technology is told of the windows beyond what the toolkit tells by itself.
#pragma once

#include <QWidget>

namespace desktop {

// From now on. Once, before the first window.
void install_accessibility();

// A widget has been shown or hidden on what holds it.
void tell_presence(QWidget& widget);

}  // namespace desktop
