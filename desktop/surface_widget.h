// The widget of a form or a picture box: what is drawn on it, and the labels, shapes and lines that lie on it.
#pragma once

#include <QWidget>
#include <memory>

#include "desktop/form_link.h"
#include "desktop/mouse.h"

namespace desktop {

class SurfaceWidget : public QWidget, public Mirror {
 public:
  // `box` is the picture box that the surface is, null where it is the form itself.
  SurfaceWidget(std::shared_ptr<FormLink> link, platform::Surface& surface, platform::PictureBox* box, QWidget* parent);

  void sync() override { update(); }
  void release_capture() { mouse_.release_capture(); }

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void enterEvent(QEnterEvent* event) override;

  const std::shared_ptr<FormLink>& link() const { return link_; }

 private:
  std::shared_ptr<FormLink> link_;
  platform::Surface& surface_;
  platform::PictureBox* const box_;
  MouseRouter mouse_;
};

}  // namespace desktop
