// What the widgets of one form share: the way to the form, which may go at any moment.
#pragma once

#include <utility>

#include "desktop/events.h"
#include "platform/controls.h"

namespace desktop {

struct FormLink {
  FormLink(platform::Form& linked, DesktopEvents& served) : form(&linked), events(served) {}

  platform::Form* form;  // null once the form is unloaded: it may be gone then, and its controls with it
  DesktopEvents& events;
  bool pressed = false;  // a mouse button is held that went down on the form

  // Whether handlers may be called and controls looked at.
  bool serving() const { return form != nullptr && !events.ended(); }

  // Calls a handler of the form or of one of its controls; gives whether the form is still there afterwards. The copy
  // lives on when the handler unloads the form that holds it.
  template <class Handler, class... Arguments>
  bool call(const Handler& handler, Arguments&&... arguments) const {
    if (!serving()) return false;
    if (const Handler copy = handler) copy(std::forward<Arguments>(arguments)...);
    return serving();
  }
};

// A widget that stands for a control.
class Mirror {
 public:
  Mirror() = default;
  Mirror(const Mirror&) = delete;
  Mirror& operator=(const Mirror&) = delete;
  virtual ~Mirror() = default;
  // Takes over what the control's properties say. Its place and whether it is shown are not its own business.
  virtual void sync() = 0;
};

}  // namespace desktop
