#include "tests/desktop/stage.h"

#include <X11/Xatom.h>

#include <algorithm>
#include <cstdlib>
#include <stdexcept>

using stage::eventually;

Stage::Stage(const With& with) {
  if (!server.ok()) throw std::runtime_error("no X server");
  server.make_current();
  for (const char* name : {"WAYLAND_DISPLAY", "XDG_SESSION_TYPE"}) unsetenv(name);
  setenv("DBUS_SESSION_BUS_ADDRESS", with.bus.c_str(), 1);
  setenv("QT_SCALE_FACTOR", with.scale.c_str(), 1);
  if (with.window_manager) window_manager = start_window_manager(server, with.manager);
  if (with.compositor) compositor = start_compositor(server);
  const bool all = with.window_manager == window_manager.running() && with.compositor == compositor.running();
  if (!all) throw std::runtime_error("no window manager or no compositor");
  display = XOpenDisplay(nullptr);
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
  static char name[] = "desktop_test";
  static char* arguments[] = {name, nullptr};
  desktop.emplace(1, arguments);
}

Stage::~Stage() {
  desktop.reset();
  user.reset();
  if (display != nullptr) XCloseDisplay(display);
}

bool Stage::until(const std::function<bool()>& condition) {
  return eventually([&] { return services().events.DoEvents(), condition(); });
}

void Stage::settle(platform::Form& form) {
  // A report comes behind all input that the server has sent before it.
  bool seen = false;
  const auto handler = form.KeyDown;
  form.KeyDown = [&](int& code, int& shift) {
    seen |= code == -1;
    if (code != -1 && handler) handler(code, shift);
  };
  send(form.hWnd, form.hWnd, hook_report_atom, {hook_key_down, -1});
  if (!until([&] { return seen; })) throw std::runtime_error("events are not served");
  form.KeyDown = handler;
}

void Stage::show(platform::Form& form) {
  if (!services().windows.load(form)) throw std::runtime_error("no window");
  services().windows.Show(form);
  // A window manager goes on placing a window for a while; giving it the keyboard is the last thing it does.
  const bool managed = window_manager.running();
  const bool done = !managed || until([&] { return active() == form.hWnd; });
  if (!done) throw std::runtime_error("the window does not become active");
  settle(form);
}

std::pair<int, int> Stage::place(Window window, int x, int y) const {
  Window child = None;
  std::pair<int, int> result;
  XTranslateCoordinates(display, window, DefaultRootWindow(display), x, y, &result.first, &result.second, &child);
  return result;
}

bool Stage::has_state(Window window, const char* state) const {
  return std::ranges::count(property(window, "_NET_WM_STATE"), atom(state)) != 0;
}

void Stage::send(Window to, Window about, const char* type, const std::vector<long>& data) const {
  XEvent event{};
  event.xclient.type = ClientMessage;
  event.xclient.window = about;
  event.xclient.message_type = atom(type);
  event.xclient.format = 32;
  for (std::size_t i = 0; i < data.size(); ++i) event.xclient.data.l[i] = data[i];
  XSendEvent(display, to, False, to == about ? NoEventMask : SubstructureRedirectMask | SubstructureNotifyMask, &event);
  XSync(display, False);
}
