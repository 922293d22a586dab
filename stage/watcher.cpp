#include "stage/watcher.h"

#include <X11/Xatom.h>
#include <X11/Xlib.h>
#include <X11/Xutil.h>

#include "stage/windows.h"

namespace stage {
namespace {

int ignore_error(Display* /*display*/, XErrorEvent* /*error*/) {
  return 0;
}

}  // namespace

Watcher::Watcher(const stage::XServer& server) : display_(XOpenDisplay(server.display().c_str())) {
  XSetErrorHandler(ignore_error);  // windows of others vanish while they are looked at
}

Watcher::Watcher(const stage::XServer& server, int x, int y, int width, int height) : Watcher(server) {
  XSetWindowAttributes attributes{};
  attributes.override_redirect = True;
  attributes.background_pixel = BlackPixel(display_, DefaultScreen(display_));  // what has been drawn over it goes
  attributes.event_mask = ButtonPressMask | ButtonReleaseMask | ButtonMotionMask | ExposureMask;
  window_ = XCreateWindow(display_, DefaultRootWindow(display_), x, y, static_cast<unsigned>(width),
                          static_cast<unsigned>(height), 0, CopyFromParent, InputOutput, nullptr,
                          CWOverrideRedirect | CWBackPixel | CWEventMask, &attributes);
  XMapRaised(display_, window_);
  XEvent event;
  XWindowEvent(display_, window_, ExposureMask, &event);
}

Watcher::~Watcher() {
  XCloseDisplay(display_);
}

void Watcher::take_events() {
  XSync(display_, False);
  const Atom icon = XInternAtom(display_, "_NET_WM_ICON", False);
  while (XPending(display_) != 0) {
    XEvent event;
    XNextEvent(display_, &event);
    if (event.type == ButtonPress) events_.push_back("press " + std::to_string(event.xbutton.button));
    if (event.type == ButtonRelease) events_.push_back("release " + std::to_string(event.xbutton.button));
    if (event.type == MotionNotify && (events_.empty() || events_.back() != "motion")) events_.emplace_back("motion");
    if (event.type == PropertyNotify && event.xproperty.atom == icon) ++icon_changes_;
  }
}

const std::vector<std::string>& Watcher::events() {
  take_events();
  return events_;
}

unsigned long Watcher::window(const std::string& title) {
  for (const unsigned long window : root_property(display_, "_NET_CLIENT_LIST")) {
    if (title_of(display_, window) == title) return window;
  }
  return 0;
}

int Watcher::icon_changes(const std::string& title) {
  if (observed_ == 0) {
    observed_ = window(title);
    XSelectInput(display_, observed_, PropertyChangeMask);
  }
  take_events();
  return icon_changes_;
}

std::vector<std::string> Watcher::managed() {
  std::vector<std::string> titles;
  for (const unsigned long window : root_property(display_, "_NET_CLIENT_LIST")) {
    titles.push_back(title_of(display_, window));
  }
  return titles;
}

std::string Watcher::active() {
  return title_of(display_, active_window(display_));
}

int Watcher::popups() {
  Window root = 0;
  Window parent = 0;
  Window* children = nullptr;
  unsigned count = 0;
  XQueryTree(display_, DefaultRootWindow(display_), &root, &parent, &children, &count);
  int open = 0;
  for (unsigned n = 0; n < count; ++n) {
    XWindowAttributes attributes;
    if (children[n] == window_ || XGetWindowAttributes(display_, children[n], &attributes) == 0) continue;
    // Window managers keep tiny unmanaged windows of their own off the screen.
    if (attributes.override_redirect != 0 && attributes.map_state == IsViewable && attributes.width > 20 &&
        attributes.height > 20 && attributes.x >= 0) {
      ++open;
    }
  }
  if (children != nullptr) XFree(children);
  return open;
}

int Watcher::grabs() {
  const Window root = DefaultRootWindow(display_);
  const int pointer = XGrabPointer(display_, root, False, 0, GrabModeAsync, GrabModeAsync, None, None, CurrentTime);
  if (pointer == GrabSuccess) XUngrabPointer(display_, CurrentTime);
  const int keyboard = XGrabKeyboard(display_, root, False, GrabModeAsync, GrabModeAsync, CurrentTime);
  if (keyboard == GrabSuccess) XUngrabKeyboard(display_, CurrentTime);
  XSync(display_, False);
  return (pointer == GrabSuccess ? 0 : 1) + (keyboard == GrabSuccess ? 0 : 1);
}

std::pair<int, int> Watcher::place(const std::string& title) {
  return place_of(display_, window(title));
}

}  // namespace stage
