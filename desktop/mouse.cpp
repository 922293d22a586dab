#include "desktop/mouse.h"

#include <QtMath>
#include <algorithm>
#include <utility>

#include "desktop/style.h"

namespace desktop {

using platform::Control;

namespace {

int button_bits(Qt::MouseButtons buttons) {
  return (buttons.testFlag(Qt::LeftButton) ? 1 : 0) | (buttons.testFlag(Qt::RightButton) ? 2 : 0) |
         (buttons.testFlag(Qt::MiddleButton) ? 4 : 0);
}

// The pixel in which a point lies.
QPoint pixel_of(QPointF at) {
  return {qFloor(at.x()), qFloor(at.y())};
}

}  // namespace

int shift_state(Qt::KeyboardModifiers modifiers) {
  return (modifiers.testFlag(Qt::ShiftModifier) ? 1 : 0) | (modifiers.testFlag(Qt::ControlModifier) ? 2 : 0) |
         (modifiers.testFlag(Qt::AltModifier) ? 4 : 0);
}

platform::Label* label_at(const platform::Surface& surface, QPoint at) {
  const auto hit = std::find_if(surface.children.rbegin(), surface.children.rend(), [&](const Control* child) {
    return child->kind() == platform::Kind::label && child->Visible && place_of(*child).contains(at);
  });
  return hit == surface.children.rend() ? nullptr : static_cast<platform::Label*>(*hit);
}

MouseRouter::MouseRouter(std::shared_ptr<FormLink> link, QWidget& widget, Control* control, platform::Surface* surface)
    : link_(std::move(link)), widget_(widget), control_(control), surface_(surface) {}

// While a button is held the program may move the window under the pointer, and events that were on their way then tell
// where the pointer was on the window as it stood before. A move that took them at their word would overshoot. So a
// position is counted from where the program has put the window last.
QPointF MouseRouter::position(const QMouseEvent& event) {
  const platform::Form& form = *link_->form;
  const QPointF origin = QPointF(pixels(form.Left), pixels(form.Top)) + widget_.mapTo(widget_.window(), QPointF());
  const QPointF counted = event.globalPosition() - origin;
  if (!captured_) skew_ = event.position() - counted;
  return counted + skew_;
}

QRect MouseRouter::area(const Control* target) const {
  return target == control_ ? widget_.rect() : place_of(*target);
}

platform::MouseEvent MouseRouter::told(const QMouseEvent& event, int button, QPointF at, const Control* target) const {
  const QPointF inside = at - area(target).topLeft();
  // Only what can be drawn on has a scale; a label's events are in twips whatever that of its container.
  int scale = platform::scale_twips;
  if (target == nullptr) {
    scale = link_->form->ScaleMode;
  } else if (target->kind() == platform::Kind::picture_box) {
    scale = static_cast<const platform::PictureBox*>(target)->ScaleMode;
  }
  const double unit = scale == platform::scale_pixels ? 1.0 : platform::twips_per_pixel;
  return {button, shift_state(event.modifiers()), static_cast<float>(inside.x() * unit),
          static_cast<float>(inside.y() * unit)};
}

bool MouseRouter::handle(const QMouseEvent& event) {
  if (!link_->serving()) return false;
  // Something else has taken the release of what was pressed here: a menu that the press has opened, for one.
  const bool only =
      event.type() == QEvent::MouseMove ? event.buttons() == Qt::NoButton : event.buttons() == event.button();
  if (only && event.type() != QEvent::MouseButtonRelease) release_capture();
  const QPointF at = position(event);
  switch (event.type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
      return press(event, at);
    case QEvent::MouseButtonRelease:
      return release(event, at);
    default: {
      Control* target = captured_ ? target_ : surface_ != nullptr ? label_at(*surface_, pixel_of(at)) : nullptr;
      if (!captured_ && target == nullptr) target = control_;
      const auto move = told(event, button_bits(event.buttons()), at, target);
      return link_->call(target != nullptr ? target->MouseMove : link_->form->MouseMove, move);
    }
  }
}

void MouseRouter::release_capture() {
  if (captured_) captured_ = link_->pressed = false;
}

bool MouseRouter::press(const QMouseEvent& event, QPointF at) {
  const int button = button_bits(event.button());
  if (button == 0) return true;
  if (!captured_) {
    captured_ = link_->pressed = true;
    target_ = surface_ != nullptr ? label_at(*surface_, pixel_of(at)) : nullptr;
    if (target_ == nullptr) target_ = control_;
  }
  // A second press that comes soon is a press like any other where nobody asks for double clicks.
  doubled_ = event.type() == QEvent::MouseButtonDblClick && button == 1 && target_ != nullptr && target_->DblClick;
  if (doubled_) return link_->call(target_->DblClick);
  const auto down = told(event, button, at, target_);
  return link_->call(target_ != nullptr ? target_->MouseDown : link_->form->MouseDown, down);
}

bool MouseRouter::release(const QMouseEvent& event, QPointF at) {
  const int button = button_bits(event.button());
  if (button == 0 || !captured_) return true;
  // A handler may yield, and the next press come before it returns: the state is that of after the release by then.
  Control* const target = target_;
  if (event.buttons() == Qt::NoButton) release_capture();
  const bool click =
      button == 1 && !std::exchange(doubled_, false) && target != nullptr && area(target).contains(pixel_of(at));
  const auto up = told(event, button, at, target);
  if (!link_->call(target != nullptr ? target->MouseUp : link_->form->MouseUp, up)) return false;
  return !click || link_->call(target->Click);
}

MouseTap::MouseTap(std::shared_ptr<FormLink> link, QWidget& widget, Control& control)
    : QObject(&widget), router_(std::move(link), widget, &control, nullptr) {
  widget.setMouseTracking(true);
  widget.installEventFilter(this);
}

bool MouseTap::eventFilter(QObject* /*watched*/, QEvent* event) {
  switch (event->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseMove:
      return !router_.handle(static_cast<const QMouseEvent&>(*event));
    default:
      return false;
  }
}

}  // namespace desktop
