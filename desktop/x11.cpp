#include "desktop/x11.h"

#include <xcb/xfixes.h>

#include <QGuiApplication>
#include <algorithm>
#include <cstdlib>
#include <memory>

namespace desktop {

namespace {

struct Free {
  void operator()(void* reply) const { std::free(reply); }  // replies are the C library's
};
template <class T>
using Reply = std::unique_ptr<T, Free>;

// Waits for the answer to a request; null where it was an error, which goes no further than here.
template <class Request, class Cookie, class T>
Reply<T> answer(xcb_connection_t* connection, T* (*fetch)(xcb_connection_t*, Cookie, xcb_generic_error_t**),
                Request cookie) {
  xcb_generic_error_t* error = nullptr;
  Reply<T> reply(fetch(connection, cookie, &error));
  std::free(error);
  return reply;
}

}  // namespace

X11::X11() : connection_(qGuiApp->nativeInterface<QNativeInterface::QX11Application>()->connection()) {
  char* host = nullptr;
  int display = 0;
  if (xcb_parse_display(nullptr, &host, &display, &screen_) != 0) std::free(host);
  auto screens = xcb_setup_roots_iterator(xcb_get_setup(connection_));
  for (int i = 0; i < screen_ && screens.rem > 1; ++i) xcb_screen_next(&screens);
  root_ = screens.data->root;
  wm_state_ = atom("WM_STATE");
}

xcb_atom_t X11::atom(const std::string& name) const {
  if (const auto known = atoms_.find(name); known != atoms_.end()) return known->second;
  const auto reply = answer(connection_, xcb_intern_atom_reply,
                            xcb_intern_atom(connection_, 0, static_cast<std::uint16_t>(name.size()), name.data()));
  return reply ? atoms_.emplace(name, reply->atom).first->second : xcb_atom_t{XCB_ATOM_NONE};
}

// Whether a program has taken the part on this screen that the selection stands for.
bool X11::owned(const std::string& selection) const {
  const auto reply = answer(connection_, xcb_get_selection_owner_reply,
                            xcb_get_selection_owner(connection_, atom(selection + std::to_string(screen_))));
  return reply && reply->owner != XCB_NONE;
}

bool X11::composited() const {
  return owned("_NET_WM_CM_S");
}

bool X11::embeds_icons() const {
  return owned("_NET_SYSTEM_TRAY_S");
}

std::uint8_t X11::watch_embedding() const {
  constexpr std::uint32_t every_change = XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER |
                                         XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY |
                                         XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE;
  xcb_xfixes_select_selection_input(connection_, root_, atom("_NET_SYSTEM_TRAY_S" + std::to_string(screen_)),
                                    every_change);
  const auto* extension = xcb_get_extension_data(connection_, &xcb_xfixes_id);
  return static_cast<std::uint8_t>(extension->first_event + XCB_XFIXES_SELECTION_NOTIFY);
}

platform::Point X11::pointer() const {
  const auto reply = answer(connection_, xcb_query_pointer_reply, xcb_query_pointer(connection_, root_));
  return reply ? platform::Point{reply->root_x, reply->root_y} : platform::Point{0, 0};
}

std::optional<X11::Family> X11::family(xcb_window_t window) const {
  const auto reply = answer(connection_, xcb_query_tree_reply, xcb_query_tree(connection_, window));
  if (!reply) return std::nullopt;
  const xcb_window_t* children = xcb_query_tree_children(reply.get());
  return Family{reply->parent, {children, children + xcb_query_tree_children_length(reply.get())}};
}

bool X11::has_property(xcb_window_t window, xcb_atom_t property) const {
  const auto reply = answer(connection_, xcb_get_property_reply,
                            xcb_get_property(connection_, 0, window, property, XCB_GET_PROPERTY_TYPE_ANY, 0, 0));
  return reply && reply->type != XCB_ATOM_NONE;
}

// The window that a window manager's frame holds, which bears its mark.
xcb_window_t X11::client_inside(xcb_window_t frame, int depth) const {
  if (is_client(frame)) return frame;
  const auto inside = depth > 0 ? family(frame) : std::nullopt;
  if (!inside) return XCB_NONE;
  for (std::size_t i = inside->children.size(); i-- > 0;) {
    if (const xcb_window_t client = client_inside(inside->children[i], depth - 1); client != XCB_NONE) return client;
  }
  return XCB_NONE;
}

// How deep below a top-level window the frames of window managers hold their clients, at most.
static constexpr int deepest_frame = 3;

platform::Handle X11::window_at(platform::Point at) const {
  // The server passes over windows that let the pointer through at that point, as does the pointer itself.
  xcb_window_t outermost = XCB_NONE;
  xcb_window_t innermost = root_;
  bool client = false;
  while (true) {
    const auto reply = answer(connection_, xcb_translate_coordinates_reply,
                              xcb_translate_coordinates(connection_, root_, innermost, static_cast<std::int16_t>(at.x),
                                                        static_cast<std::int16_t>(at.y)));
    if (!reply || reply->child == XCB_NONE) break;
    innermost = reply->child;
    if (outermost == XCB_NONE) outermost = innermost;
    client = client || is_client(innermost);
  }
  if (outermost == XCB_NONE) return 0;
  if (client) return innermost;
  const xcb_window_t framed = client_inside(outermost, deepest_frame);
  return framed != XCB_NONE ? framed : innermost;
}

platform::Handle X11::parent(platform::Handle window) const {
  if (window == root_ || is_client(window)) return 0;
  const auto own = family(window);
  if (!own || own->parent == root_ || own->parent == XCB_NONE) return 0;
  xcb_window_t outermost = own->parent;
  while (true) {
    if (is_client(outermost)) return own->parent;
    const auto above = family(outermost);
    if (!above) return 0;
    if (above->parent == root_ || above->parent == XCB_NONE) break;
    outermost = above->parent;
  }
  // Not inside a managed window: part of a frame, or inside a window that no window manager looks after.
  return client_inside(outermost, deepest_frame) != XCB_NONE ? 0 : own->parent;
}

xcb_window_t X11::client_of(platform::Handle window) const {
  xcb_window_t outermost = window;
  for (xcb_window_t at = window; at != XCB_NONE && at != root_;) {
    if (is_client(at)) return at;
    const auto own = family(at);
    if (!own) return XCB_NONE;
    outermost = at;
    at = own->parent;
  }
  return outermost == XCB_NONE || outermost == root_ ? XCB_NONE : client_inside(outermost, deepest_frame);
}

bool X11::is_own(xcb_window_t window) const {
  const xcb_setup_t* setup = xcb_get_setup(connection_);
  return (window & ~setup->resource_id_mask) == setup->resource_id_base;
}

std::vector<std::uint32_t> X11::property(xcb_window_t window, const char* name) const {
  constexpr std::uint32_t most = 4096;  // items; a list of windows is the longest that is asked for
  const auto reply = answer(connection_, xcb_get_property_reply,
                            xcb_get_property(connection_, 0, window, atom(name), XCB_GET_PROPERTY_TYPE_ANY, 0, most));
  constexpr int item_bits = 32;
  if (!reply || reply->format != item_bits) return {};
  const auto* items = static_cast<const std::uint32_t*>(xcb_get_property_value(reply.get()));
  return {items, items + reply->value_len};
}

std::optional<Area> X11::geometry(xcb_window_t window) const {
  const auto reply = answer(connection_, xcb_get_geometry_reply, xcb_get_geometry(connection_, window));
  if (!reply) return std::nullopt;
  return Area{reply->x, reply->y, reply->width, reply->height};
}

void X11::map(xcb_window_t window) const {
  // Gone meanwhile: nobody is to hear of it.
  std::free(xcb_request_check(connection_, xcb_map_window_checked(connection_, window)));
}

void X11::ask_window_manager(xcb_window_t window, const char* message, const std::array<std::uint32_t, 5>& data) const {
  xcb_client_message_event_t event{};
  event.response_type = XCB_CLIENT_MESSAGE;
  event.format = 32;
  event.window = window;
  event.type = atom(message);
  std::copy(data.begin(), data.end(), event.data.data32);
  xcb_send_event(connection_, 0, root_, XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                 reinterpret_cast<const char*>(&event));
  flush();
}

void X11::send_back(const xcb_client_message_event_t& message, xcb_window_t window) const {
  xcb_client_message_event_t answer = message;
  answer.window = window;
  xcb_send_event(connection_, 0, window, XCB_EVENT_MASK_NO_EVENT, reinterpret_cast<const char*>(&answer));
  flush();
}

void X11::activate(xcb_window_t window) const {
  if (managed()) {
    // In the user's name: it is his click or his gesture that asks for it, though not one on this window, and some
    // window managers hold a program's own wish back.
    constexpr std::uint32_t from_user = 2;
    ask_window_manager(window, "_NET_ACTIVE_WINDOW", {from_user, XCB_CURRENT_TIME});
    return;
  }
  constexpr std::uint32_t above = XCB_STACK_MODE_ABOVE;
  const auto raised = xcb_configure_window_checked(connection_, window, XCB_CONFIG_WINDOW_STACK_MODE, &above);
  const auto focused = xcb_set_input_focus_checked(connection_, XCB_INPUT_FOCUS_PARENT, window, XCB_CURRENT_TIME);
  // Gone, or not mapped yet: then it cannot have the keyboard.
  std::free(xcb_request_check(connection_, raised));
  std::free(xcb_request_check(connection_, focused));
}

void X11::keep_above(xcb_window_t window, bool above) const {
  if (managed()) {
    constexpr std::uint32_t from_program = 1;
    ask_window_manager(window, "_NET_WM_STATE", {above ? 1U : 0U, atom("_NET_WM_STATE_ABOVE"), 0, from_program});
    return;
  }
  constexpr std::uint32_t front = XCB_STACK_MODE_ABOVE;
  if (above) xcb_configure_window(connection_, window, XCB_CONFIG_WINDOW_STACK_MODE, &front);
  flush();
}

}  // namespace desktop
