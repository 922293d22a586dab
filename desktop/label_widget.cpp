#include "desktop/label_widget.h"

#include <QAccessible>
#include <utility>

namespace desktop {

LabelWidget::LabelWidget(const std::shared_ptr<FormLink>& link, platform::Label& label, QWidget* parent)
    : QWidget(parent), label_(label), pressing_(link, &label) {
  setAttribute(Qt::WA_TransparentForMouseEvents);
  // Not by the toolkit's own tour, which also picks who gets the keyboard of a window that comes to the screen. No
  // click comes here either: only the window's tour leads to a label.
  if (pressing_.possible()) setFocusPolicy(Qt::ClickFocus);
  lower();  // boxes lie in front of labels
  sync();
}

void LabelWidget::sync() {
  pressing_.name(*this);
  if (std::exchange(chosen_, label_.chosen.get()) == label_.chosen.get()) return;
  QAccessible::State change;
  change.checked = true;
  QAccessibleStateChangeEvent event(this, change);
  QAccessible::updateAccessibility(&event);
}

void LabelWidget::paintEvent(QPaintEvent* /*event*/) {
  if (!hasFocus()) return;
  QPainter painter(this);
  paint_focus(painter, rect());
}

void LabelWidget::keyPressEvent(QKeyEvent* event) {
  if (!pressing_.handle(*event)) QWidget::keyPressEvent(event);
}

}  // namespace desktop
