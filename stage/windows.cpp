#include "stage/windows.h"

#include <X11/Xatom.h>
#include <X11/Xlib.h>
#include <X11/Xutil.h>

#include "stage/xserver.h"

namespace stage {

void CloseDisplay::operator()(Display* display) const {
  XCloseDisplay(display);
}

std::vector<unsigned long> property(Display* display, Window window, const char* name) {
  constexpr long most_items = 1024;
  Atom type = None;
  int format = 0;
  unsigned long count = 0, left = 0;
  unsigned char* value = nullptr;
  XGetWindowProperty(display, window, XInternAtom(display, name, False), 0, most_items, False, AnyPropertyType, &type,
                     &format, &count, &left, &value);
  std::vector<unsigned long> items;
  // The sign has been spread over the upper half of each item.
  for (unsigned long i = 0; format == 32 && i < count; ++i) {
    items.push_back(reinterpret_cast<unsigned long*>(value)[i] & 0xFFFFFFFF);
  }
  if (value != nullptr) XFree(value);
  return items;
}

std::vector<unsigned long> root_property(Display* display, const char* name) {
  return property(display, DefaultRootWindow(display), name);
}

unsigned long active_window(Display* display) {
  // Some say a second thing about it.
  const auto items = root_property(display, "_NET_ACTIVE_WINDOW");
  return items.empty() ? None : items.front();
}

std::string title_of(Display* display, Window window) {
  char* name = nullptr;
  if (window == None || XFetchName(display, window, &name) == 0 || name == nullptr) return {};
  std::string text(name);
  XFree(name);
  return text;
}

std::pair<int, int> place_of(Display* display, Window window, int x, int y) {
  Window child = None;
  std::pair<int, int> place;
  XTranslateCoordinates(display, window, DefaultRootWindow(display), x, y, &place.first, &place.second, &child);
  return place;
}

bool settles(Display* display, Window window) {
  const bool managed = !root_property(display, "_NET_SUPPORTING_WM_CHECK").empty();
  return eventually([&] {
    XWindowAttributes attributes;
    return XGetWindowAttributes(display, window, &attributes) != 0 && attributes.map_state == IsViewable &&
           (!managed || active_window(display) == window);
  });
}

bool button_is_taken(Display* display) {
  static bool refused;
  refused = false;
  const XErrorHandler before = XSetErrorHandler([](Display*, XErrorEvent* error) {
    refused |= error->error_code == BadAccess;
    return 0;
  });
  const Window root = DefaultRootWindow(display);
  // Nobody else may meet the grab that this tries.
  XGrabServer(display);
  XGrabButton(display, Button3, AnyModifier, root, False, ButtonPressMask, GrabModeAsync, GrabModeAsync, None, None);
  XUngrabButton(display, Button3, AnyModifier, root);
  XUngrabServer(display);
  XSync(display, False);
  XSetErrorHandler(before);
  return refused;
}

}  // namespace stage
