#include "hooklib/display.h"

#include <xcb/shape.h>
#include <xcb/xinput.h>

#include <algorithm>
#include <string_view>

#include "platform/hook_contract.h"

namespace hooklib {
namespace {

xcb_screen_t* screen_of(xcb_connection_t* connection, int number) {
  xcb_screen_iterator_t screens = xcb_setup_roots_iterator(xcb_get_setup(connection));
  for (; number > 0 && screens.rem > 0; --number) xcb_screen_next(&screens);
  return screens.rem > 0 ? screens.data : nullptr;
}

bool present(xcb_connection_t* connection, xcb_extension_t* extension) {
  const xcb_query_extension_reply_t* reply = xcb_get_extension_data(connection, extension);
  return reply != nullptr && reply->present != 0;
}

// A client must say which version it speaks before it uses an extension; raw events come through the grabs of others
// for those that speak 2.1 or later.
bool agree_on_versions(xcb_connection_t* connection) {
  xcb_prefetch_extension_data(connection, &xcb_record_id);
  xcb_prefetch_extension_data(connection, &xcb_input_id);
  xcb_prefetch_extension_data(connection, &xcb_shape_id);
  if (!present(connection, &xcb_record_id) || !present(connection, &xcb_input_id) ||
      !present(connection, &xcb_shape_id)) {
    return false;
  }
  const auto record_asked = xcb_record_query_version(connection, 1, 13);
  const auto input_asked = xcb_input_xi_query_version(connection, 2, 1);
  const auto shape_asked = xcb_shape_query_version(connection);
  const Held<xcb_record_query_version_reply_t> record(
      xcb_record_query_version_reply(connection, record_asked, nullptr));
  const Held<xcb_input_xi_query_version_reply_t> input(
      xcb_input_xi_query_version_reply(connection, input_asked, nullptr));
  const Held<xcb_shape_query_version_reply_t> shape(xcb_shape_query_version_reply(connection, shape_asked, nullptr));
  // Input shapes came with version 1.1.
  return record && input && shape && (input->major_version > 2 || input->minor_version >= 1) &&
         (shape->major_version > 1 || shape->minor_version >= 1);
}

xcb_intern_atom_cookie_t ask_atom(xcb_connection_t* connection, std::string_view name) {
  return xcb_intern_atom(connection, 0, static_cast<std::uint16_t>(name.size()), name.data());
}

xcb_atom_t atom_of(xcb_connection_t* connection, xcb_intern_atom_cookie_t cookie) {
  const Held<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(connection, cookie, nullptr));
  return reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
}

Atoms intern_atoms(xcb_connection_t* connection, int screen) {
  const std::string number = std::to_string(screen);
  const auto report = ask_atom(connection, hook_report_atom);
  const auto question = ask_atom(connection, hook_question_atom);
  const auto owner = ask_atom(connection, "_STROKEMIND_BUTTON_S" + number);
  const auto compositor = ask_atom(connection, "_NET_WM_CM_S" + number);
  const auto xtest_device = ask_atom(connection, "XTEST Device");
  return {atom_of(connection, report), atom_of(connection, question), atom_of(connection, owner),
          atom_of(connection, compositor), atom_of(connection, xtest_device)};
}

// Where the pointer is while the server withholds its events can only be recorded. The context belongs to the control
// connection, so that ending that one ends everything.
xcb_record_context_t create_recording(xcb_connection_t* connection) {
  xcb_record_range_t range{};
  range.device_events = {XCB_BUTTON_PRESS, XCB_MOTION_NOTIFY};
  const xcb_record_client_spec_t everyone = XCB_RECORD_CS_ALL_CLIENTS;
  const xcb_record_context_t context = xcb_generate_id(connection);
  xcb_record_create_context(connection, context, 0, 1, 1, &everyone, &range);
  return context;
}

xcb_window_t create_window(xcb_connection_t* connection, const xcb_screen_t& screen) {
  const xcb_window_t window = xcb_generate_id(connection);
  xcb_create_window(connection, XCB_COPY_FROM_PARENT, window, screen.root, -1, -1, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY,
                    XCB_COPY_FROM_PARENT, 0, nullptr);
  return window;
}

}  // namespace

void sync(xcb_connection_t* connection) {
  const Held<xcb_get_input_focus_reply_t> answer(
      xcb_get_input_focus_reply(connection, xcb_get_input_focus(connection), nullptr));
}

std::optional<Display> open_display() {
  Display display;
  int number = 0;
  display.control.reset(xcb_connect(nullptr, &number));
  display.data.reset(xcb_connect(nullptr, nullptr));
  if (!display.alive()) return std::nullopt;
  xcb_connection_t* control = display.control.get();
  display.screen = screen_of(control, number);
  if (display.screen == nullptr || !agree_on_versions(control) || !present(display.data.get(), &xcb_record_id)) {
    return std::nullopt;
  }
  display.input_opcode = xcb_get_extension_data(control, &xcb_input_id)->major_opcode;
  display.atoms = intern_atoms(control, number);
  display.recording = create_recording(control);
  display.window = create_window(control, *display.screen);
  return display.alive() ? std::optional(std::move(display)) : std::nullopt;
}

}  // namespace hooklib
