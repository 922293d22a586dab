#include "desktop/x11.h"

#include <QGuiApplication>
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
  const auto reply = answer(connection_, xcb_intern_atom_reply,
                            xcb_intern_atom(connection_, 0, static_cast<std::uint16_t>(name.size()), name.data()));
  return reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
}

bool X11::composited() const {
  const auto reply = answer(connection_, xcb_get_selection_owner_reply,
                            xcb_get_selection_owner(connection_, atom("_NET_WM_CM_S" + std::to_string(screen_))));
  return reply && reply->owner != XCB_NONE;
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

void X11::ask_window_manager(xcb_window_t window, const char* message, std::uint32_t first, std::uint32_t second,
                             std::uint32_t fourth) const {
  xcb_client_message_event_t event{};
  event.response_type = XCB_CLIENT_MESSAGE;
  event.format = 32;
  event.window = window;
  event.type = atom(message);
  event.data.data32[0] = first;
  event.data.data32[1] = second;
  event.data.data32[3] = fourth;
  xcb_send_event(connection_, 0, root_, XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                 reinterpret_cast<const char*>(&event));
  flush();
}

void X11::activate(xcb_window_t window) const {
  if (managed()) {
    // In the user's name: it is his click or his gesture that asks for it, though not one on this window, and some
    // window managers hold a program's own wish back.
    constexpr std::uint32_t from_user = 2;
    ask_window_manager(window, "_NET_ACTIVE_WINDOW", from_user, XCB_CURRENT_TIME, 0);
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
    ask_window_manager(window, "_NET_WM_STATE", above ? 1 : 0, atom("_NET_WM_STATE_ABOVE"), from_program);
    return;
  }
  constexpr std::uint32_t front = XCB_STACK_MODE_ABOVE;
  if (above) xcb_configure_window(connection_, window, XCB_CONFIG_WINDOW_STACK_MODE, &front);
  flush();
}

}  // namespace desktop
