#include "desktop/list_widget.h"

#include <QPointer>
#include <QScopedValueRollback>
#include <QScrollBar>
#include <algorithm>
#include <utility>

#include "desktop/accessible.h"
#include "desktop/pressing.h"
#include "desktop/style.h"

namespace desktop {

namespace {

// Tells a screen reader of its current row only while it has the keyboard, and of the chosen one only while it is
// shown: the toolkit's views tell always, and the reader would go there.
// NOLINTBEGIN(bugprone-parent-virtual-call): what they add to their own base is just that
template <class View>
class DiscreetView final : public View {
 public:
  using View::View;

 protected:
  void currentChanged(const QModelIndex& current, const QModelIndex& previous) override {
    if (this->hasFocus()) {
      View::currentChanged(current, previous);
    } else {
      QAbstractItemView::currentChanged(current, previous);
    }
  }
  void selectionChanged(const QItemSelection& now, const QItemSelection& before) override {
    if (this->isVisible()) {
      View::selectionChanged(now, before);
    } else {
      QAbstractItemView::selectionChanged(now, before);
    }
  }
};
// NOLINTEND(bugprone-parent-virtual-call)

}  // namespace

ListWidget::ListWidget(std::shared_ptr<FormLink> link, platform::ListView& list, QWidget* parent)
    : QWidget(parent),
      link_(std::move(link)),
      list_(list),
      mouse_(link_, *this, &list, nullptr),
      model_(link_, list),
      painter_(new RowPainter(this)),
      icons_(new DiscreetView<QListView>(this)),
      report_(new DiscreetView<QTreeView>(this)) {
  report_->setRootIsDecorated(false);
  report_->setItemsExpandable(false);
  report_->setUniformRowHeights(true);
  auto* headings = new Headings(report_);
  headings->setMinimumSectionSize(1);
  report_->setHeader(headings);
  // These two the table has turned on.
  headings->setStretchLastSection(false);
  headings->setSectionsMovable(false);
  icons_->setUniformItemSizes(true);
  icons_->setWrapping(true);
  icons_->setResizeMode(QListView::Adjust);
  watch(*icons_);
  watch(*report_);
  report_->setSelectionModel(icons_->selectionModel());
  connect(icons_->selectionModel(), &QItemSelectionModel::selectionChanged, this, [this] { picked(); });
  take_over();
}

void ListWidget::watch(QAbstractItemView& view) {
  view.setAccessibleName(spoken_name(list_));
  view.setModel(&model_);
  view.setItemDelegate(painter_);
  view.setFrameShape(QFrame::NoFrame);
  view.setSelectionMode(QAbstractItemView::SingleSelection);
  view.setSelectionBehavior(QAbstractItemView::SelectRows);
  view.setEditTriggers(QAbstractItemView::NoEditTriggers);
  view.setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
  view.setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
  // The window has handles of its own to scroll by.
  view.setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  view.setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  // A press on a row that is half in sight must not pull the list from under the pointer, which may be about to drag
  // it.
  view.setAutoScroll(false);
  view.installEventFilter(this);
  view.viewport()->setMouseTracking(true);
  view.viewport()->installEventFilter(this);
}

QAbstractItemView& ListWidget::shown() const {
  if (list_.View == platform::view_report) return *report_;
  return *icons_;
}

// The list tells of every single change; the views are set up once for all that come in a row.
void ListWidget::sync() {
  if (syncing_) return;
  emptied_ = emptied_ || list_.Count() == 0;
  if (std::exchange(stale_, true)) return;
  link_->events.post([self = QPointer<QWidget>(this), this] {
    if (self != nullptr && link_->serving()) take_over();
  });
}

void ListWidget::take_over() {
  if (!std::exchange(stale_, false)) return;
  const QScopedValueRollback guard(syncing_, true);
  const bool focused = icons_->hasFocus() || report_->hasFocus();
  const int across = shown().horizontalScrollBar()->value();
  const int down = shown().verticalScrollBar()->value();
  dress();
  setFocusProxy(&shown());
  icons_->setVisible(&shown() == icons_);
  report_->setVisible(&shown() == report_);
  if (focused) shown().setFocus();
  const auto as_table = [this] { return model_.columnCount({}) > 1; };
  const bool was_table = as_table();
  if (was_table) widths_ = report_->header()->saveState();
  model_.reload();
  if (!was_table && as_table() && !widths_.isEmpty()) report_->header()->restoreState(widths_);
  arrange();
  restore(across, down);
}

// Both views in the list's two colours, and nothing in any other.
void ListWidget::dress() {
  const QString ink = colour(list_.ForeColor).name();
  const QString ground = colour(list_.BackColor).name();
  QPalette colours = palette();
  for (const auto role : {QPalette::Base, QPalette::Window, QPalette::HighlightedText}) {
    colours.setColor(role, colour(list_.BackColor));
  }
  for (const auto role : {QPalette::Text, QPalette::WindowText, QPalette::Highlight}) {
    colours.setColor(role, colour(list_.ForeColor));
  }
  const QFont font = face(list_.Font);
  const QString style =
      QStringLiteral("QToolTip { background: %1; color: %2; border: 1px solid %2; padding: 1px; font: %3px \"%4\"; }")
          .arg(ground, ink)
          .arg(font.pixelSize())
          .arg(font.families().join(QLatin1String("\",\"")));
  for (QAbstractItemView* view : {static_cast<QAbstractItemView*>(icons_), static_cast<QAbstractItemView*>(report_)}) {
    if (view->palette() != colours) view->setPalette(colours);
    if (view->font() != font) view->setFont(font);
    // Restyling is slow: only where the style differs.
    if (view->styleSheet() != style) view->setStyleSheet(style);
  }
  report_->header()->setPalette(colours);
  report_->header()->setFont(font);
}

// The size of the list's images, in toolkit pixels; empty where the present view has none.
QSize ListWidget::picture_size() const {
  const bool large = list_.View == platform::view_icon;
  const platform::ImageList* images = large ? list_.Icons : list_.SmallIcons;
  if (images == nullptr) return {};
  const platform::ListImage* first = (*images)(1);
  if (first == nullptr || first->pixels == nullptr) return large ? QSize(32, 32) : QSize(16, 16);
  return (QSizeF(first->pixels->width(), first->pixels->height()) / first->pixels->density()).toSize();
}

// Cells that fill the view: what a whole number of the least size would leave over is shared out among them.
RowPainter::Look ListWidget::look() const {
  constexpr int narrowest = 76;  // room for ten letters under an icon
  constexpr int gap = RowPainter::gap;
  // The view breaks a column before a cell that would end at its very edge, even before the first.
  const auto shared = [](int room, int least) { return (room - 1) / std::max(1, (room - 1) / least); };
  const QFontMetrics metrics(face(list_.Font));
  const QSize picture = picture_size();
  RowPainter::Look look{colour(list_.ForeColor), colour(list_.BackColor), picture, {}, false, 1};
  if (list_.View == platform::view_icon) {
    look.under = true;
    look.cell = {std::max(picture.width() + 4 * gap, narrowest), picture.height() + 2 * metrics.height() + 3 * gap};
    if (list_.Arrange == platform::arrange_left) {
      look.cell.setHeight(shared(height(), look.cell.height()));
    } else {
      look.cell.setWidth(shared(width(), look.cell.width()));
    }
    return look;
  }
  const int line = std::max(picture.height(), metrics.height()) + 2;
  if (list_.View == platform::view_report) {
    look.columns = model_.columnCount({});
    look.cell = {1, line};
    return look;
  }
  // Columns are as wide as the widest row, and no wider than the view.
  int widest = narrowest;
  for (int row = 0; row < list_.Count(); ++row) {
    const int text = metrics.horizontalAdvance(QString::fromStdString(list_.row(row + 1).Text));
    widest = std::max(widest, text + picture.width() + 5 * gap);
  }
  look.cell = {std::min(widest, width()), shared(height(), line)};
  return look;
}

void ListWidget::arrange() {
  const RowPainter::Look look = this->look();
  painter_->set_look(look);
  const bool down = list_.View == platform::view_icon && list_.Arrange != platform::arrange_left;
  icons_->setFlow(down ? QListView::LeftToRight : QListView::TopToBottom);
  icons_->setGridSize(look.cell);
  // A notch of the wheel, three steps, is a column or a row.
  constexpr int steps = 3;
  icons_->horizontalScrollBar()->setSingleStep(look.cell.width() / steps);
  icons_->verticalScrollBar()->setSingleStep(look.cell.height() / steps);
  report_->verticalScrollBar()->setSingleStep(look.cell.height());
  if (list_.View != platform::view_report) return;
  const auto same = [](const auto& a, const auto& b) { return a.Text == b.Text && a.Width == b.Width; };
  // The user may have made a column wider since.
  if (std::equal(headings_.begin(), headings_.end(), list_.ColumnHeaders.begin(), list_.ColumnHeaders.end(), same)) {
    return;
  }
  headings_ = list_.ColumnHeaders;
  for (std::size_t i = 0; i < headings_.size(); ++i) {
    report_->setColumnWidth(static_cast<int>(i), pixels(headings_[i].Width));
  }
}

// What a rebuilt list shows: its start where its rows are new or stand otherwise, else what it has shown before.
void ListWidget::restore(int across, int down) {
  const QModelIndex selected = model_.index(list_.selected_row() - 1, 0);
  if (selected.isValid()) {
    icons_->selectionModel()->setCurrentIndex(selected,
                                              QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
  }
  shown().doItemsLayout();
  const bool rearranged = std::exchange(view_, list_.View) != list_.View;
  const bool turned = std::exchange(arrange_, list_.Arrange) != list_.Arrange;
  const bool anew = std::exchange(emptied_, list_.Count() == 0) || rearranged || turned;
  shown().horizontalScrollBar()->setValue(anew ? 0 : across);
  shown().verticalScrollBar()->setValue(anew ? 0 : down);
  if (anew && selected.isValid()) reveal(list_.selected_row());
}

void ListWidget::ensure_visible(int row) {
  take_over();
  reveal(row);
}

// The views' own way to do this leaves a row one pixel short.
void ListWidget::reveal(int row) {
  const QRect cell = shown().visualRect(model_.index(row - 1, 0));
  const QRect room = shown().viewport()->rect();
  const auto missing = [](int from, int to, int end) { return from < 0 ? from : std::clamp(to - end, 0, from); };
  // In a table a row goes on in other columns: it comes into sight from above or below.
  const bool table = list_.View == platform::view_report;
  scroll_by(table ? 0 : missing(cell.left(), cell.right(), room.right()),
            missing(cell.top(), cell.bottom(), room.bottom()));
}

void ListWidget::scroll(int across, int down) {
  take_over();
  scroll_by(list_.View == platform::view_list ? across * painter_->look().cell.width() : across, down);
}

// By pixels; the bars keep to what there is to see.
void ListWidget::scroll_by(int across, int down) {
  QScrollBar& horizontal = *shown().horizontalScrollBar();
  QScrollBar& vertical = *shown().verticalScrollBar();
  horizontal.setValue(horizontal.value() + across);
  vertical.setValue(vertical.value() + down);
}

// Presses and moves are not for the views, which would select what a drag goes over, draw a rubber band or scroll by
// themselves. They keep the wheel and the keyboard.
bool ListWidget::eventFilter(QObject* watched, QEvent* event) {
  switch (event->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseMove:
      if (watched != shown().viewport()) return false;
      return mouse(static_cast<const QMouseEvent&>(*event));
    case QEvent::FocusIn:
      show_place(static_cast<const QFocusEvent&>(*event).reason());
      // Once the toolkit has told of the view as a whole.
      link_->events.post([self = QPointer<QWidget>(this), this] {
        if (self != nullptr && link_->serving()) tell_current(shown());
      });
      return false;
    case QEvent::KeyPress:
      return watched == &shown() && chooses_first(static_cast<const QKeyEvent&>(*event));
    default:
      return false;
  }
}

// The view stands at a row from the moment it has the keyboard. Who has come otherwise would take that row for chosen.
void ListWidget::show_place(Qt::FocusReason came_by) {
  const bool by_key = came_by == Qt::TabFocusReason || came_by == Qt::BacktabFocusReason;
  if (by_key || came_by == Qt::MouseFocusReason) painter_->set_marks_place(by_key);
}

// Tells of a mouse event as it is seen from the list's own corner. Always true: the event goes no further.
bool ListWidget::mouse(const QMouseEvent& event) {
  const QPointF at = shown().viewport()->mapTo(this, event.position());
  const QMouseEvent seen(event.type(), at, event.scenePosition(), event.globalPosition(), event.button(),
                         event.buttons(), event.modifiers(), event.pointingDevice());
  const bool doubled = event.type() == QEvent::MouseButtonDblClick;
  const bool press = event.type() == QEvent::MouseButtonPress || (doubled && !list_.DblClick);
  if (mouse_.handle(seen) && press) pressed(event.position().toPoint());
  return true;
}

// A press at a point of the shown view. On bare ground it chooses nothing; on the row that is chosen already it is a
// click on it all the same.
void ListWidget::pressed(QPoint at) {
  take_over();
  const QModelIndex index = shown().indexAt(at);
  if (!index.isValid()) return;
  const bool table = list_.View == platform::view_report;
  if (!table && !painter_->hits(index, shown().visualRect(index), shown().font(), at)) return;
  if (index.row() + 1 == list_.selected_row()) {
    link_->call(list_.ItemClick, index.row() + 1);
    return;
  }
  const QScopedValueRollback guard(by_mouse_, true);
  icons_->selectionModel()->setCurrentIndex(index, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
}

// The user has chosen a row, by the mouse or the keyboard.
void ListWidget::picked() {
  if (syncing_ || !link_->serving()) return;
  const QModelIndexList chosen = icons_->selectionModel()->selectedRows();
  const int row = chosen.isEmpty() ? 0 : chosen.front().row() + 1;
  if (row == 0 || row > list_.Count()) {
    // Nothing in the list's own ways leaves it without a row.
    sync();
    return;
  }
  if (!by_mouse_) reveal(row);
  {
    const QScopedValueRollback guard(syncing_, true);
    list_.select(row);
  }
  link_->call(list_.ItemClick, row);
}

// While no row is chosen the views stand at the first all the same, and would go on from it to the second, or nowhere.
// Gives whether the key has chosen it.
bool ListWidget::chooses_first(const QKeyEvent& key) {
  const bool arrow = key.key() >= Qt::Key_Left && key.key() <= Qt::Key_Down;
  take_over();
  if (list_.selected_row() != 0 || list_.Count() == 0 || !(arrow || key.key() == Qt::Key_Home)) return false;
  icons_->selectionModel()->setCurrentIndex(model_.index(0, 0),
                                            QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
  return true;
}

void ListWidget::resizeEvent(QResizeEvent* /*event*/) {
  icons_->setGeometry(rect());
  report_->setGeometry(rect());
  // The cells are made for the size, and may be painted before the next event is served.
  stale_ = true;
  if (link_->form != nullptr) take_over();
}

}  // namespace desktop
