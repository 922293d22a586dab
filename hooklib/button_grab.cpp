#include "hooklib/button_grab.h"

namespace hooklib {
namespace {

// Every combination of Shift, Lock, Control and the five others.
constexpr std::uint16_t modifier_combinations = 256;

// With the pointer frozen at the press, the press can still be given to the application as it was.
xcb_void_cookie_t ask_grab(xcb_connection_t* connection, xcb_window_t root, std::uint16_t modifiers, bool checked) {
  const auto request = checked ? xcb_grab_button_checked : xcb_grab_button;
  return request(connection, 0, root, XCB_EVENT_MASK_BUTTON_PRESS | XCB_EVENT_MASK_BUTTON_RELEASE, XCB_GRAB_MODE_SYNC,
                 XCB_GRAB_MODE_ASYNC, XCB_WINDOW_NONE, XCB_CURSOR_NONE, ButtonGrab::button, modifiers);
}

}  // namespace

ButtonGrab::ButtonGrab(Display& display) : display_(display) {
  claim();
}

void ButtonGrab::claim() {
  xcb_connection_t* control = display_.control.get();
  const xcb_atom_t selection = display_.atoms.owner;
  // Nobody else may claim it between the question and the claim.
  xcb_grab_server(control);
  const Held<xcb_get_selection_owner_reply_t> reply(
      xcb_get_selection_owner_reply(control, xcb_get_selection_owner(control, selection), nullptr));
  if (reply && reply->owner == XCB_WINDOW_NONE) {
    xcb_set_selection_owner(control, display_.window, selection, XCB_CURRENT_TIME);
    owned_ = true;
  } else if (reply) {
    // Its window goes with its connection, in whatever way it ends.
    other_owner_ = reply->owner;
    const std::uint32_t mask = XCB_EVENT_MASK_STRUCTURE_NOTIFY;
    xcb_change_window_attributes(control, other_owner_, XCB_CW_EVENT_MASK, &mask);
  }
  xcb_ungrab_server(control);
  // At once: as long as the server is ours, everybody waits.
  xcb_flush(control);
}

void ButtonGrab::want(bool wanted) {
  wanted_ = wanted;
  apply();
}

void ButtonGrab::window_destroyed(xcb_window_t window) {
  if (window != other_owner_) return;
  other_owner_ = 0;
  claim();
  apply();
}

void ButtonGrab::apply() {
  const bool grab = wanted_ && owned_;
  if (grab == grabbed_) return;
  grabbed_ = grab;
  xcb_connection_t* control = display_.control.get();
  const xcb_window_t root = display_.screen->root;
  if (!grab) {
    xcb_ungrab_button(control, button, root, XCB_MOD_MASK_ANY);
    return;
  }
  const Held<xcb_generic_error_t> refused(xcb_request_check(control, ask_grab(control, root, XCB_MOD_MASK_ANY, true)));
  if (!refused) return;
  // Another program has the button with some modifier; take it with all the others. Refusals come as errors among the
  // events and are of no interest.
  for (std::uint16_t modifiers = 0; modifiers < modifier_combinations; ++modifiers) {
    ask_grab(control, root, modifiers, false);
  }
}

}  // namespace hooklib
