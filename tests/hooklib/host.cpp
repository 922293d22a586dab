#include "tests/hooklib/host.h"

#include <X11/Xutil.h>
#include <dlfcn.h>

#include <algorithm>
#include <array>
#include <stdexcept>

#include "tests/support/xserver.h"

namespace hook_test {
namespace {

template <class Function>
Function* find(void* library, const char* name) {
  auto* const function = reinterpret_cast<Function*>(dlsym(library, name));
  if (function == nullptr) throw std::runtime_error(std::string("the library lacks ") + name);
  return function;
}

bool grab_refused = false;
int note_refusal(Display* /*display*/, XErrorEvent* error) {
  grab_refused |= error->error_code == BadAccess;
  return 0;
}

}  // namespace

Library::Library() {
  void* const library = dlopen(HOOK_LIBRARY, RTLD_NOW | RTLD_LOCAL);
  if (library == nullptr) throw std::runtime_error(dlerror());
  InitHook = find<InitHook_t>(library, "InitHook");
  EndHook = find<EndHook_t>(library, "EndHook");
  DLL_STOP = find<DLL_STOP_t>(library, "DLL_STOP");
  ENVOIS_BUF_TMP = find<ENVOIS_BUF_TMP_t>(library, "ENVOIS_BUF_TMP");
  for (const char* idle : {"DLL_Hook", "DLL_UnHook", "HelloWorld", "GetMessage"}) find<void()>(library, idle)();
}

Host::Host() : display_(XOpenDisplay(nullptr)), window_(None), atom_(None) {
  if (!display_) throw std::runtime_error("no display");
  window_ = XCreateSimpleWindow(display_.get(), DefaultRootWindow(display_.get()), 0, 0, 10, 10, 0, 0, 0);
  atom_ = XInternAtom(display_.get(), hook_report_atom, False);
  XSync(display_.get(), False);
}

std::vector<std::pair<int, int>> Host::fetch() {
  std::array<point_hook, hook_capacity> points{};
  points.fill({-7, -7});
  std::int32_t count = 0;
  library_.ENVOIS_BUF_TMP(points.data(), &count);
  std::vector<std::pair<int, int>> fetched;
  for (int i = 0; i < hook_capacity; ++i) {
    const point_hook& point = points[static_cast<std::size_t>(i)];
    if (i < count) fetched.emplace_back(point.x, point.y);
    if (i >= count && (point.x != -7 || point.y != -7)) throw std::runtime_error("written past the count");
  }
  return fetched;
}

const std::vector<Report>& Host::reports() {
  while (XPending(display_.get()) > 0) {
    XEvent event;
    XNextEvent(display_.get(), &event);
    const XClientMessageEvent& message = event.xclient;
    if (event.type == ClientMessage && message.message_type == atom_ && message.format == 32) {
      reports_.emplace_back(message.data.l[0], message.data.l[1]);
    }
  }
  return reports_;
}

Target::Target(const std::string& display) : display_(XOpenDisplay(display.c_str())), window_(None) {
  if (!display_) throw std::runtime_error("no display");
  Display* const connection = display_.get();
  window_ = XCreateSimpleWindow(connection, DefaultRootWindow(connection), 200, 100, 800, 600, 0, 0, 0x808080);
  XSizeHints hints{};
  hints.flags = USPosition | USSize;
  hints.x = 200;
  hints.y = 100;
  hints.width = 800;
  hints.height = 600;
  XSetWMNormalHints(connection, window_, &hints);
  XSelectInput(connection, window_, ButtonPressMask | ButtonReleaseMask | PointerMotionMask);
  XMapWindow(connection, window_);
  // Until the pointer is seen to be in the window, the window manager is not done with it.
  const auto viewable = [&] {
    XWindowAttributes attributes;
    return XGetWindowAttributes(connection, window_, &attributes) != 0 && attributes.map_state == IsViewable;
  };
  if (!test_support::eventually(viewable)) throw std::runtime_error("the window never appeared");
}

std::vector<std::string> Target::events(bool motion) {
  while (XPending(display_.get()) > 0) {
    XEvent event;
    XNextEvent(display_.get(), &event);
    const XButtonEvent& button = event.xbutton;
    const std::string at = " at " + std::to_string(button.x_root) + "," + std::to_string(button.y_root);
    if (event.type == ButtonPress) events_.push_back("press " + std::to_string(button.button) + at);
    if (event.type == ButtonRelease) events_.push_back("release " + std::to_string(button.button) + at);
    if (event.type == MotionNotify) events_.push_back("motion" + at);
  }
  std::vector<std::string> wanted = events_;
  if (!motion) std::erase_if(wanted, [](const std::string& event) { return event.starts_with("motion"); });
  return wanted;
}

void Target::forget() {
  events();
  events_.clear();
}

bool button_is_taken(Display* display) {
  const Window root = DefaultRootWindow(display);
  grab_refused = false;
  XErrorHandler before = XSetErrorHandler(note_refusal);
  // Nobody else may meet the grab that this tries.
  XGrabServer(display);
  XGrabButton(display, Button3, AnyModifier, root, False, ButtonPressMask, GrabModeAsync, GrabModeAsync, None, None);
  XUngrabButton(display, Button3, AnyModifier, root);
  XUngrabServer(display);
  XSync(display, False);
  XSetErrorHandler(before);
  return grab_refused;
}

}  // namespace hook_test
