// How those who do not point get at what is clicked: by the keyboard, or by what a screen reader asks for.
#pragma once

#include <QKeyEvent>
#include <QPainter>
#include <QString>
#include <QWidget>
#include <memory>
#include <vector>

#include "desktop/form_link.h"

namespace desktop {

// What a control is called where it is heard: nothing for what says nothing.
QString spoken_name(const platform::Control& control);

// The clicks of a widget that stands for `control`; for the form itself, null, there are none.
class Pressing {
 public:
  Pressing(std::shared_ptr<FormLink> link, platform::Control* control);

  platform::Role role() const { return role_; }
  bool possible() const { return role_ == platform::Role::button || role_ == platform::Role::notice; }
  // Does what a click with the left button does, soon: who asks must not wait for a box that the click opens.
  void press() const;
  // Presses if that is what the key is for; gives whether it is.
  bool handle(const QKeyEvent& key) const;

 private:
  std::shared_ptr<FormLink> link_;
  platform::Control* const control_;
  const platform::Role role_;
};

// Sorts widgets as one reads them on `whole`, which holds them: row by row, and a row from left to right.
void put_in_reading_order(std::vector<QWidget*>& widgets, const QWidget& whole);

// Shows that a widget has the keyboard.
void paint_focus(QPainter& painter, const QRect& area);

}  // namespace desktop
