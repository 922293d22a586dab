#include "desktop/show_state.h"

#include <algorithm>

namespace desktop {

namespace {

constexpr std::uint32_t iconic_state = 3;  // of WM_STATE and WM_CHANGE_STATE
constexpr const char* vertical = "_NET_WM_STATE_MAXIMIZED_VERT";
constexpr const char* horizontal = "_NET_WM_STATE_MAXIMIZED_HORZ";

void change_state(const X11& x11, xcb_window_t client, bool add, const char* first, const char* second) {
  // In the user's name: a gesture is his wish.
  constexpr std::uint32_t from_user = 2;
  x11.ask_window_manager(client, "_NET_WM_STATE",
                         {add ? 1U : 0U, x11.atom(first), second != nullptr ? x11.atom(second) : 0U, from_user});
}

}  // namespace

bool has_any_state(const X11& x11, xcb_window_t client, std::initializer_list<const char*> names) {
  const auto states = x11.property(client, "_NET_WM_STATE");
  return std::any_of(names.begin(), names.end(), [&](const char* name) {
    return std::find(states.begin(), states.end(), x11.atom(name)) != states.end();
  });
}

bool is_iconic(const X11& x11, xcb_window_t client) {
  const auto state = x11.property(client, "WM_STATE");
  return !state.empty() && state.front() == iconic_state;
}

bool is_minimised(const X11& x11, xcb_window_t client) {
  // While it is being minimised one of the two may be there without the other.
  return is_iconic(x11, client) || has_any_state(x11, client, {"_NET_WM_STATE_HIDDEN"});
}

void remove_state(const X11& x11, xcb_window_t client, const char* first, const char* second) {
  change_state(x11, client, false, first, second);
}

void iconify(const X11& x11, xcb_window_t client) {
  x11.ask_window_manager(client, "WM_CHANGE_STATE", {iconic_state});
}

int show_state(const X11& x11, platform::Handle window) {
  const xcb_window_t client = x11.client_of(window);
  if (client == XCB_NONE) return window != x11.root() && x11.exists(window) ? platform::SW_SHOWNORMAL : 0;
  if (is_minimised(x11, client)) return platform::SW_SHOWMINIMIZED;
  const bool full = has_any_state(x11, client, {vertical}) && has_any_state(x11, client, {horizontal});
  return full ? platform::SW_SHOWMAXIMIZED : platform::SW_SHOWNORMAL;
}

bool set_show_state(const X11& x11, platform::Handle window, int state) {
  const xcb_window_t client = x11.client_of(window);
  if (client == XCB_NONE || !x11.managed()) return false;
  if (state == platform::SW_SHOWMINIMIZED) {
    iconify(x11, client);
    return true;
  }
  if (state != platform::SW_SHOWNORMAL && state != platform::SW_SHOWMAXIMIZED) return false;
  if (is_minimised(x11, client)) {
    x11.map(client);
    x11.activate(client);
  }
  change_state(x11, client, state == platform::SW_SHOWMAXIMIZED, vertical, horizontal);
  return true;
}

}  // namespace desktop
