#include "desktop/row_painter.h"

#include <QAbstractItemView>
#include <QHelpEvent>
#include <QIcon>
#include <QPainter>
#include <QTextLayout>
#include <QToolTip>
#include <algorithm>

#include "desktop/painting.h"

namespace desktop {

// Where the picture and the text of one row stand.
struct RowPainter::Parts {
  QRect picture, text;
  QStringList lines;
  bool cut = false;  // there is no room for all of the text
};

// Lines of at most `width` pixels, the last of at most `most` lines ending in "…" where there is more.
static QStringList broken(const QString& text, const QFont& font, int width, int most) {
  QStringList lines;
  QTextLayout layout(text, font);
  QTextOption option;
  option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
  layout.setTextOption(option);
  layout.beginLayout();
  for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
    line.setLineWidth(width);
    if (lines.size() + 1 < most) {
      lines << text.mid(line.textStart(), line.textLength()).trimmed();
    } else {
      lines << QFontMetrics(font).elidedText(text.mid(line.textStart()).trimmed(), Qt::ElideRight, width);
      break;
    }
  }
  layout.endLayout();
  return lines;
}

RowPainter::Parts RowPainter::parts(const QModelIndex& index, const QRect& cell, const QFont& font) const {
  const QFontMetrics metrics(font);
  const QString text = index.data().toString();
  Parts result;
  if (look_.under) {
    result.picture = QRect(cell.left() + (cell.width() - look_.picture.width()) / 2, cell.top() + gap,
                           look_.picture.width(), look_.picture.height());
    const int top = result.picture.bottom() + 1 + gap;
    const int most = std::max(1, (cell.bottom() + 1 - gap - top) / metrics.height());
    result.lines = broken(text, font, cell.width() - 4 * gap, most);
    int width = 0;
    for (const QString& line : result.lines) width = std::max(width, metrics.horizontalAdvance(line));
    width += 2 * gap;
    result.text = QRect(cell.left() + (cell.width() - width) / 2, top, width,
                        metrics.height() * static_cast<int>(result.lines.size()));
  } else {
    int left = cell.left();
    if (index.column() == 0 && !look_.picture.isEmpty()) {
      result.picture =
          QRect(QPoint(left + gap + 1, cell.top() + (cell.height() - look_.picture.height()) / 2), look_.picture);
      left = result.picture.right() + 1 + gap;
    }
    result.text = QRect(left, cell.top(), std::max(0, cell.right() + 1 - left), cell.height());
    result.lines << metrics.elidedText(text, Qt::ElideRight, result.text.width() - 2 * gap);
  }
  result.cut = result.lines.join(QString()).endsWith(QChar(0x2026)) && !text.endsWith(QChar(0x2026));
  return result;
}

bool RowPainter::hits(const QModelIndex& index, const QRect& cell, const QFont& font, QPoint at) const {
  const Parts found = parts(index, cell, font);
  // The gap between picture and text belongs to neither and to both.
  return found.picture.contains(at) || found.text.adjusted(-gap, -gap, 0, 0).contains(at);
}

QSize RowPainter::sizeHint(const QStyleOptionViewItem& /*option*/, const QModelIndex& /*index*/) const {
  return look_.cell;
}

void RowPainter::paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const {
  const auto* view = qobject_cast<const QAbstractItemView*>(option.widget);
  const bool selected = option.state.testFlag(QStyle::State_Selected);
  const bool focused = view != nullptr && view->hasFocus() && view->currentIndex().row() == index.row();
  const Parts found = parts(index, option.rect, option.font);
  painter->save();
  painter->fillRect(option.rect, look_.ground);
  const QVariant picture = index.data(Qt::DecorationRole);
  if (picture.metaType().id() == QMetaType::QPixmap) {
    // Pixel for pixel: never scaled, never between two pixels.
    painter->drawPixmap(snapped(*painter, found.picture).topLeft(), picture.value<QPixmap>());
  } else {
    picture.value<QIcon>().paint(painter, found.picture);
  }
  paint_text(*painter, found, option.font, selected);
  if (selected || (focused && marks_place_)) paint_frame(*painter, index, option.rect, selected, focused);
  painter->restore();
}

void RowPainter::paint_text(QPainter& painter, const Parts& parts, const QFont& font, bool reversed) const {
  if (reversed) painter.fillRect(snapped(painter, parts.text), look_.ink);
  painter.setFont(font);
  painter.setPen(reversed ? look_.ground : look_.ink);
  const int pitch = look_.under ? QFontMetrics(font).height() : parts.text.height();
  QRect line(parts.text.left() + gap, parts.text.top(), parts.text.width() - 2 * gap, pitch);
  for (const QString& text : parts.lines) {
    painter.drawText(line, (look_.under ? Qt::AlignHCenter : Qt::AlignLeft) | Qt::AlignVCenter | Qt::TextSingleLine,
                     text);
    line.translate(0, pitch);
  }
}

// A selected row has a frame, a broad one where the keyboard is. A row that the keyboard has come to without selecting
// it has a dotted one. In columns each draws its part.
void RowPainter::paint_frame(QPainter& painter, const QModelIndex& index, const QRect& cell, bool selected,
                             bool focused) const {
  const double width = line_width(painter) * (selected && focused ? 2 : 1);
  QRectF edge = snapped(painter, cell).adjusted(width / 2, width / 2, -width / 2, -width / 2);
  if (index.column() > 0) edge.setLeft(edge.left() - 2 * width);
  if (index.column() + 1 < look_.columns) edge.setRight(edge.right() + 2 * width);
  painter.setClipRect(cell, Qt::IntersectClip);
  painter.setBrush(Qt::NoBrush);
  QPen pen(look_.ink, width);
  pen.setJoinStyle(Qt::MiterJoin);
  if (!selected) pen.setDashPattern({1, 1});
  painter.setPen(pen);
  painter.drawRect(edge);
}

bool RowPainter::helpEvent(QHelpEvent* event, QAbstractItemView* view, const QStyleOptionViewItem& option,
                           const QModelIndex& index) {
  if (event->type() != QEvent::ToolTip) return false;
  const bool cut = index.isValid() && parts(index, option.rect, view->font()).cut;
  QToolTip::showText(event->globalPos(), cut ? index.data().toString() : QString(), view);
  return true;
}

void Headings::paintSection(QPainter* painter, const QRect& area, int section) const {
  const QColor ink = palette().color(QPalette::Text);
  const double width = line_width(*painter);
  const QRectF whole = snapped(*painter, area);
  painter->fillRect(whole, palette().color(QPalette::Base));
  painter->fillRect(QRectF(whole.left(), whole.bottom() - width, whole.width(), width), ink);
  painter->fillRect(QRectF(whole.right() - width, whole.top(), width, whole.height()), ink);
  const QRect room = area.adjusted(RowPainter::gap, 0, -RowPainter::gap - 1, -1);
  const QString text = model()->headerData(section, orientation()).toString();
  painter->setFont(font());
  painter->setPen(ink);
  painter->drawText(room, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine,
                    fontMetrics().elidedText(text, Qt::ElideRight, room.width()));
}

}  // namespace desktop
