// A list view: the toolkit's list and its table, of which one is shown at a time.
#pragma once

#include <QByteArray>
#include <QKeyEvent>
#include <QListView>
#include <QTreeView>
#include <QWidget>
#include <memory>

#include "desktop/list_model.h"
#include "desktop/mouse.h"
#include "desktop/row_painter.h"

namespace desktop {

class ListWidget final : public QWidget, public Mirror {
 public:
  ListWidget(std::shared_ptr<FormLink> link, platform::ListView& list, QWidget* parent);

  void sync() override;
  // Takes over at once what the last changes of the list have left to be done.
  void take_over();
  // Scrolls no further than it takes to see a row (from 1).
  void ensure_visible(int row);
  // Scrolls by pixels, in list view sideways by columns, as far as there is something to see.
  void scroll(int across, int down);

 protected:
  void resizeEvent(QResizeEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  QAbstractItemView& shown() const;
  void watch(QAbstractItemView& view);
  void dress();
  void arrange();
  QSize picture_size() const;
  RowPainter::Look look() const;
  void restore(int across, int down);
  bool mouse(const QMouseEvent& event);
  void pressed(QPoint at);
  void picked();
  bool chooses_first(const QKeyEvent& key);
  void show_place(Qt::FocusReason came_by);
  void reveal(int row);
  void scroll_by(int across, int down);

  std::shared_ptr<FormLink> link_;
  platform::ListView& list_;
  MouseRouter mouse_;
  ListModel model_;
  RowPainter* painter_;
  QListView* icons_;
  QTreeView* report_;
  std::vector<platform::ColumnHeader> headings_;  // that the table's columns have been set up for
  QByteArray widths_;                             // of the table's columns while it is not shown
  int view_ = -1, arrange_ = -1;                  // that the views have been set up for
  bool stale_ = true;                             // something of the list has changed since the views were set up
  bool emptied_ = true;                           // the rows have gone since then
  bool syncing_ = false;                          // the views follow the list, not the user
  bool by_mouse_ = false;                         // a press is choosing a row
};

}  // namespace desktop
