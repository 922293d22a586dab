#include "desktop/surface_widget.h"

#include <QPaintEvent>
#include <QPainter>
#include <algorithm>
#include <iterator>
#include <utility>
#include <vector>

#include "desktop/icons.h"
#include "desktop/painting.h"
#include "desktop/style.h"

namespace desktop {

SurfaceWidget::SurfaceWidget(std::shared_ptr<FormLink> link, platform::Surface& surface, platform::PictureBox* box,
                             QWidget* parent)
    : QWidget(parent),
      link_(std::move(link)),
      surface_(surface),
      box_(box),
      mouse_(link_, *this, box, &surface),
      pressing_(link_, box) {
  setAttribute(Qt::WA_OpaquePaintEvent);
  setMouseTracking(true);
  if (pressing_.possible()) setFocusPolicy(Qt::TabFocus);
}

void SurfaceWidget::sync() {
  update();
  pressing_.name(*this);
}

void SurfaceWidget::paintEvent(QPaintEvent* event) {
  QPainter painter(this);
  if (link_->form == nullptr) {
    painter.fillRect(event->rect(), Qt::black);
    return;
  }
  painter.fillRect(event->rect(), colour(box_ != nullptr ? box_->BackColor : link_->form->BackColor));
  if (box_ != nullptr) paint_canvas(painter, box_->canvas);
  for (const platform::Control* child : surface_.children) {
    if (child->Visible && event->rect().intersects(painted_area(*child))) paint_control(painter, *child);
  }
  if (hasFocus() && pressing_.possible()) paint_focus(painter, rect());
}

void SurfaceWidget::mousePressEvent(QMouseEvent* event) {
  mouse_.handle(*event);
}

void SurfaceWidget::mouseReleaseEvent(QMouseEvent* event) {
  mouse_.handle(*event);
}

void SurfaceWidget::mouseDoubleClickEvent(QMouseEvent* event) {
  mouse_.handle(*event);
}

void SurfaceWidget::mouseMoveEvent(QMouseEvent* event) {
  if (std::exchange(entered_at_, std::nullopt) == event->globalPosition()) return;
  if (event->buttons() == Qt::NoButton && link_->serving()) {
    const platform::Label* label = label_at(surface_, event->position().toPoint());
    const platform::Picture pointer = label != nullptr ? label->MouseIcon.get() : platform::Picture{};
    if (pointer_ != pointer) setCursor(pointer_of(pointer_ = pointer));
  }
  mouse_.handle(*event);
}

// The pointer may come in and stop in one go: then the toolkit has no move to tell, but it is over something new all
// the same. The move that may follow at the same place is left out.
void SurfaceWidget::enterEvent(QEnterEvent* event) {
  if (childAt(event->position().toPoint()) != nullptr) return;
  QMouseEvent move(QEvent::MouseMove, event->position(), event->scenePosition(), event->globalPosition(), Qt::NoButton,
                   event->buttons(), event->modifiers(), event->pointingDevice());
  mouseMoveEvent(&move);
  entered_at_ = event->globalPosition();
}

void SurfaceWidget::keyPressEvent(QKeyEvent* event) {
  if (!pressing_.handle(*event)) QWidget::keyPressEvent(event);
}

// The window's own goes over everything in it that takes the keyboard, in the order in which one reads.
bool SurfaceWidget::focusNextPrevChild(bool next) {
  if (!isWindow()) return QWidget::focusNextPrevChild(next);
  std::vector<QWidget*> stops;
  for (QWidget* widget : findChildren<QWidget*>()) {
    if (widget->isVisible() && widget->focusPolicy() != Qt::NoFocus) stops.push_back(widget);
  }
  if (stops.empty()) return false;
  put_in_reading_order(stops, *this);
  if (!next) std::ranges::reverse(stops);
  const auto now = std::ranges::find(stops, focusWidget());
  QWidget* const stop = now == stops.end() || std::next(now) == stops.end() ? stops.front() : *std::next(now);
  stop->setFocus(next ? Qt::TabFocusReason : Qt::BacktabFocusReason);
  return true;
}

}  // namespace desktop
