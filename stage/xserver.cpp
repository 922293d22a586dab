#include "stage/xserver.h"

#include <X11/Xatom.h>
#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <X11/extensions/XInput.h>
#include <X11/extensions/XInput2.h>
#include <X11/extensions/XTest.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <initializer_list>
#include <stdexcept>

#include "stage/windows.h"

namespace stage {
namespace {

// Starts a program that changes the screen, and waits until `done` sees that it has.
Process start_for(const XServer& server, const std::vector<std::string>& argv,
                  const std::function<bool(Display*)>& done) {
  Process process(argv, {server.environment()});
  const DisplayHandle display(XOpenDisplay(server.display().c_str()));
  if (display && eventually([&] { return !process.running() || done(display.get()); }) && process.running()) {
    return process;
  }
  return {};
}

// A window manager announces itself long before it looks at windows; one that answers questions does both. openbox
// may also sleep over what came in while it started, until something else comes in: hence the question at each look.
bool has_window_manager(Display* display, Window window) {
  XEvent question{};
  question.xclient.type = ClientMessage;
  question.xclient.window = window;
  question.xclient.message_type = XInternAtom(display, "_NET_REQUEST_FRAME_EXTENTS", False);
  question.xclient.format = 32;
  XSendEvent(display, DefaultRootWindow(display), False, SubstructureRedirectMask | SubstructureNotifyMask, &question);
  return !property(display, window, "_NET_FRAME_EXTENTS").empty();
}

bool has_compositor(Display* display) {
  return XGetSelectionOwner(display, XInternAtom(display, "_NET_WM_CM_S0", False)) != None;
}

}  // namespace

XServer::XServer(const std::string& screen)
    : process_({"Xvfb", "-displayfd", "1", "-screen", "0", screen, "-noreset", "-nolisten", "tcp"}, {}, true) {
  const std::string number = process_.read_line();
  if (!number.empty()) display_ = ":" + number;
}

void XServer::make_current() const {
  setenv("DISPLAY", display_.c_str(), 1);
}

Process start_window_manager(const XServer& server, const std::string& name) {
  Window window = None;
  const std::string option = name == "openbox" ? "--sm-disable"
                             : name == "xfwm4" ? "--compositor=off"
                                               : "--no-composite";
  return start_for(server, {name, option}, [&](Display* display) {
    if (window == None) window = XCreateSimpleWindow(display, DefaultRootWindow(display), 0, 0, 10, 10, 0, 0, 0);
    return has_window_manager(display, window);
  });
}

Process start_compositor(const XServer& server) {
  return start_for(server, {"picom", "--config", "/dev/null", "--backend", "xrender"}, has_compositor);
}

Process start_bus(const std::vector<std::string>& variables) {
  return Process({"dbus-daemon", "--session", "--nofork", "--print-address"}, variables, true);
}

struct User::Devices {
  DisplayHandle display;
  XDevice* mouse = nullptr;
  XDevice* keyboard = nullptr;

  Devices() = default;
  Devices(const Devices&) = delete;
  Devices& operator=(const Devices&) = delete;
  ~Devices() {
    if (mouse != nullptr) XCloseDevice(display.get(), mouse);
    if (keyboard != nullptr) XCloseDevice(display.get(), keyboard);
  }
  XDevice* open(const char* name) const {
    int count = 0;
    XDeviceInfo* all = XListInputDevices(display.get(), &count);
    XDevice* found = nullptr;
    for (int i = 0; i < count && found == nullptr; ++i) {
      if (std::string(all[i].name) == name) found = XOpenDevice(display.get(), all[i].id);
    }
    XFreeDeviceList(all);
    if (found == nullptr) throw std::runtime_error(std::string("the server has no device ") + name);
    return found;
  }
  void settle() const { XSync(display.get(), False); }
  void key(unsigned long keysym, bool down) const {
    XTestFakeDeviceKeyEvent(display.get(), keyboard, XKeysymToKeycode(display.get(), keysym), down ? True : False,
                            nullptr, 0, CurrentTime);
    settle();
  }
  void buttons(int number, std::initializer_list<bool> downs) const {
    for (const bool down : downs) {
      XTestFakeDeviceButtonEvent(display.get(), mouse, static_cast<unsigned>(number), down ? True : False, nullptr, 0,
                                 CurrentTime);
    }
    settle();
  }
};

User::User(const XServer& server) : devices_(std::make_unique<Devices>()) {
  devices_->display.reset(XOpenDisplay(server.display().c_str()));
  if (!devices_->display) throw std::runtime_error("no connection to the display " + server.display());
  devices_->mouse = devices_->open("Xvfb mouse");
  devices_->keyboard = devices_->open("Xvfb keyboard");
}

User::~User() = default;

void User::move_to(int x, int y) {
  std::array<int, 2> axes{x, y};
  XTestFakeDeviceMotionEvent(devices_->display.get(), devices_->mouse, False, 0, axes.data(), 2, CurrentTime);
  devices_->settle();
}

void User::press(int button) {
  devices_->buttons(button, {true});
}
void User::release(int button) {
  devices_->buttons(button, {false});
}

void User::click(int button) {
  press(button);
  release(button);
}

void User::bounce(int button) {
  devices_->buttons(button, {false, true});
}

void User::press_bouncing(int button) {
  devices_->buttons(button, {true, false, true});
}

void User::plug_mouse(bool in) {
  Display* const display = devices_->display.get();
  unsigned char enabled = in ? 1 : 0;
  XIChangeProperty(display, static_cast<int>(devices_->mouse->device_id), XInternAtom(display, "Device Enabled", False),
                   XA_INTEGER, 8, XIPropModeReplace, &enabled, 1);
  devices_->settle();
}

void User::key_down(unsigned long keysym) {
  devices_->key(keysym, true);
}
void User::key_up(unsigned long keysym) {
  devices_->key(keysym, false);
}

void User::type(unsigned long keysym) {
  key_down(keysym);
  key_up(keysym);
}

bool User::begin_stroke(int button, int x, int y) {
  constexpr std::uint32_t trail_colour = 0x00ff00;
  // No more than counts as rest, to begin with; on a dense screen the trail begins farther from the press.
  constexpr int least_tremble = 6;
  constexpr int most_tremble = 12;
  constexpr int tries_each = 16;
  move_to(x, y);
  press(button);
  int tries = 0;
  return eventually([&] {
    move_to(x, y + std::min(least_tremble + tries / tries_each, most_tremble) - tries % 2);
    ++tries;
    return pixels(x, y + least_tremble / 2, 1, 1).front() == trail_colour;
  });
}

void User::draw(int button, const Path& path) {
  begin_stroke(button, path.front().first, path.front().second);
  for (const auto& [x, y] : path) move_to(x, y);
  release(button);
}

void User::inject_key(unsigned long keysym, bool down) {
  Display* display = devices_->display.get();
  XTestFakeKeyEvent(display, XKeysymToKeycode(display, keysym), down ? True : False, CurrentTime);
  devices_->settle();
}

void User::inject_button(int button, bool down) {
  XTestFakeButtonEvent(devices_->display.get(), static_cast<unsigned>(button), down ? True : False, CurrentTime);
  devices_->settle();
}

std::vector<std::uint32_t> User::pixels(int x, int y, int width, int height) {
  Display* display = devices_->display.get();
  XImage* image = XGetImage(display, DefaultRootWindow(display), x, y, static_cast<unsigned>(width),
                            static_cast<unsigned>(height), AllPlanes, ZPixmap);
  std::vector<std::uint32_t> colours;
  for (int row = 0; image != nullptr && row < height; ++row) {
    for (int column = 0; column < width; ++column) {
      colours.push_back(static_cast<std::uint32_t>(XGetPixel(image, column, row) & 0xffffff));
    }
  }
  if (image != nullptr) XDestroyImage(image);
  return colours;
}

}  // namespace stage
