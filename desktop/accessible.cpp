#include "desktop/accessible.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QPointer>
#include <map>
#include <vector>

#include "desktop/style.h"

namespace desktop {

namespace {

using platform::Label;

class AccessibleLabel final : public QAccessibleInterface, public QAccessibleActionInterface {
 public:
  AccessibleLabel(SurfaceWidget& surface, Label& label) : surface_(&surface), label_(label) {}

  // The form may be unloaded, and the label with it, while its widget still waits to be deleted.
  bool isValid() const override { return surface_ != nullptr && surface_->link()->form != nullptr; }
  QObject* object() const override { return nullptr; }
  QAccessibleInterface* parent() const override { return QAccessible::queryAccessibleInterface(surface_); }
  QAccessibleInterface* child(int /*index*/) const override { return nullptr; }
  QAccessibleInterface* childAt(int /*x*/, int /*y*/) const override { return nullptr; }
  int childCount() const override { return 0; }
  int indexOfChild(const QAccessibleInterface* /*child*/) const override { return -1; }

  QAccessible::Role role() const override {
    return isValid() && label_.Click ? QAccessible::PushButton : QAccessible::StaticText;
  }
  QAccessible::State state() const override {
    QAccessible::State state;
    state.invalid = !isValid();
    state.readOnly = true;
    return state;
  }
  QString text(QAccessible::Text kind) const override {
    if (!isValid() || kind != QAccessible::Name) return {};
    if (!label_.Caption.get().empty()) return to_toolkit(label_.Caption);
    // A button without a text of its own goes by its name in the program.
    return QString::fromStdString(label_.Name) + (label_.Index < 0 ? QString() : QString::number(label_.Index));
  }
  void setText(QAccessible::Text /*kind*/, const QString& /*text*/) override {}
  QRect rect() const override {
    if (!isValid()) return {};
    const QRect place = place_of(label_);
    return {surface_->mapToGlobal(place.topLeft()), place.size()};
  }

  void* interface_cast(QAccessible::InterfaceType type) override {
    return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface*>(this) : nullptr;
  }
  QStringList actionNames() const override {
    return role() == QAccessible::PushButton ? QStringList{pressAction()} : QStringList();
  }
  void doAction(const QString& name) override {
    if (name == pressAction() && isValid()) surface_->link()->call(label_.Click);
  }
  QStringList keyBindingsForAction(const QString& /*name*/) const override { return {}; }

 private:
  QPointer<SurfaceWidget> surface_;
  Label& label_;
};

// A form or picture box with its labels behind the widgets on it.
class AccessibleSurface final : public QAccessibleWidget {
 public:
  explicit AccessibleSurface(SurfaceWidget& surface) : QAccessibleWidget(&surface, QAccessible::Client) {}
  ~AccessibleSurface() override {
    for (const auto& [label, id] : ids_) QAccessible::deleteAccessibleInterface(id);
  }

  int childCount() const override { return QAccessibleWidget::childCount() + static_cast<int>(labels().size()); }
  QAccessibleInterface* child(int index) const override {
    const int widgets = QAccessibleWidget::childCount();
    const auto all = labels();
    const int behind = index - widgets;
    if (behind < 0) return QAccessibleWidget::child(index);
    return behind < static_cast<int>(all.size()) ? of(*all[static_cast<std::size_t>(behind)]) : nullptr;
  }
  int indexOfChild(const QAccessibleInterface* child) const override {
    for (int i = QAccessibleWidget::childCount(); i < childCount(); ++i) {
      if (this->child(i) == child) return i;
    }
    return QAccessibleWidget::indexOfChild(child);
  }
  QAccessibleInterface* childAt(int x, int y) const override {
    if (QAccessibleInterface* found = QAccessibleWidget::childAt(x, y)) return found;
    Label* label = valid() ? label_at(surface().surface(), surface().mapFromGlobal(QPoint(x, y))) : nullptr;
    return label != nullptr ? of(*label) : nullptr;
  }

  QAccessibleInterface* of(Label& label) const {
    auto& id = ids_[&label];
    // The register owns it from then on, until it is deleted there.
    // NOLINTNEXTLINE(clang-analyzer-cplusplus.NewDeleteLeaks)
    if (id == 0) id = QAccessible::registerAccessibleInterface(new AccessibleLabel(surface(), label));
    return QAccessible::accessibleInterface(id);
  }

 private:
  SurfaceWidget& surface() const { return static_cast<SurfaceWidget&>(*object()); }
  bool valid() const { return object() != nullptr && surface().link()->form != nullptr; }
  std::vector<Label*> labels() const {
    std::vector<Label*> result;
    if (!valid()) return result;
    for (platform::Control* child : surface().surface().children) {
      if (child->kind() == platform::Kind::label && child->Visible) result.push_back(static_cast<Label*>(child));
    }
    return result;
  }

  mutable std::map<const Label*, QAccessible::Id> ids_;
};

QAccessibleInterface* make_interface(const QString& /*key*/, QObject* object) {
  auto* surface = dynamic_cast<SurfaceWidget*>(object);
  return surface != nullptr ? new AccessibleSurface(*surface) : nullptr;
}

}  // namespace

void install_accessible_labels() {
  QAccessible::installFactory(make_interface);
}

void announce(SurfaceWidget& surface, platform::Label& label) {
  if (!QAccessible::isActive()) return;
  auto* owner = dynamic_cast<AccessibleSurface*>(QAccessible::queryAccessibleInterface(&surface));
  if (owner == nullptr) return;
  QAccessibleEvent event(owner->of(label), QAccessible::NameChanged);
  QAccessible::updateAccessibility(&event);
}

}  // namespace desktop
