// What carries properties, and the values that properties hold. Lengths are twips, 15 to the pixel of the design
// screen, unless a member says otherwise; colours are 32-bit with red in the low byte; text is UTF-8.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <utility>

namespace platform {

// A window as the platform names it: an X window id on the desktop. 0 is no window.
using Handle = std::uint32_t;

inline constexpr float twips_per_pixel = 15.0F;

class Control;
class Form;
class ListView;
class Timer;

// What carries properties and wants to know when one of them changes.
class Component {
 public:
  Component() = default;
  Component(const Component&) = delete;
  Component& operator=(const Component&) = delete;
  virtual ~Component() = default;
  // Called after a property has taken a different value.
  virtual void changed() = 0;
};

// A value that tells its owner when an assignment changes it. Assigning an equal value is no change.
template <class T>
class Property {
 public:
  Property(Component& owner, T value) : owner_(owner), value_(std::move(value)) {}
  Property(const Property&) = delete;
  Property& operator=(const Property& other) { return *this = other.value_; }
  Property& operator=(T value) {
    if (value_ != value) {
      value_ = std::move(value);
      owner_.changed();
    }
    return *this;
  }
  operator const T&() const { return value_; }  // NOLINT(google-explicit-constructor): read like the value it holds
  const T& get() const { return value_; }

 private:
  Component& owner_;
  T value_;
};

struct Rectangle {
  float Left, Top, Width, Height;
};

// Text face as the design names it; the platform falls back on a face of its own for a name it does not have.
struct Font {
  std::string Name = "MS Sans Serif";
  float Size = 8.25F;  // points
  bool Bold = false;
  bool operator==(const Font&) const = default;
};

// A fixed picture of the program (an icon). `resource` names its image file without size and ending.
struct Picture {
  std::uint32_t handle = 0;  // 0: no picture
  std::string resource;
  bool operator==(const Picture&) const = default;
};

// Button: 1 left, 2 right, 4 middle; in a move the sum of those held. Shift: 1 Shift, 2 Ctrl, 4 Alt. X and Y count from
// the control's own corner, in the scale of the control that reports them.
struct MouseEvent {
  int Button;
  int Shift;
  float X;
  float Y;
};
using MouseHandler = std::function<void(const MouseEvent&)>;
using ClickHandler = std::function<void()>;
// A handler may change the code; 0 swallows the key.
using KeyPressHandler = std::function<void(int& KeyAscii)>;
using KeyHandler = std::function<void(int& KeyCode, int& Shift)>;

// The windows behind a form. Set while the form is loaded.
class FormHost {
 public:
  virtual ~FormHost() = default;
  // Something of `control` (of the form itself where it is null) differs from what the window shows.
  virtual void repaint(Control* control) = 0;
  // Paints what is outstanding before returning.
  virtual void refresh(Control* control) = 0;
  // Interval or Enabled of a timer has changed.
  virtual void timer_changed(Timer& timer) = 0;
  // Scrolls the list until `row` (from 1) is seen.
  virtual void ensure_visible(ListView& list, int row) = 0;
  // Gives the keyboard to a control.
  virtual void set_focus(Control& control) = 0;
};

}  // namespace platform
