#include "desktop/style.h"

#include <cmath>

namespace desktop {

int pixels(float twips) {
  return static_cast<int>(std::lround(twips / platform::twips_per_pixel));
}

QRect place_of(const platform::Control& control) {
  return {pixels(control.Left), pixels(control.Top), pixels(control.Width), pixels(control.Height)};
}

QColor colour(std::int32_t value) {
  const auto channels = static_cast<std::uint32_t>(value);
  return QColor::fromRgb(static_cast<int>(channels & 0xFFU), static_cast<int>(channels >> 8 & 0xFFU),
                         static_cast<int>(channels >> 16 & 0xFFU));
}

std::int32_t value_of(const QColor& colour) {
  return colour.red() | colour.green() << 8 | colour.blue() << 16;
}

QFont face(const platform::Font& font) {
  constexpr float pixels_per_point = 96.0F / 72.0F;
  QFont result;
  // The first of these that exists is taken; those behind the wanted one are small enough for the design's labels.
  result.setFamilies({QString::fromStdString(font.Name), QStringLiteral("Liberation Sans"), QStringLiteral("Arial"),
                      QStringLiteral("DejaVu Sans")});
  result.setStyleHint(QFont::SansSerif);
  result.setPixelSize(std::max(1, static_cast<int>(std::lround(font.Size * pixels_per_point))));
  result.setBold(font.Bold);
  return result;
}

QString to_toolkit(const std::string& text) {
  return QString::fromStdString(text).replace(QLatin1String("\r\n"), QLatin1String("\n"));
}

std::string from_toolkit(const QString& text) {
  return QString(text).replace(QLatin1Char('\n'), QLatin1String("\r\n")).toStdString();
}

}  // namespace desktop
