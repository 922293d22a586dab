#include "desktop/list_widget.h"

#include <QHeaderView>
#include <QPointer>
#include <QScopedValueRollback>
#include <QScrollBar>
#include <algorithm>
#include <utility>

#include "desktop/mouse.h"
#include "desktop/style.h"

namespace desktop {

ListWidget::ListWidget(std::shared_ptr<FormLink> link, platform::ListView& list, QWidget* parent)
    : QWidget(parent),
      link_(std::move(link)),
      list_(list),
      model_(link_, list),
      icons_(new QListView(this)),
      report_(new QTreeView(this)) {
  setAccessibleName(QString::fromStdString(list.Name));
  report_->setRootIsDecorated(false);
  report_->setItemsExpandable(false);
  report_->setUniformRowHeights(true);
  report_->setAllColumnsShowFocus(true);
  report_->header()->setStretchLastSection(false);
  report_->header()->setMinimumSectionSize(1);
  icons_->setMovement(QListView::Static);
  icons_->setResizeMode(QListView::Adjust);
  icons_->setWordWrap(true);
  watch(*icons_);
  watch(*report_);
  report_->setSelectionModel(icons_->selectionModel());
  connect(icons_->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
          [this](const QModelIndex& index) { picked(index); });
  setFocusProxy(icons_);
  take_over();
}

void ListWidget::watch(QAbstractItemView& view) {
  view.setModel(&model_);
  view.setFrameShape(QFrame::NoFrame);
  view.setSelectionMode(QAbstractItemView::SingleSelection);
  view.setSelectionBehavior(QAbstractItemView::SelectRows);
  view.setEditTriggers(QAbstractItemView::NoEditTriggers);
  view.setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
  view.setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
  // The window has handles of its own to scroll by.
  view.setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  view.setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  new MouseTap(link_, *view.viewport(), list_);
  // A press on the row that is chosen already is a click on it all the same.
  connect(&view, &QAbstractItemView::clicked, this, [this](const QModelIndex& index) {
    if (index.row() + 1 == list_.selected_row()) link_->call(list_.ItemClick, index.row() + 1);
  });
}

QAbstractItemView& ListWidget::shown() const {
  if (list_.View == platform::view_report) return *report_;
  return *icons_;
}

// The list tells of every single change; the views are set up once for all that come in a row.
void ListWidget::sync() {
  if (syncing_ || std::exchange(stale_, true)) return;
  link_->events.post([self = QPointer<QWidget>(this), this] {
    if (self != nullptr && link_->serving()) take_over();
  });
}

void ListWidget::take_over() {
  if (!std::exchange(stale_, false)) return;
  const QScopedValueRollback guard(syncing_, true);
  QPalette colours = palette();
  colours.setColor(QPalette::Base, colour(list_.BackColor));
  colours.setColor(QPalette::Text, colour(list_.ForeColor));
  colours.setColor(QPalette::Highlight, colour(list_.ForeColor));
  colours.setColor(QPalette::HighlightedText, colour(list_.BackColor));
  for (QAbstractItemView* view : {static_cast<QAbstractItemView*>(icons_), static_cast<QAbstractItemView*>(report_)}) {
    view->setPalette(colours);
    view->setFont(face(list_.Font));
    view->setVisible(view == &shown());
  }
  setFocusProxy(&shown());
  const QFont font = face(list_.Font);
  report_->header()->setStyleSheet(
      QStringLiteral(
          "QHeaderView { background: %1; } QHeaderView::section { background: %1; color: %2; padding: 1px 4px;"
          " border: 0px solid %2; border-bottom-width: 1px; border-right-width: 1px;"
          " font: %3px \"%4\"; }")
          .arg(colour(list_.BackColor).name(), colour(list_.ForeColor).name())
          .arg(font.pixelSize())
          .arg(font.families().join(QLatin1String("\",\""))));

  QScrollBar& across = *shown().horizontalScrollBar();
  QScrollBar& down = *shown().verticalScrollBar();
  const int x = across.value();
  const int y = down.value();
  model_.reload();
  arrange();
  if (list_.selected_row() > 0) {
    const QModelIndex row = model_.index(list_.selected_row() - 1, 0);
    icons_->selectionModel()->setCurrentIndex(row, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
  }
  shown().doItemsLayout();
  across.setValue(x);
  down.setValue(y);
}

void ListWidget::arrange() {
  const bool thumbnails = list_.View == platform::view_icon;
  const bool sideways = !thumbnails || list_.Arrange == platform::arrange_left;
  icons_->setViewMode(thumbnails ? QListView::IconMode : QListView::ListMode);
  icons_->setMovement(QListView::Static);
  icons_->setFlow(sideways ? QListView::TopToBottom : QListView::LeftToRight);
  icons_->setWrapping(true);
  const platform::ImageList* images = thumbnails ? list_.Icons : list_.SmallIcons;
  const platform::ListImage* first = images != nullptr ? (*images)(1) : nullptr;
  QSize size = thumbnails ? QSize(32, 32) : QSize(16, 16);
  if (first != nullptr && first->pixels != nullptr) {
    size = (QSizeF(first->pixels->width(), first->pixels->height()) / first->pixels->density()).toSize();
  }
  icons_->setIconSize(size);
  // Icons stand in a grid, with room for two lines of text under each.
  constexpr int beside = 12;
  constexpr int narrowest = 76;
  const int below = 2 * icons_->fontMetrics().height() + 8;
  const QSize cell(std::max(size.width() + beside, narrowest), size.height() + below);
  icons_->setGridSize(thumbnails ? cell : QSize());
  report_->setIconSize({16, 16});
  for (std::size_t i = 0; i < list_.ColumnHeaders.size(); ++i) {
    report_->setColumnWidth(static_cast<int>(i), pixels(list_.ColumnHeaders[i].Width));
  }
}

void ListWidget::ensure_visible(int row) {
  take_over();
  shown().scrollTo(model_.index(row - 1, 0));
}

// The user has chosen a row, by the mouse or the keyboard.
void ListWidget::picked(const QModelIndex& index) {
  // A list that gets the keyboard makes its first row the current one, which picks nothing.
  if (syncing_ || !link_->serving() || !icons_->selectionModel()->isSelected(index)) return;
  {
    const QScopedValueRollback guard(syncing_, true);
    list_.select(index.row() + 1);
  }
  link_->call(list_.ItemClick, index.row() + 1);
}

void ListWidget::resizeEvent(QResizeEvent* /*event*/) {
  icons_->setGeometry(rect());
  report_->setGeometry(rect());
}

}  // namespace desktop
