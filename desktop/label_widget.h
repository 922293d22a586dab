// A label to those who hear the screen, or have only a keyboard: an object with a name, which can be pressed if a click
// on the label does something. What is seen of it is painted on the surface that it lies on, and the mouse passes
// through.
#pragma once

#include <QWidget>
#include <memory>

#include "desktop/pressing.h"

namespace desktop {

class LabelWidget final : public QWidget, public Mirror {
 public:
  LabelWidget(const std::shared_ptr<FormLink>& link, platform::Label& label, QWidget* parent);

  void sync() override;
  const Pressing& pressing() const { return pressing_; }
  bool chosen() const { return chosen_; }

 protected:
  void paintEvent(QPaintEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  platform::Label& label_;
  Pressing pressing_;
  bool chosen_ = false;
};

}  // namespace desktop
