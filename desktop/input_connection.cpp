#include "desktop/input_connection.h"

#include <X11/XKBlib.h>
#include <X11/Xatom.h>
#include <X11/extensions/XInput2.h>
#include <X11/extensions/XTest.h>
#include <poll.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <string_view>
#include <utility>

namespace desktop {
namespace {

using std::chrono::milliseconds;

// Longest wait for a sign of life, and what a window gets that cannot give one.
constexpr milliseconds longest_answer{500};
constexpr milliseconds time_without_answer{100};

// Xlib has one error handler a process. Ours looks after the displays opened here and leaves all others to whoever was
// there before; it stays, since what was installed behind it may call it.
std::array<std::atomic<Display*>, 8> quiet_displays{};
std::atomic<XErrorHandler> former_handler{nullptr};

int ignore_errors(Display* display, XErrorEvent* error) {
  for (const auto& quiet : quiet_displays) {
    if (quiet == display) return 0;
  }
  const XErrorHandler former = former_handler;
  return former != nullptr ? former(display, error) : 0;
}

void keep_quiet(Display* display) {
  const XErrorHandler present = XSetErrorHandler(ignore_errors);
  if (present != ignore_errors) former_handler = present;
  for (auto& quiet : quiet_displays) {
    Display* none = nullptr;
    if (quiet.compare_exchange_strong(none, display)) return;
  }
}

void forget(Display* display) {
  for (auto& quiet : quiet_displays) {
    Display* same = display;
    quiet.compare_exchange_strong(same, nullptr);
  }
}

unsigned xtest_keyboard(Display* display) {
  unsigned device = XkbUseCoreKbd;
  int opcode = 0, event = 0, error = 0, major = 2, minor = 0, count = 0;
  if (XQueryExtension(display, "XInputExtension", &opcode, &event, &error) == 0) return device;
  if (XIQueryVersion(display, &major, &minor) != Success) return device;
  XIDeviceInfo* const devices = XIQueryDevice(display, XIAllDevices, &count);
  for (int i = 0; devices != nullptr && i < count; ++i) {
    const bool ours = devices[i].use == XISlaveKeyboard &&
                      std::string_view(devices[i].name).find("XTEST keyboard") != std::string_view::npos;
    // The first one belongs to the first keyboard, to which XTEST speaks unless a user has set up several.
    if (ours && device == XkbUseCoreKbd) device = static_cast<unsigned>(devices[i].deviceid);
  }
  if (devices != nullptr) XIFreeDeviceInfo(devices);
  return device;
}

}  // namespace

std::unique_ptr<InputConnection> InputConnection::open() {
  Display* const display = XOpenDisplay(nullptr);
  if (display == nullptr) return nullptr;
  int event = 0, error = 0, major = XkbMajorVersion, minor = XkbMinorVersion, opcode = 0;
  const bool xtest = XTestQueryExtension(display, &event, &error, &opcode, &opcode) != 0;
  if (!xtest || XkbQueryExtension(display, &opcode, &event, &error, &major, &minor) == 0) {
    XCloseDisplay(display);
    return nullptr;
  }
  std::unique_ptr<InputConnection> connection(new InputConnection(display));
  connection->xkb_event_ = event;
  return connection;
}

InputConnection::InputConnection(Display* display)
    : display_(display),
      device_(xtest_keyboard(display)),
      protocols_(XInternAtom(display, "WM_PROTOCOLS", False)),
      ping_(XInternAtom(display, "_NET_WM_PING", False)) {
  keep_quiet(display_);
  window_ = XCreateSimpleWindow(display_, DefaultRootWindow(display_), -1, -1, 1, 1, 0, 0, 0);
  XSelectInput(display_, window_, PropertyChangeMask);
  constexpr unsigned wanted = XkbMapNotifyMask | XkbNewKeyboardNotifyMask;
  XkbSelectEvents(display_, device_, wanted, wanted);
}

InputConnection::~InputConnection() {
  XSync(display_, False);
  XCloseDisplay(display_);
  forget(display_);
}

void InputConnection::note_map_change(const XEvent& event) {
  if (event.type != xkb_event_) return;
  // The server tells of every device, and of the keyboard as a whole whenever another device has sent keys.
  XkbEvent detail;
  detail.core = event;
  if (device_ == XkbUseCoreKbd || detail.any.device == device_) map_changed_ = true;
}

bool InputConnection::take_map_changes() {
  while (XPending(display_) > 0) {
    XEvent event;
    XNextEvent(display_, &event);
    note_map_change(event);
  }
  return std::exchange(map_changed_, false);
}

bool InputConnection::wait_for_event(const std::function<bool(const XEvent&)>& wanted, milliseconds longest) {
  const auto end = std::chrono::steady_clock::now() + longest;
  while (true) {
    while (XPending(display_) > 0) {
      XEvent event;
      XNextEvent(display_, &event);
      note_map_change(event);
      if (wanted(event)) return true;
    }
    const auto left = std::chrono::ceil<milliseconds>(end - std::chrono::steady_clock::now());
    if (left.count() <= 0) return false;
    pollfd readable{ConnectionNumber(display_), POLLIN, 0};
    poll(&readable, 1, static_cast<int>(left.count()));
  }
}

Time InputConnection::server_time() {
  Time time = CurrentTime;
  XChangeProperty(display_, window_, protocols_, XA_ATOM, 32, PropModeAppend, nullptr, 0);
  wait_for_event(
      [&](const XEvent& event) {
        if (event.type == PropertyNotify) time = event.xproperty.time;
        return event.type == PropertyNotify;
      },
      longest_answer);
  return time;
}

Window InputConnection::focused_window_with_ping() {
  Window window = 0, root = 0, parent = 0, *children = nullptr;
  int revert = 0, protocols_count = 0;
  unsigned count = 0;
  XGetInputFocus(display_, &window, &revert);
  while (window != None && window != PointerRoot && window != DefaultRootWindow(display_)) {
    Atom* protocols = nullptr;
    if (XGetWMProtocols(display_, window, &protocols, &protocols_count) != 0) {
      const bool has_ping = std::find(protocols, protocols + protocols_count, ping_) != protocols + protocols_count;
      XFree(protocols);
      if (has_ping) return window;
    }
    if (XQueryTree(display_, window, &root, &parent, &children, &count) == 0) return None;
    if (children != nullptr) XFree(children);
    window = parent;
  }
  return None;
}

void InputConnection::settle() {
  const Window target = focused_window_with_ping();
  if (target == None) {
    wait_for_event([](const XEvent&) { return false; }, time_without_answer);
    return;
  }
  // The answer goes to the root window, as those that the window manager asks for do.
  const Window root = DefaultRootWindow(display_);
  XSelectInput(display_, root, SubstructureNotifyMask);
  XEvent question{};
  question.xclient.type = ClientMessage;
  question.xclient.window = target;
  question.xclient.message_type = protocols_;
  question.xclient.format = 32;
  question.xclient.data.l[0] = static_cast<long>(ping_);
  question.xclient.data.l[1] = static_cast<long>(server_time());
  question.xclient.data.l[2] = static_cast<long>(target);
  XSendEvent(display_, target, False, NoEventMask, &question);
  wait_for_event(
      [&](const XEvent& event) {
        const auto& data = event.xclient.data.l;
        return event.type == ClientMessage && event.xclient.window == root && static_cast<Atom>(data[0]) == ping_ &&
               static_cast<Window>(data[2]) == target;
      },
      longest_answer);
  XSelectInput(display_, root, NoEventMask);
}

}  // namespace desktop
