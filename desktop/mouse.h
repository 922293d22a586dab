// Mouse events of a widget, told to the controls they belong to.
#pragma once

#include <QMouseEvent>
#include <QWidget>
#include <memory>

#include "desktop/form_link.h"

namespace desktop {

// Shift 1, Ctrl 2, Alt 4.
int shift_state(Qt::KeyboardModifiers modifiers);

// The label that lies foremost under a point of a surface (toolkit pixels), null where there is none.
platform::Label* label_at(const platform::Surface& surface, QPoint at);

// Serves one widget. What a press hits gets every event until the last button is up, wherever the pointer goes.
class MouseRouter {
 public:
  // The widget stands for `control`, or for the form itself where that is null. `surface` holds the labels that are
  // painted on it; null where there can be none.
  MouseRouter(std::shared_ptr<FormLink> link, QWidget& widget, platform::Control* control, platform::Surface* surface);

  // Tells a press, release, move or double click; gives whether the form is still there. The widget may be gone where
  // it is not.
  bool handle(const QMouseEvent& event);
  // What was pressed gets no more events.
  void release_capture();

 private:
  QPointF position(const QMouseEvent& event);
  QRect area(const platform::Control* target) const;
  platform::MouseEvent told(const QMouseEvent& event, int button, QPointF at, const platform::Control* target) const;
  bool press(const QMouseEvent& event, QPointF at);
  bool release(const QMouseEvent& event, QPointF at);

  std::shared_ptr<FormLink> link_;
  QWidget& widget_;
  platform::Control* const control_;
  platform::Surface* const surface_;
  platform::Control* target_ = nullptr;  // what is pressed, while captured_
  bool captured_ = false;
  bool doubled_ = false;  // the press was the second of a double click, and its release is no click
  QPointF skew_;          // at the press, between where the program believes the window and where it is
};

// Tells the mouse events of a widget that is the toolkit's own, which then handles them as ever.
class MouseTap final : public QObject {
 public:
  // `widget` is where the events arrive: for a scrolling widget its viewport. Becomes its child.
  MouseTap(std::shared_ptr<FormLink> link, QWidget& widget, platform::Control& control);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  MouseRouter router_;
};

}  // namespace desktop
