// The widget of a form or a picture box: what is drawn on it, and the labels, shapes and lines that lie on it.
#pragma once

#include <QWidget>
#include <memory>
#include <optional>

#include "desktop/form_link.h"
#include "desktop/mouse.h"
#include "desktop/pressing.h"

namespace desktop {

class SurfaceWidget : public QWidget, public Mirror {
 public:
  // `box` is the picture box that the surface is, null where it is the form itself.
  SurfaceWidget(std::shared_ptr<FormLink> link, platform::Surface& surface, platform::PictureBox* box, QWidget* parent);

  void sync() override;
  void release_capture() { mouse_.release_capture(); }

  const Pressing& pressing() const { return pressing_; }

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void enterEvent(QEnterEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  bool focusNextPrevChild(bool next) override;

 private:
  std::shared_ptr<FormLink> link_;
  platform::Surface& surface_;
  std::optional<QPointF> entered_at_;  // where the pointer has come in and not moved since, on the screen
  platform::PictureBox* const box_;
  MouseRouter mouse_;
  Pressing pressing_;
  platform::Picture pointer_;  // that the mouse shows over the widget
};

}  // namespace desktop
