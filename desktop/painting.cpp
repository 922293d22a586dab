#include "desktop/painting.h"

#include <QIcon>
#include <QPainterPath>
#include <QTextLayout>
#include <algorithm>
#include <cmath>
#include <list>

#include "desktop/icons.h"
#include "desktop/style.h"

namespace desktop {

namespace {

using platform::Kind;

QPen dotted(const QColor& ink, double width) {
  QPen pen(ink, width);
  pen.setCapStyle(Qt::FlatCap);
  pen.setDashPattern({2, 2});
  return pen;
}

void paint_label(QPainter& painter, const platform::Label& label) {
  const QRect area = place_of(label);
  if (label.BackStyle == platform::opaque) painter.fillRect(snapped(painter, area), colour(label.BackColor));
  if (label.Caption.get().empty()) return;

  const QFont font = face(label.Font);
  QTextOption option;
  option.setWrapMode(QTextOption::WordWrap);
  option.setAlignment(label.Alignment == platform::Alignment::right    ? Qt::AlignRight
                      : label.Alignment == platform::Alignment::centre ? Qt::AlignHCenter
                                                                       : Qt::AlignLeft);
  std::list<QTextLayout> paragraphs;
  int count = 0;
  for (const QString& text : to_toolkit(label.Caption).split(QLatin1Char('\n'))) {
    QTextLayout& layout = paragraphs.emplace_back(text, font);
    layout.setTextOption(option);
    layout.beginLayout();
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
      line.setLineWidth(area.width());
      ++count;
    }
    layout.endLayout();
    count += layout.lineCount() == 0 ? 1 : 0;
  }

  // Lines stand as close as the face is high. Where they leave no room to spare they close up, as far as the design's
  // face, which is lower than most, would have: the last row of a label may be the frame of its window.
  const QFontMetrics metrics(font);
  int pitch = metrics.ascent() + metrics.descent();
  if (count > 1 && count * pitch >= area.height())
    pitch = std::min(std::max(area.height() / count, 1), font.pixelSize());
  int top = 0;
  for (QTextLayout& layout : paragraphs) {
    for (int i = 0; i < layout.lineCount(); ++i, top += pitch) layout.lineAt(i).setPosition({0, qreal(top)});
    if (layout.lineCount() == 0) top += pitch;
  }
  painter.save();
  painter.setClipRect(area, Qt::IntersectClip);
  painter.setPen(colour(label.ForeColor));
  for (QTextLayout& layout : paragraphs) layout.draw(&painter, area.topLeft());
  painter.restore();
}

void paint_shape(QPainter& painter, const platform::Shape& shape) {
  const QRectF outer = snapped(painter, place_of(shape));
  const double width = line_width(painter);
  const double corner = shape.rounded ? std::min(outer.width(), outer.height()) / 4 : 0;
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing, shape.rounded);
  painter.setPen(Qt::NoPen);
  if (shape.BackStyle == platform::opaque) {
    painter.setBrush(colour(shape.BackColor));
    painter.drawRoundedRect(outer, corner, corner);
  }
  const QColor ink = colour(shape.BorderColor);
  if (shape.BorderStyle == platform::border_solid) {
    // The outline lies inside the rectangle: what is left of it when a smaller one is cut out.
    QPainterPath outline;
    outline.addRoundedRect(outer, corner, corner);
    const double inner = std::max(0.0, corner - width);
    outline.addRoundedRect(outer.adjusted(width, width, -width, -width), inner, inner);
    painter.fillPath(outline, ink);
  } else if (shape.BorderStyle == platform::border_dotted) {
    painter.setBrush(Qt::NoBrush);
    painter.setPen(dotted(ink, width));
    painter.drawRoundedRect(outer.adjusted(width / 2, width / 2, -width / 2, -width / 2), corner, corner);
  }
  painter.restore();
}

void paint_line(QPainter& painter, const platform::Line& line) {
  if (line.BorderStyle != platform::border_solid && line.BorderStyle != platform::border_dotted) return;
  const double width = line_width(painter);
  const QColor ink = colour(line.BorderColor);
  // The corner of the pixel that each end lies on, on the screen's own pixels.
  const QPointF from = snapped(painter, QRectF(pixels(line.X1), pixels(line.Y1), 1, 1)).topLeft();
  const QPointF to = snapped(painter, QRectF(pixels(line.X2), pixels(line.Y2), 1, 1)).topLeft();
  const QPointF middle(width / 2, width / 2);
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing, from.x() != to.x() && from.y() != to.y());
  painter.setPen(line.BorderStyle == platform::border_dotted ? dotted(ink, width) : QPen(ink, width));
  painter.drawLine(from + middle, to + middle);
  painter.restore();
}

}  // namespace

QRectF snapped(const QPainter& painter, const QRectF& area) {
  const QTransform to_screen = painter.deviceTransform();
  const QRectF on_screen = to_screen.mapRect(area);
  const QRectF edges(QPointF(std::round(on_screen.left()), std::round(on_screen.top())),
                     QPointF(std::round(on_screen.right()), std::round(on_screen.bottom())));
  return to_screen.inverted().mapRect(edges);
}

double line_width(const QPainter& painter) {
  const double density = painter.deviceTransform().m11();
  return std::max(1.0, std::floor(density)) / density;
}

bool is_painted(Kind kind) {
  return kind == Kind::label || kind == Kind::shape || kind == Kind::line || kind == Kind::image;
}

QRect painted_area(const platform::Control& control) {
  switch (control.kind()) {
    case Kind::label:
    case Kind::shape:
    case Kind::image:
      return place_of(control);
    case Kind::line: {
      const auto& line = static_cast<const platform::Line&>(control);
      const QPoint from(pixels(line.X1), pixels(line.Y1));
      const QPoint to(pixels(line.X2), pixels(line.Y2));
      return QRect(from, to).normalized().adjusted(-1, -1, 1, 1);
    }
    default:
      return {};
  }
}

void paint_control(QPainter& painter, const platform::Control& control) {
  switch (control.kind()) {
    case Kind::label:
      paint_label(painter, static_cast<const platform::Label&>(control));
      break;
    case Kind::shape:
      paint_shape(painter, static_cast<const platform::Shape&>(control));
      break;
    case Kind::line:
      paint_line(painter, static_cast<const platform::Line&>(control));
      break;
    case Kind::image: {
      const QRect area = place_of(control);
      icon_of(static_cast<const platform::Image&>(control).Picture).paint(&painter, area);
      break;
    }
    default:
      break;
  }
}

void paint_canvas(QPainter& painter, const platform::Canvas& canvas) {
  if (canvas.width() == 0 || canvas.height() == 0) return;
  const auto* bytes = reinterpret_cast<const uchar*>(canvas.pixels().data());
  const QImage image(bytes, canvas.width(), canvas.height(), QImage::Format_ARGB32);
  const QSizeF size = QSizeF(image.size()) / canvas.density();
  const QPointF corner = snapped(painter, QRectF(QPointF(0, 0), size)).topLeft();
  // A canvas has whole pixels of the design: on a screen of 1.25 or 1.5 of its own pixels to each it is made smaller,
  // and strokes of letters must not fall through between two of them.
  const bool shrinks = painter.deviceTransform().m11() != canvas.density();
  painter.setRenderHint(QPainter::SmoothPixmapTransform, shrinks);
  painter.drawImage(QRectF(corner, size), image);
}

}  // namespace desktop
