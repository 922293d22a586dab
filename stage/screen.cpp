#include "stage/screen.h"

#include <X11/Xlib.h>

#include <algorithm>
#include <cstdlib>
#include <stdexcept>

namespace stage {

Screen::Screen(const With& with) {
  if (!server.ok()) throw std::runtime_error("no X server");
  server.make_current();
  for (const char* name : {"WAYLAND_DISPLAY", "XDG_SESSION_TYPE"}) unsetenv(name);
  setenv("DBUS_SESSION_BUS_ADDRESS", with.bus.c_str(), 1);
  setenv("QT_SCALE_FACTOR", with.scale.c_str(), 1);
  if (with.window_manager) window_manager = start_window_manager(server, with.manager);
  if (with.compositor) compositor = start_compositor(server);
  const bool all = with.window_manager == window_manager.running() && with.compositor == compositor.running();
  if (!all) throw std::runtime_error("no window manager or no compositor");
  connection_.reset(XOpenDisplay(nullptr));
  display = connection_.get();
  if (with.window_manager) {
    // Windows that are mapped before a window manager serves events come out wrong: one question is to be answered.
    const Window asking = XCreateSimpleWindow(display, DefaultRootWindow(display), 0, 0, 10, 10, 0, 0, 0);
    tell_manager(asking, "_NET_REQUEST_FRAME_EXTENTS");
    const bool answers = eventually([&] { return !property(asking, "_NET_FRAME_EXTENTS").empty(); });
    if (!answers) throw std::runtime_error("the window manager does not answer");
    XDestroyWindow(display, asking);
  }
  user.emplace(server);
  user->move_to(1900, 1000);  // out of the way
}

bool Screen::has_state(Window window, const char* state) const {
  return std::ranges::count(property(window, "_NET_WM_STATE"), atom(state)) != 0;
}

void Screen::send(Window to, Window about, const char* type, const std::vector<long>& data) const {
  XEvent event{};
  event.xclient.type = ClientMessage;
  event.xclient.window = about;
  event.xclient.message_type = atom(type);
  event.xclient.format = 32;
  for (std::size_t i = 0; i < data.size(); ++i) event.xclient.data.l[i] = data[i];
  XSendEvent(display, to, False, to == about ? NoEventMask : SubstructureRedirectMask | SubstructureNotifyMask, &event);
  XSync(display, False);
}

unsigned long Screen::atom(const char* name) const {
  return XInternAtom(display, name, False);
}

void Screen::tell_manager(Window about, const char* type, const std::vector<long>& data) const {
  send(DefaultRootWindow(display), about, type, data);
}

}  // namespace stage
