#include "desktop/accessible.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <algorithm>
#include <vector>

#include "desktop/label_widget.h"
#include "desktop/list_widget.h"
#include "desktop/surface_widget.h"

namespace desktop {

namespace {

// A widget whose children are those that are shown, and which can be pressed where a click on it does something.
class AccessibleControl final : public QAccessibleWidget {
 public:
  AccessibleControl(QWidget& widget, QAccessible::Role role, const Pressing* pressing)
      : QAccessibleWidget(&widget, role), pressing_(pressing) {}

  int childCount() const override { return static_cast<int>(present().size()); }
  QAccessibleInterface* child(int index) const override {
    const auto children = present();
    if (index < 0 || index >= static_cast<int>(children.size())) return nullptr;
    return QAccessible::queryAccessibleInterface(children[static_cast<std::size_t>(index)]);
  }
  int indexOfChild(const QAccessibleInterface* child) const override {
    const auto children = present();
    const auto found = std::find(children.begin(), children.end(), child != nullptr ? child->object() : nullptr);
    return found == children.end() ? -1 : static_cast<int>(found - children.begin());
  }

  QAccessible::State state() const override {
    QAccessible::State state = QAccessibleWidget::state();
    // What hands the keyboard on to a part of it does not have it.
    if (isValid() && widget()->focusProxy() != nullptr) state.focused = false;
    if (const auto* label = dynamic_cast<LabelWidget*>(object()); label != nullptr) {
      state.checkable = label->pressing().role() == platform::Role::choice;
      state.checked = label->chosen();
    }
    return state;
  }
  QStringList actionNames() const override {
    return pressing_ != nullptr && pressing_->possible() ? QStringList{pressAction(), setFocusAction()} : QStringList();
  }
  void doAction(const QString& name) override {
    if (pressing_ != nullptr && isValid() && name == pressAction()) {
      pressing_->press();
    } else {
      QAccessibleWidget::doAction(name);
    }
  }

 private:
  // In the order in which one reads.
  std::vector<QWidget*> present() const {
    std::vector<QWidget*> result;
    if (!isValid()) return result;
    const QRect room = widget()->rect();
    for (QWidget* child : widget()->findChildren<QWidget*>(Qt::FindDirectChildrenOnly)) {
      if (!child->isWindow() && !child->isHidden() && room.intersects(child->geometry())) result.push_back(child);
    }
    put_in_reading_order(result, *widget());
    return result;
  }

  const Pressing* const pressing_;  // the widget's own; null for one without
};

QAccessible::Role role_of(const SurfaceWidget& surface) {
  if (surface.isWindow()) return QAccessible::Window;
  if (surface.pressing().role() == platform::Role::notice) return QAccessible::Notification;
  return surface.findChild<QWidget*>() != nullptr ? QAccessible::Grouping : QAccessible::Graphic;
}

QAccessible::Role role_of(const LabelWidget& label) {
  switch (label.pressing().role()) {
    case platform::Role::button:
      return QAccessible::PushButton;
    case platform::Role::choice:
      return QAccessible::RadioButton;
    case platform::Role::status:
      return QAccessible::StatusBar;
    default:
      return QAccessible::StaticText;
  }
}

QAccessibleInterface* make_interface(const QString& /*key*/, QObject* object) {
  if (auto* label = dynamic_cast<LabelWidget*>(object)) {
    return new AccessibleControl(*label, role_of(*label), &label->pressing());
  }
  if (auto* surface = dynamic_cast<SurfaceWidget*>(object)) {
    return new AccessibleControl(*surface, role_of(*surface), &surface->pressing());
  }
  auto* list = dynamic_cast<ListWidget*>(object);
  return list != nullptr ? new AccessibleControl(*list, QAccessible::Grouping, nullptr) : nullptr;
}

}  // namespace

void install_accessibility() {
  QAccessible::installFactory(make_interface);
}

void tell_presence(QWidget& widget) {
  if (!QAccessible::isActive()) return;
  QAccessibleEvent event(&widget, widget.isHidden() ? QAccessible::ObjectDestroyed : QAccessible::ObjectCreated);
  QAccessible::updateAccessibility(&event);
}

void tell_current(const QAbstractItemView& view) {
  const QModelIndex row = view.currentIndex();
  if (!QAccessible::isActive() || !view.hasFocus() || !row.isValid()) return;
  QAccessibleInterface* rows = QAccessible::queryAccessibleInterface(const_cast<QAbstractItemView*>(&view));
  if (rows == nullptr || rows->tableInterface() == nullptr) return;
  QAccessibleInterface* cell = rows->tableInterface()->cellAt(row.row(), 0);
  if (cell == nullptr) return;
  QAccessibleEvent event(cell, QAccessible::Focus);
  QAccessible::updateAccessibility(&event);
}

}  // namespace desktop
