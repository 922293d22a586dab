#include "desktop/pressing.h"

#include <algorithm>
#include <utility>

#include "desktop/style.h"

namespace desktop {

const std::string& spoken_text(const platform::Control& control) {
  const bool captioned = control.spoken.get().empty() && control.kind() == platform::Kind::label;
  return captioned ? static_cast<const platform::Label&>(control).Caption.get() : control.spoken.get();
}

QString spoken_name(const platform::Control& control) {
  return to_toolkit(spoken_text(control)).simplified();
}

Pressing::Pressing(std::shared_ptr<FormLink> link, platform::Control* control)
    : link_(std::move(link)), control_(control), role_(control != nullptr ? control->role : platform::Role::content) {}

// Compared as it is: the rolling help has its panel synchronised at every step.
void Pressing::name(QWidget& widget) {
  if (control_ == nullptr || named_ == spoken_text(*control_)) return;
  named_ = spoken_text(*control_);
  widget.setAccessibleName(spoken_name(*control_));
}

void Pressing::press() const {
  if (!possible()) return;
  link_->events.post([link = link_, control = control_] {
    if (!link->serving()) return;
    constexpr int left = 1;
    const platform::MouseEvent middle{left, 0, control->Width / 2, control->Height / 2};
    // Where a click does nothing and a double click does something, that is meant.
    if (link->call(control->MouseDown, middle) && link->call(control->MouseUp, middle) && link->call(control->Click)) {
      link->call(control->DblClick);
    }
  });
}

bool Pressing::handle(const QKeyEvent& key) const {
  const bool presses = key.key() == Qt::Key_Space || key.key() == Qt::Key_Return || key.key() == Qt::Key_Enter;
  if (!possible() || !presses) return false;
  if (!key.isAutoRepeat()) press();
  return true;
}

void put_in_reading_order(std::vector<QWidget*>& widgets, const QWidget& whole) {
  constexpr int slack = 8;  // toolkit pixels by which the tops of one row may differ; half a line
  const auto at = [&whole](const QWidget* widget) { return widget->mapTo(&whole, QPoint()); };
  std::ranges::stable_sort(widgets, {}, [&](const QWidget* widget) { return at(widget).y(); });
  for (auto row = widgets.begin(); row != widgets.end();) {
    const int bottom = at(*row).y() + slack;
    const auto next = std::find_if(row, widgets.end(), [&](const QWidget* each) { return at(each).y() >= bottom; });
    std::ranges::stable_sort(row, next, {}, [&](const QWidget* widget) { return at(widget).x(); });
    row = next;
  }
}

void paint_focus(QPainter& painter, const QRect& area) {
  painter.setPen(QPen(Qt::white, 1, Qt::DotLine));
  painter.drawRect(area.adjusted(0, 0, -1, -1));
}

}  // namespace desktop
