#include "hooklib/session.h"

#include <poll.h>
#include <xcb/xinput.h>

#include <array>
#include <cmath>
#include <optional>
#include <utility>

namespace hooklib {
namespace {

// The trail appears once the pointer is this far from the press: a click that trembles shows nothing. Pixels at 96 dpi.
constexpr double trail_begin = 4.0;

// Raw events carry no modifiers, and come whoever has the keyboard or the pointer.
constexpr std::uint32_t idle_mask = XCB_INPUT_XI_EVENT_MASK_HIERARCHY | XCB_INPUT_XI_EVENT_MASK_RAW_KEY_PRESS |
                                    XCB_INPUT_XI_EVENT_MASK_RAW_KEY_RELEASE | XCB_INPUT_XI_EVENT_MASK_RAW_BUTTON_PRESS |
                                    XCB_INPUT_XI_EVENT_MASK_RAW_BUTTON_RELEASE;
constexpr std::uint32_t drawing_mask = idle_mask | XCB_INPUT_XI_EVENT_MASK_RAW_MOTION;

struct InputSelection {
  xcb_input_event_mask_t head;
  std::uint32_t mask;
};

}  // namespace

Session::Session(Display display, xcb_window_t window, Exchange& exchange, Guard& guard, HeldKeys& control_keys)
    : display_(std::move(display)),
      window_(window),
      exchange_(exchange),
      guard_(guard),
      control_keys_(control_keys),
      devices_(display_),
      keyboard_(display_),
      grab_(display_),
      recording_(display_),
      trail_(display_) {
  select_input(false);
  catch_up_with_control_keys();
  obey(exchange_.take_orders());
  sync(display_.control.get());
}

bool Session::run() {
  for (;;) {
    const Exchange::Orders orders = exchange_.take_orders();
    obey(orders);
    while (work()) continue;
    xcb_flush(display_.control.get());
    if (orders.quit || !display_.alive()) {
      leave();
      return orders.quit;
    }
    std::array<pollfd, 4> waits{{{xcb_get_file_descriptor(display_.control.get()), POLLIN, 0},
                                 {xcb_get_file_descriptor(display_.data.get()), POLLIN, 0},
                                 {exchange_.wake_descriptor(), POLLIN, 0},
                                 {guard_.descriptor(), POLLIN, 0}}};
    poll(waits.data(), waits.size(), -1);
  }
}

void Session::obey(const Exchange::Orders& orders) {
  if (orders.interrupted || orders.quit) perform(gesture_.stop());
  const bool stopped = orders.stopped || orders.quit;
  if (stopped == stopped_) return;
  stopped_ = stopped;
  grab_.want(!stopped_);
  guard_.watch(stopped_ ? xcb_window_t{XCB_WINDOW_NONE} : display_.window);
}

// Does what has come in. False if there was nothing: only then may the thread sleep, since every answer that is waited
// for may bring events along.
bool Session::work() {
  bool any = handle_events();
  if (std::exchange(moved_, false) && gesture_.drawing()) {
    // The server keeps what it records until it has reason to look at its clients: this is one.
    sync(display_.control.get());
    any = true;
  }
  any |= take_recording();
  if (guard_.asked()) {
    // It asks because of a press. The answer must not say that there is no drawing while one is about to begin.
    sync(display_.control.get());
    handle_events();
    guard_.answer(gesture_.drawing() || gesture_.finishing());
    any = true;
  }
  return any && display_.alive();
}

bool Session::handle_events() {
  bool any = false;
  while (const Held<xcb_generic_event_t> event{xcb_poll_for_event(display_.control.get())}) {
    handle(*event);
    any = true;
  }
  return any;
}

bool Session::take_recording() {
  bool any = recording_.take([this](const Sample& sample, bool release) {
    if (path_complete_ || (!gesture_.drawing() && !gesture_.finishing())) return;
    recorder_.add(sample);
    undrawn_.push_back({sample.x, sample.y});
    // No other button can be down: a press of one would have ended the drawing.
    path_complete_ = release;
  });
  if (any && gesture_.drawing()) draw_trail();
  if (gesture_.finishing() && recording_.finished()) {
    conclude();
    any = true;
  }
  return any;
}

void Session::leave() {
  perform(gesture_.stop());
  trail_.end();
  grab_.want(false);
  stopped_ = true;
  guard_.watch(XCB_WINDOW_NONE);
  // A press that the server froze before it gave the button up is on its way.
  sync(display_.control.get());
  while (work()) continue;
  sync(display_.control.get());
}

void Session::handle(const xcb_generic_event_t& event) {
  switch (event.response_type & 0x7f) {
    case XCB_BUTTON_PRESS: {
      const auto& press = reinterpret_cast<const xcb_button_press_event_t&>(event);
      if (press.detail != ButtonGrab::button) break;
      press_ = {static_cast<double>(press.root_x), static_cast<double>(press.root_y), press.time};
      perform(gesture_.frozen_press(press.time, !stopped_ && (press.state & XCB_MOD_MASK_CONTROL) == 0));
      break;
    }
    case XCB_DESTROY_NOTIFY:
      grab_.window_destroyed(reinterpret_cast<const xcb_destroy_notify_event_t&>(event).window);
      break;
    case XCB_MAPPING_NOTIFY:
      keyboard_.mapping_changed(reinterpret_cast<const xcb_mapping_notify_event_t&>(event).request);
      break;
    case XCB_GE_GENERIC: {
      const auto& input = reinterpret_cast<const xcb_ge_generic_event_t&>(event);
      if (input.extension == display_.input_opcode) handle_input(input);
      break;
    }
    default:
      // Errors come here too. Each is the answer to something whose failure changes nothing, such as a report to a
      // window that is gone.
      break;
  }
}

void Session::handle_input(const xcb_ge_generic_event_t& event) {
  const auto& button = reinterpret_cast<const xcb_input_raw_button_press_event_t&>(event);
  const auto& key = reinterpret_cast<const xcb_input_raw_key_press_event_t&>(event);
  const Contact contact{button.sourceid, button.detail};
  if (event.event_type == XCB_INPUT_HIERARCHY) return handle_devices(event);
  // Each event comes twice, from its device and from the master that unites them. The master's, too, are withheld while
  // the pointer is frozen, and a device that is attached to no master does not count.
  if (button.deviceid != button.sourceid || !devices_.is_attached(button.sourceid)) return;
  switch (event.event_type) {
    case XCB_INPUT_RAW_MOTION:
      moved_ = true;
      break;
    case XCB_INPUT_RAW_BUTTON_PRESS:
      perform(gesture_.button_down(contact, button.time));
      break;
    case XCB_INPUT_RAW_BUTTON_RELEASE:
      perform(gesture_.button_up(contact));
      break;
    case XCB_INPUT_RAW_KEY_PRESS:
      handle_key(key.sourceid, key.detail, true);
      break;
    case XCB_INPUT_RAW_KEY_RELEASE:
      handle_key(key.sourceid, key.detail, false);
      break;
    default:
      break;
  }
}

void Session::handle_key(std::uint16_t source, std::uint32_t code, bool down) {
  if (devices_.is_injected(source)) return;
  if (down && keyboard_.is_escape(code)) perform(gesture_.escape());
  if (keyboard_.is_control(code) && down) {
    perform(gesture_.control());
    if (control_keys_.down(source, code)) report(hook_key_down, key_control);
  } else if (!down && control_keys_.up(source, code)) {
    report(hook_key_up, key_control);
  }
}

void Session::handle_devices(const xcb_ge_generic_event_t& event) {
  constexpr std::uint32_t gone = XCB_INPUT_HIERARCHY_MASK_SLAVE_REMOVED | XCB_INPUT_HIERARCHY_MASK_SLAVE_DETACHED |
                                 XCB_INPUT_HIERARCHY_MASK_DEVICE_DISABLED;
  const auto& change = reinterpret_cast<const xcb_input_hierarchy_event_t&>(event);
  for (auto device = xcb_input_hierarchy_infos_iterator(&change); device.rem > 0;
       xcb_input_hierarchy_info_next(&device)) {
    if ((device.data->flags & gone) == 0) continue;
    perform(gesture_.device_gone(device.data->deviceid));
    if (control_keys_.device_gone(device.data->deviceid)) report(hook_key_up, key_control);
  }
  devices_.refresh();
}

void Session::perform(Step step) {
  if (step.begin) begin_drawing();
  if (step.end) {
    recording_.end();
    select_input(false);
    trail_.end();
  }
  switch (step.release) {
    case Release::none:
    case Release::as_stroke:  // conclude() has the stroke
      break;
    case Release::hand_over:
      let_go(XCB_ALLOW_REPLAY_POINTER);
      break;
    case Release::swallow:
      let_go(XCB_ALLOW_ASYNC_POINTER);
      break;
  }
}

void Session::begin_drawing() {
  recorder_.begin(press_);
  undrawn_.clear();
  trail_shown_ = false;
  path_complete_ = false;
  recording_.begin();
  select_input(true);
  SurroundingsQuestion question(display_);
  surroundings_ = question.answer();
  trail_.begin(surroundings_, {press_.x, press_.y});
  // Whatever moved before the raw events were selected lies in the recording with nothing to fetch it.
  moved_ = true;
}

void Session::draw_trail() {
  if (!trail_shown_) {
    for (const TrailPoint& point : undrawn_) {
      trail_shown_ |= std::hypot(point.x - press_.x, point.y - press_.y) >= trail_begin * surroundings_.density;
    }
  }
  if (!trail_shown_) return;
  trail_.extend(undrawn_);
  undrawn_.clear();
}

void Session::conclude() {
  std::optional<std::vector<point_hook>> points = sample_stroke(recorder_.samples(), surroundings_.density);
  const Step step = gesture_.recorded(!points);
  perform(step);
  if (step.release != Release::as_stroke) return;
  const bool reported = exchange_.publish(std::move(*points), [this] {
    // The pointer first: the program may act on the report at once.
    let_go(XCB_ALLOW_ASYNC_POINTER);
    report(hook_key_down, key_stroke);
    xcb_flush(display_.control.get());
  });
  if (!reported) let_go(XCB_ALLOW_REPLAY_POINTER);
}

void Session::let_go(std::uint8_t mode) {
  xcb_allow_events(display_.control.get(), mode, XCB_CURRENT_TIME);
}

void Session::report(int direction, int key) {
  xcb_client_message_event_t message{};
  message.response_type = XCB_CLIENT_MESSAGE;
  message.format = 32;
  message.window = window_;
  message.type = display_.atoms.report;
  message.data.data32[0] = static_cast<std::uint32_t>(direction);
  message.data.data32[1] = static_cast<std::uint32_t>(key);
  // With no event mask it goes to the client that made the window.
  xcb_send_event(display_.control.get(), 0, window_, XCB_EVENT_MASK_NO_EVENT, reinterpret_cast<const char*>(&message));
}

void Session::select_input(bool motion) {
  const InputSelection selection{{XCB_INPUT_DEVICE_ALL, 1}, motion ? drawing_mask : idle_mask};
  xcb_input_xi_select_events(display_.control.get(), display_.screen->root, 1, &selection.head);
}

// A Ctrl key that came up while there was no connection must not leave the program stopped.
void Session::catch_up_with_control_keys() {
  if (!control_keys_.any() || keyboard_.control_is_down()) return;
  control_keys_.clear();
  report(hook_key_up, key_control);
}

}  // namespace hooklib
