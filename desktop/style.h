// From the units of the design to those of the toolkit.
#pragma once

#include <QColor>
#include <QFont>
#include <QRect>
#include <QString>
#include <cstdint>
#include <string>

#include "platform/controls.h"

namespace desktop {

// Toolkit pixels: the toolkit scales them to the screen's own.
int pixels(float twips);
// Where a control lies on what holds it.
QRect place_of(const platform::Control& control);

// Of a 32-bit colour with red in the low byte.
QColor colour(std::int32_t value);
std::int32_t value_of(const QColor& colour);
// A face for painting. A name that the system does not know gives a plain face without serifs. Points are those of a
// screen of 96 to the inch, as the design's twips are.
QFont face(const platform::Font& font);

// Text of the program, lines ending in CR LF or LF, to the toolkit's, lines ending in LF, and back to CR LF.
QString to_toolkit(const std::string& text);
std::string from_toolkit(const QString& text);

}  // namespace desktop
