#include "desktop/fonts.h"

#include <QFontDatabase>
#include <QFontMetrics>
#include <QImage>
#include <QPainter>
#include <QStringList>
#include <algorithm>
#include <cmath>

#include "desktop/style.h"

namespace desktop {

int DesktopFonts::AddFontResourceA(std::string_view path) {
  if (const auto found = known_.find(path); found != known_.end()) return found->second;
  const int id = QFontDatabase::addApplicationFont(QString::fromUtf8(path.data(), static_cast<qsizetype>(path.size())));
  if (id < 0) return 0;
  const auto faces = static_cast<int>(QFontDatabase::applicationFontFamilies(id).size());
  known_.emplace(path, faces);
  // What was drawn before may have been a substitute.
  faces_.clear();
  last_ = nullptr;
  return faces;
}

DesktopFonts::Face& DesktopFonts::face_of(const platform::Font& font, double density) {
  const auto is_it = [&](const Face& known) { return known.density == density && known.font == font; };
  if (last_ != nullptr && is_it(*last_)) return *last_;
  const auto found = std::find_if(faces_.begin(), faces_.end(), is_it);
  if (found != faces_.end()) return *(last_ = &*found);
  QFont scaled = face(font);
  scaled.setPixelSize(std::max(1, static_cast<int>(std::lround(scaled.pixelSize() * density))));
  const int line_height = QFontMetrics(face(font)).height();
  return *(last_ = &faces_.emplace_back(Face{font, density, scaled, QFontMetrics(scaled).ascent(), line_height, {}}));
}

platform::Glyph DesktopFonts::draw(const Face& face, char32_t character) {
  const QString text = QString::fromUcs4(&character, 1);
  const QFontMetrics metrics(face.scaled);
  const QRect inked = metrics.boundingRect(text).adjusted(-1, -1, 1, 1);
  platform::Glyph glyph;
  glyph.left = inked.left();
  glyph.top = inked.top() + face.ascent;
  glyph.width = inked.width();
  glyph.height = inked.height();
  // Not rounded: over a whole line that would add up to several letters.
  glyph.advance = QFontMetricsF(face.scaled).horizontalAdvance(text);
  QImage image(inked.size(), QImage::Format_ARGB32_Premultiplied);
  image.fill(Qt::transparent);
  QPainter painter(&image);
  painter.setFont(face.scaled);
  painter.setPen(Qt::white);
  painter.drawText(-inked.topLeft(), text);
  painter.end();
  for (int y = 0; y < image.height(); ++y) {
    const QRgb* const row = reinterpret_cast<const QRgb*>(image.constScanLine(y));
    for (int x = 0; x < image.width(); ++x) glyph.coverage.push_back(static_cast<std::uint8_t>(qAlpha(row[x])));
  }
  return glyph;
}

const platform::Glyph& DesktopFonts::glyph(const platform::Font& font, double density, char32_t character) {
  Face& known = face_of(font, density);
  const auto found = known.glyphs.find(character);
  if (found != known.glyphs.end()) return found->second;
  return known.glyphs.emplace(character, draw(known, character)).first->second;
}

int DesktopFonts::line_height(const platform::Font& font) {
  if (last_ != nullptr && last_->font == font) return last_->line_height;
  return face_of(font, 1).line_height;
}

}  // namespace desktop
