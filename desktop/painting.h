// Painting of what has no widget of its own: labels, shapes, lines, pictures, and what has been drawn on a box.
#pragma once

#include <QPainter>
#include <QRect>

#include "platform/controls.h"

namespace desktop {

// Whether controls of a kind are painted on the surface they lie on.
bool is_painted(platform::Kind kind);
// What painting a control may touch, in toolkit pixels of its surface. Empty for what is not painted.
QRect painted_area(const platform::Control& control);
// Paints a control on its surface; nothing for what is not painted. `Visible` is the caller's business.
void paint_control(QPainter& painter, const platform::Control& control);
// Paints what was drawn, from the corner of the surface, pixel for pixel.
void paint_canvas(QPainter& painter, const platform::Canvas& canvas);

}  // namespace desktop
