// What assistive technology is told of the windows beyond what the toolkit tells by itself.
#pragma once

#include <QAbstractItemView>

namespace desktop {

// From now on. Once, before the first window.
void install_accessibility();

// A widget has been shown or hidden on what holds it.
void tell_presence(QWidget& widget);

// A view has got the keyboard: it is with the current row.
void tell_current(const QAbstractItemView& view);

}  // namespace desktop
