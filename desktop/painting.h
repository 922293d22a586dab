// Painting of what has no widget of its own: labels, shapes, lines, pictures, and what has been drawn on a box.
#pragma once

#include <QPainter>
#include <QRect>

#include "platform/controls.h"

namespace desktop {

// The same rectangle with its edges moved to those of the screen's own pixels. On a screen where one toolkit pixel is
// one and a half of these, edges would lie between two and be smeared.
QRectF snapped(const QPainter& painter, const QRectF& area);
// How many toolkit pixels a line is wide: a whole number of the screen's own, about one toolkit pixel.
double line_width(const QPainter& painter);

// Whether controls of a kind are painted on the surface they lie on.
bool is_painted(platform::Kind kind);
// What painting a control may touch, in toolkit pixels of its surface. Empty for what is not painted.
QRect painted_area(const platform::Control& control);
// Paints a control on its surface; nothing for what is not painted. `Visible` is the caller's business.
void paint_control(QPainter& painter, const platform::Control& control);
// Paints what was drawn, from the corner of the surface, pixel for pixel.
void paint_canvas(QPainter& painter, const platform::Canvas& canvas);

}  // namespace desktop
