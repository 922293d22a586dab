#include "desktop/form_window.h"

#include <QCoreApplication>
#include <QPointer>
#include <QScopedValueRollback>
#include <QWindow>
#include <algorithm>
#include <cmath>
#include <utility>

#include "desktop/accessible.h"
#include "desktop/entries.h"
#include "desktop/icons.h"
#include "desktop/keys.h"
#include "desktop/label_widget.h"
#include "desktop/list_widget.h"
#include "desktop/painting.h"
#include "desktop/show_state.h"
#include "desktop/style.h"

namespace desktop {

using platform::Control;
using platform::Kind;

// How long a window may take to come to the screen or to leave it, milliseconds; longer than a busy desktop needs.
static constexpr int longest_settling = 1000;

FormWindow::FormWindow(platform::Form& form, DesktopEvents& events, const X11& x11)
    : form_(form), events_(events), x11_(x11), link_(std::make_shared<FormLink>(form, events)) {
  if (!form.windowless) make_window();
  form.host = this;
  for (Control* control : form.Controls) {
    if (control->kind() == Kind::timer) timer_changed(static_cast<platform::Timer&>(*control));
  }
}

FormWindow::~FormWindow() {
  link_->form = nullptr;
}

void FormWindow::make_window() {
  owned_ = std::make_unique<SurfaceWidget>(link_, form_, nullptr, nullptr);
  top_ = owned_.get();
  // Without a frame of the desktop, but a window like others: it has its place in the task bar.
  top_->setWindowFlags(Qt::Window | Qt::FramelessWindowHint);
  form_.hWnd = static_cast<platform::Handle>(top_->winId());
  top_->windowHandle()->installEventFilter(this);
  top_->installEventFilter(this);

  // Lists have no window of the display: a name of their own that no window can have, whose top bits are never set.
  static platform::Handle next_list = 0xE0000000U;
  for (Control* control : form_.Controls) {
    if (control->kind() == Kind::list_view) static_cast<platform::ListView&>(*control).hWnd = next_list++;
    if (control->kind() != Kind::picture_box) continue;
    auto& box = static_cast<platform::PictureBox&>(*control);
    // Whole, so that what scrolls by a pixel of the design moves by whole pixels of the canvas.
    box.canvas.set_density(std::ceil(top_->devicePixelRatioF()));
    if (const QImage picture = picture_of(box.Picture); !picture.isNull()) {
      const auto* first = reinterpret_cast<const std::uint32_t*>(picture.constBits());
      box.canvas.cover({first, first + picture.sizeInBytes() / 4}, picture.width(), picture.height());
    }
    sync(box);
  }
  sync_form();
}

void FormWindow::unload() {
  link_->form = nullptr;
  for (const auto& [timer, driver] : timers_) driver->stop();
  form_.host = nullptr;
  form_.hWnd = 0;
  if (top_ != nullptr) top_->hide();
  x11_.flush();
}

SurfaceWidget* FormWindow::holder(Control& control) const {
  if (&control.Container() == &form_) return top_;
  const auto& box = static_cast<const platform::PictureBox&>(control.Container());
  const auto found = children_.find(&box);
  return found == children_.end() ? nullptr : static_cast<SurfaceWidget*>(found->second.widget);
}

// Whether a control lies where it can be seen, were everything that holds it shown.
bool FormWindow::within_sight(Control& control) const {
  const QRect place = place_of(control);
  if (&control.Container() == &form_) return place.intersects({0, 0, pixels(form_.Width), pixels(form_.Height)});
  auto& box = static_cast<platform::PictureBox&>(control.Container());
  return place.intersects({0, 0, pixels(box.Width), pixels(box.Height)}) && within_sight(box);
}

// Whether the widget of a control is to be there. Out of sight is out of the way too: a box that nobody sees must not
// have the keyboard, nor a caret that blinks. Nor is a label there that says nothing, or lies under a box as a whole.
bool FormWindow::to_be_shown(Control& control) const {
  if (!control.Visible) return false;
  if (control.kind() == Kind::picture_box) return true;
  if (!within_sight(control)) return false;
  if (control.kind() != Kind::label) return true;
  const auto covers = [&](const Control* other) {
    return other->Visible && (other->kind() == Kind::picture_box || other->kind() == Kind::text_box) &&
           place_of(*other).contains(place_of(control));
  };
  const auto& others = control.Container().children;
  return !spoken_text(control).empty() && std::none_of(others.begin(), others.end(), covers);
}

FormWindow::Child FormWindow::make_child(Control& control) {
  const auto mirror = [](auto* widget) { return Child{widget, widget}; };
  SurfaceWidget* parent = holder(control);
  switch (control.kind()) {
    case Kind::picture_box: {
      auto& box = static_cast<platform::PictureBox&>(control);
      return mirror(new SurfaceWidget(link_, box, &box, parent));
    }
    case Kind::text_box: {
      auto& box = static_cast<platform::TextBox&>(control);
      if (box.MultiLine) return mirror(new TextEntry(link_, box, parent));
      return mirror(new LineEntry(link_, box, parent));
    }
    case Kind::label:
      return mirror(new LabelWidget(link_, static_cast<platform::Label&>(control), parent));
    case Kind::check_box:
      return mirror(new CheckEntry(link_, static_cast<platform::CheckBox&>(control), parent));
    default:
      return mirror(new ListWidget(link_, static_cast<platform::ListView&>(control), parent));
  }
}

// Widgets that were made only when they came into sight take the place among the others that their order gives them.
void FormWindow::restack(const platform::Surface& surface) {
  for (const Control* child : surface.children) {
    if (child->kind() == Kind::label) continue;
    if (const auto found = children_.find(child); found != children_.end()) found->second.widget->raise();
  }
}

void FormWindow::sync(Control& control) {
  switch (control.kind()) {
    case Kind::picture_box:
    case Kind::text_box:
    case Kind::check_box:
    case Kind::list_view:
    case Kind::label:
      break;
    default:
      return;
  }
  auto found = children_.find(&control);
  if (found == children_.end()) {
    // What cannot be seen costs nothing. Picture boxes are always made: they hold other controls.
    if (control.kind() != Kind::picture_box && !to_be_shown(control)) return;
    found = children_.emplace(&control, make_child(control)).first;
    restack(control.Container());
  }
  const Child own = found->second;
  QWidget& widget = *own.widget;
  if (const QRect place = place_of(control); widget.geometry() != place) {
    widget.setGeometry(place);
    // What lies on a box may have come into sight with it.
    if (control.kind() == Kind::picture_box) {
      for (Control* child : static_cast<platform::PictureBox&>(control).children) sync(*child);
    }
  }
  own.mirror->sync();
  const bool shown = to_be_shown(control);
  if (widget.isHidden() != shown) return;
  // What goes out of sight must not keep the keyboard: the keys are the form's then.
  QWidget* const focused = top_->focusWidget();
  if (!shown && focused != nullptr && (focused == &widget || widget.isAncestorOf(focused))) top_->setFocus();
  widget.setVisible(shown);
  tell_presence(widget);
  if (is_painted(control.kind())) return;
  // Labels may have come out from under it, or gone there.
  for (Control* other : control.Container().children) {
    if (other->kind() == Kind::label) sync(*other);
  }
}

// The keyboard is the first box's or the list's when the window comes to the screen, and the form's where there is
// none: a label gets it only when the user goes there.
void FormWindow::give_keyboard() {
  if (top_->focusWidget() != nullptr) return;
  top_->setFocus();
  for (Control* control : form_.Controls) {
    const auto found = children_.find(control);
    const bool takes = control->kind() == Kind::text_box || control->kind() == Kind::list_view;
    if (!takes || found == children_.end() || !found->second.widget->isVisibleTo(top_)) continue;
    found->second.widget->setFocus();
    return;
  }
}

void FormWindow::sync_place() {
  // The toolkit takes a window out of the task bar when it is to be placed: then it is placed when it is shown.
  if (top_->isMinimized()) return;
  const QRect wanted(pixels(form_.Left), pixels(form_.Top), pixels(form_.Width), pixels(form_.Height));
  if (placed_.size() != wanted.size()) {
    placed_.setSize(wanted.size());
    top_->setFixedSize(wanted.size());
    for (Control* control : form_.Controls) sync(*control);
  }
  if (placed_.topLeft() != wanted.topLeft() || !top_->testAttribute(Qt::WA_Moved)) {
    placed_.moveTo(wanted.topLeft());
    top_->move(wanted.topLeft());
  }
  // The form reads where its window is: on a whole pixel.
  form_.Left = static_cast<float>(wanted.left()) * platform::twips_per_pixel;
  form_.Top = static_cast<float>(wanted.top()) * platform::twips_per_pixel;
}

void FormWindow::sync_form() {
  if (adopting_) return;
  sync_place();
  const QString title = QString::fromStdString(form_.Caption);
  if (top_->windowTitle() != title) top_->setWindowTitle(title);
  if (icon_ != form_.Icon.get()) {
    icon_ = form_.Icon;
    top_->setWindowIcon(icon_of(icon_));
  }
}

// Takes over the place to which the window manager has moved the window, or at which it has kept it.
void FormWindow::adopt_place() {
  // While the program moves the window after the pointer, what the display tells is where it was some moves ago.
  if (!link_->serving() || link_->pressed || !top_->isVisible() || top_->pos() == placed_.topLeft()) return;
  const QScopedValueRollback guard(adopting_, true);
  placed_.moveTo(top_->pos());
  form_.Left = static_cast<float>(placed_.left()) * platform::twips_per_pixel;
  form_.Top = static_cast<float>(placed_.top()) * platform::twips_per_pixel;
}

void FormWindow::settle(const std::function<bool()>& done) {
  QTimer deadline;
  deadline.setSingleShot(true);
  deadline.start(longest_settling);
  while (!done() && deadline.isActive()) {
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents | QEventLoop::WaitForMoreEvents);
  }
}

void FormWindow::show() {
  const DesktopEvents::Hold hold(events_);
  const bool restored = top_->isVisible() && top_->isMinimized();
  if (top_->isMinimized()) top_->setWindowState(Qt::WindowNoState);
  iconified_ = false;
  sync_form();
  shown_ = true;
  give_keyboard();
  top_->show();
  // A window manager that keeps iconified windows mapped takes no notice of a wish to map one.
  if (restored) x11_.activate(form_.hWnd);
  if (topmost_) x11_.keep_above(form_.hWnd, true);
  settle([this] { return top_->windowHandle()->isExposed(); });
  // While a window manager puts its frame around a window the toolkit may take the frame's corner of the moment for the
  // window's place, and not hear of the true one. Asked for the place once more, the window manager tells where it is.
  top_->windowHandle()->setPosition(placed_.topLeft());
  refresh(nullptr);
}

void FormWindow::hide() {
  const DesktopEvents::Hold hold(events_);
  if (kept_ && shown_ && x11_.managed()) {
    if (!iconified_) iconify();
    return;
  }
  iconified_ = false;
  top_->hide();
  settle([this] { return !top_->windowHandle()->isExposed(); });
}

void FormWindow::iconify() {
  iconified_ = true;
  iconic_ = iconic_ && top_->isVisible();
  // For the same reason the place is settled first; of one that is hidden the display may not have heard yet.
  if (!top_->isVisible()) top_->windowHandle()->setGeometry(top_->geometry());
  top_->showMinimized();
  if (topmost_) x11_.keep_above(form_.hWnd, true);
  // Asked for again before the window manager has come to it, the window would end up iconified after all. Brought back
  // by the user before the toolkit has heard of it, it would be taken for iconified ever after.
  settle([this] { return iconic_; });
}

void FormWindow::state_changed() {
  iconic_ = is_iconic(x11_, form_.hWnd);
}

void FormWindow::keep_reachable(bool kept) {
  if (top_ == nullptr || kept_ == kept) return;
  kept_ = kept;
  // A window that has not been on the screen yet is not to be brought back.
  if (kept ? shown_ && !top_->isVisible() : iconified_) hide();
}

bool FormWindow::on_screen() const {
  return top_ != nullptr && top_->isVisible() && !top_->isMinimized();
}

void FormWindow::set_topmost(bool topmost) {
  topmost_ = topmost;
  // The window manager forgets the wish when the window goes from the screen: then it is made again at the next show.
  if (top_->isVisible()) x11_.keep_above(form_.hWnd, topmost);
}

void FormWindow::move_to(int x, int y) {
  const auto density = static_cast<float>(top_->devicePixelRatioF());
  form_.Left = static_cast<float>(x) / density * platform::twips_per_pixel;
  form_.Top = static_cast<float>(y) / density * platform::twips_per_pixel;
}

void FormWindow::resize_to(int width, int height) {
  const auto density = static_cast<float>(top_->devicePixelRatioF());
  form_.Width = static_cast<float>(width) / density * platform::twips_per_pixel;
  form_.Height = static_cast<float>(height) / density * platform::twips_per_pixel;
}

void FormWindow::move_by_user() {
  release_capture();
  top_->windowHandle()->startSystemMove();
}

void FormWindow::release_capture() {
  if (top_ == nullptr) return;
  top_->release_capture();
  for (const auto& [control, child] : children_) {
    if (control->kind() == Kind::picture_box) static_cast<SurfaceWidget*>(child.widget)->release_capture();
  }
}

void FormWindow::repaint(Control* control) {
  if (top_ == nullptr) return;
  if (control == nullptr) {
    sync_form();
    top_->update();
    return;
  }
  if (!is_painted(control->kind())) {
    sync(*control);
    return;
  }
  sync(*control);
  const QRect now = control->Visible ? painted_area(*control) : QRect();
  const QRect before = std::exchange(painted_[control], now);
  if (before.isEmpty() && now.isEmpty()) return;
  holder(*control)->update(before.united(now));
}

void FormWindow::refresh(Control* control) {
  if (top_ == nullptr || !top_->isVisible()) return;
  if (control == nullptr) {
    top_->QWidget::repaint();
  } else if (is_painted(control->kind())) {
    holder(*control)->QWidget::repaint(painted_area(*control));
  } else if (const auto found = children_.find(control); found != children_.end()) {
    if (control->kind() == Kind::list_view) static_cast<ListWidget*>(found->second.widget)->take_over();
    found->second.widget->repaint();
  }
  x11_.flush();
}

void FormWindow::timer_changed(platform::Timer& timer) {
  // A driver stays when its timer stops: that may be asked for by the very handler that it is calling.
  auto& driver = timers_[&timer];
  if (!driver) {
    driver = std::make_unique<QTimer>();
    driver->setTimerType(Qt::PreciseTimer);
    connect(driver.get(), &QTimer::timeout, this, [this, &timer] { tick(timer); });
  }
  if (!timer.Enabled || timer.Interval <= 0) {
    driver->stop();
  } else if (!driver->isActive() || driver->interval() != timer.Interval) {
    driver->start(timer.Interval);
  }
}

void FormWindow::tick(platform::Timer& timer) {
  if (!events_.held()) {
    link_->call(timer.Elapsed);
  } else if (late_.insert(&timer).second) {
    events_.post([self = QPointer(this), &timer] {
      if (self == nullptr || self->late_.erase(&timer) == 0 || !self->link_->serving() || !timer.Enabled) return;
      self->link_->call(timer.Elapsed);
    });
  }
}

void FormWindow::ensure_visible(platform::ListView& list, int row) {
  if (const auto found = children_.find(&list); found != children_.end()) {
    static_cast<ListWidget*>(found->second.widget)->ensure_visible(row);
  }
}

void FormWindow::set_focus(Control& control) {
  if (const auto found = children_.find(&control); found != children_.end()) found->second.widget->setFocus();
}

void FormWindow::scroll_list(platform::Handle list, int across, int down) {
  for (const auto& [control, child] : children_) {
    if (!link_->serving() || control->kind() != Kind::list_view) continue;
    if (static_cast<const platform::ListView*>(control)->hWnd != list) continue;
    static_cast<ListWidget*>(child.widget)->scroll(across, down);
  }
}

void FormWindow::key(bool down, int code, int shift) {
  if (link_->serving()) link_->call(down ? form_.KeyDown : form_.KeyUp, code, shift);
}

void FormWindow::icon_event(int button, int message) {
  link_->call(form_.MouseMove, platform::MouseEvent{button, 0, static_cast<float>(message), 0});
}

platform::KeyPressHandler* FormWindow::key_press_handler() const {
  for (const QWidget* widget = top_->focusWidget(); widget != nullptr && widget != top_;
       widget = widget->parentWidget()) {
    for (const auto& [control, child] : children_) {
      if (child.widget != widget) continue;
      auto* owner = const_cast<Control*>(control);
      if (control->kind() == Kind::text_box) return &static_cast<platform::TextBox*>(owner)->KeyPress;
      if (control->kind() == Kind::list_view) return &static_cast<platform::ListView*>(owner)->KeyPress;
    }
  }
  return &form_.KeyPress;
}

// Gives whether the key goes no further.
bool FormWindow::key_pressed(QKeyEvent& event) {
  if (auto* line = dynamic_cast<LineEntry*>(top_->focusWidget()); line != nullptr && line->completes(event))
    return true;
  int code = virtual_key(event);
  int shift = shift_state(event.modifiers());
  const int reported = code;
  if (!link_->call(form_.KeyDown, code, shift)) return true;
  if (code == 0 && reported != 0) return true;

  int character = typed_character(event);
  if (character == 0) return false;
  const int typed = character;
  if (!link_->call(*key_press_handler(), character) || character == 0) return true;
  if (character == typed) return false;
  const char32_t replaced = static_cast<char32_t>(character);
  QKeyEvent other(event.type(), event.key(), event.modifiers(), QString::fromUcs4(&replaced, 1));
  if (QWidget* widget = top_->focusWidget()) QCoreApplication::sendEvent(widget, &other);
  return true;
}

bool FormWindow::eventFilter(QObject* watched, QEvent* event) {
  const bool own_widget = watched == top_;
  switch (event->type()) {
    case QEvent::KeyPress:
      if (!own_widget) return !link_->serving() || key_pressed(static_cast<QKeyEvent&>(*event));
      break;
    case QEvent::KeyRelease:
      if (!own_widget) {
        const auto& release = static_cast<QKeyEvent&>(*event);
        key(false, virtual_key(release), shift_state(release.modifiers()));
        return !link_->serving();
      }
      break;
    case QEvent::Close:
      if (own_widget) {
        event->ignore();
        if (link_->serving()) link_->call(form_.CloseRequest);
        return true;
      }
      break;
    case QEvent::WindowStateChange:
      // The user has taken the window out of the task bar.
      if (own_widget && !top_->isMinimized()) {
        iconified_ = false;
        if (link_->serving()) sync_form();
      }
      break;
    case QEvent::Move:
    case QEvent::MouseButtonRelease:
      // Looked at when everything is in that waits now, so that what is seen is where the window has come to.
      events_.post([self = QPointer(this)] {
        if (self != nullptr) self->adopt_place();
      });
      break;
    default:
      break;
  }
  return false;
}

}  // namespace desktop
