// How the rows of a list look: the list's two colours, the picture of the row as it is, the selected row in reverse.
#pragma once

#include <QColor>
#include <QHeaderView>
#include <QStyledItemDelegate>

namespace desktop {

class RowPainter final : public QStyledItemDelegate {
 public:
  struct Look {
    QColor ink, ground;
    QSize picture;  // toolkit pixels; empty where rows have none
    QSize cell;     // room for one row; in a table the width is the columns' business
    bool under;     // the text stands under the picture, in several lines, not beside it
    int columns;
  };
  using QStyledItemDelegate::QStyledItemDelegate;

  void set_look(const Look& look) { look_ = look; }
  const Look& look() const { return look_; }
  // Whether the row at which the keyboard stands is marked while it is not selected.
  void set_marks_place(bool marks) { marks_place_ = marks; }
  // Pixels around pictures and texts.
  static constexpr int gap = 3;

  // Whether a point is on the picture or the text of a row that stands in `cell`, not on the ground around them.
  bool hits(const QModelIndex& index, const QRect& cell, const QFont& font, QPoint at) const;

  QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
  void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
  // Shows the whole text over a row that has no room for it.
  bool helpEvent(QHelpEvent* event, QAbstractItemView* view, const QStyleOptionViewItem& option,
                 const QModelIndex& index) override;

 private:
  struct Parts;
  Parts parts(const QModelIndex& index, const QRect& cell, const QFont& font) const;
  void paint_text(QPainter& painter, const Parts& parts, const QFont& font, bool reversed) const;
  void paint_frame(QPainter& painter, const QModelIndex& index, const QRect& cell, bool selected, bool focused) const;

  Look look_{};
  bool marks_place_ = false;
};

// The headings of a table in its text colour on its ground; one that has no room ends in "…".
class Headings final : public QHeaderView {
 public:
  explicit Headings(QWidget* parent) : QHeaderView(Qt::Horizontal, parent) {}

 protected:
  void paintSection(QPainter* painter, const QRect& area, int section) const override;
};

}  // namespace desktop
