#include "bench/key_target.h"

#include <X11/Xlib.h>
#include <poll.h>

namespace {

constexpr int longest_wait_ms = 5000;

}  // namespace

KeyTarget::KeyTarget(const stage::XServer& server) : display_(XOpenDisplay(server.display().c_str())) {
  XSetWindowAttributes attributes{};
  attributes.override_redirect = True;
  attributes.event_mask = KeyPressMask | ExposureMask;
  window_ = XCreateWindow(display_, DefaultRootWindow(display_), 0, 0, 100, 100, 0, CopyFromParent, InputOutput,
                          nullptr, CWOverrideRedirect | CWEventMask, &attributes);
  XMapRaised(display_, window_);
  XEvent event;
  XWindowEvent(display_, window_, ExposureMask, &event);
}

void KeyTarget::take_keyboard() {
  XSetInputFocus(display_, window_, RevertToParent, CurrentTime);
  XSync(display_, False);
}

KeyTarget::~KeyTarget() {
  XCloseDisplay(display_);
}

void KeyTarget::forget() {
  XSync(display_, True);
}

bool KeyTarget::wait_for_key() {
  for (;;) {
    while (XPending(display_) != 0) {
      XEvent event;
      XNextEvent(display_, &event);
      if (event.type == KeyPress) return true;
    }
    pollfd wait{ConnectionNumber(display_), POLLIN, 0};
    if (poll(&wait, 1, longest_wait_ms) <= 0) return false;
  }
}
