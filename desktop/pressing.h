// How those who do not point get at what is clicked, by the keyboard or by what a screen reader asks for, and what it
// is called then.
#pragma once

#include <QKeyEvent>
#include <QPainter>
#include <QWidget>
#include <memory>
#include <string>
#include <vector>

#include "desktop/form_link.h"

namespace desktop {

// What a control is called where it is heard: empty for what says nothing.
const std::string& spoken_text(const platform::Control& control);

QString spoken_name(const platform::Control& control);

// Name and clicks of a widget that stands for `control`; the form itself, null, has neither.
class Pressing {
 public:
  Pressing(std::shared_ptr<FormLink> link, platform::Control* control);

  platform::Role role() const { return role_; }
  bool possible() const { return role_ != platform::Role::content && role_ != platform::Role::status; }
  // Gives the widget the control's name, if that has changed.
  void name(QWidget& widget);
  // Does what a click with the left button does, soon: who asks must not wait for a box that the click opens.
  void press() const;
  // Presses if that is what the key is for; gives whether it is.
  bool handle(const QKeyEvent& key) const;

 private:
  std::shared_ptr<FormLink> link_;
  platform::Control* const control_;
  const platform::Role role_;
  std::string named_;
};

// Sorts widgets as one reads them on `whole`, which holds them: row by row, and a row from left to right.
void put_in_reading_order(std::vector<QWidget*>& widgets, const QWidget& whole);

// Shows that a widget has the keyboard.
void paint_focus(QPainter& painter, const QRect& area);

}  // namespace desktop
