#include "hooklib/session.h"

#include <poll.h>
#include <xcb/xinput.h>

#include <algorithm>
#include <array>
#include <optional>
#include <utility>

namespace hooklib {
namespace {

// Raw events carry no modifiers, and come whoever has the keyboard or the pointer.
constexpr std::uint32_t idle_mask = XCB_INPUT_XI_EVENT_MASK_HIERARCHY | XCB_INPUT_XI_EVENT_MASK_RAW_KEY_PRESS |
                                    XCB_INPUT_XI_EVENT_MASK_RAW_KEY_RELEASE | XCB_INPUT_XI_EVENT_MASK_RAW_BUTTON_PRESS |
                                    XCB_INPUT_XI_EVENT_MASK_RAW_BUTTON_RELEASE;
constexpr std::uint32_t drawing_mask = idle_mask | XCB_INPUT_XI_EVENT_MASK_RAW_MOTION;

constexpr std::uint16_t other_buttons = XCB_BUTTON_MASK_1 | XCB_BUTTON_MASK_2 | XCB_BUTTON_MASK_3;

constexpr auto trail_interval = std::chrono::milliseconds(8);

struct InputSelection {
  xcb_input_event_mask_t head;
  std::uint32_t mask;
};

}  // namespace

Session::Session(Display display, Program& program, Exchange& exchange, Guard& guard)
    : display_(std::move(display)),
      program_(program),
      exchange_(exchange),
      guard_(guard),
      devices_(display_),
      keyboard_(display_),
      grab_(display_),
      recording_(display_),
      trail_(display_) {
  const std::uint32_t resizes = XCB_EVENT_MASK_STRUCTURE_NOTIFY;
  xcb_change_window_attributes(display_.control.get(), display_.screen->root, XCB_CW_EVENT_MASK, &resizes);
  select_input(false);
  // Not before: what is plugged in from now on is told.
  devices_.refresh();
  catch_up_with_control_keys();
  program_.heartbeat.restart();
  obey(exchange_.take_orders());
  sync(display_.control.get());
}

bool Session::run() {
  for (;;) {
    const Exchange::Orders orders = exchange_.take_orders();
    obey(orders);
    while (work()) continue;
    look_after_program();
    if (guard_.revive()) guard_.watch(wanted_ ? display_.window : xcb_window_t{XCB_WINDOW_NONE});
    xcb_flush(display_.control.get());
    if (orders.quit || !display_.alive()) {
      leave();
      return orders.quit;
    }
    // Sending reads as well: what came then would not end the sleep.
    if (handle_events()) continue;
    std::array<pollfd, 4> waits{{{xcb_get_file_descriptor(display_.control.get()), POLLIN, 0},
                                 {xcb_get_file_descriptor(display_.data.get()), POLLIN, 0},
                                 {exchange_.wake_descriptor(), POLLIN, 0},
                                 {guard_.descriptor(), POLLIN, 0}}};
    poll(waits.data(), waits.size(), time_to_sleep());
    end_lift();
  }
}

void Session::obey(const Exchange::Orders& orders) {
  if (orders.interrupted || orders.quit) perform(gesture_.stop());
  stopped_ = orders.stopped || orders.quit;
  hold_button();
}

// A program that hangs would let every stroke come to nothing: the button is the user's until it answers.
void Session::look_after_program() {
  Heartbeat& heartbeat = program_.heartbeat;
  const Heartbeat::Time now = Clock::now();
  // Somebody who only holds the button is there, too.
  if (gesture_.holding()) heartbeat.user_is_about(now);
  if (!stopped_ && heartbeat.take_question(now)) tell_program(display_.atoms.question, {display_.window});
  hung_ = heartbeat.hung(now);
  if (hung_) perform(gesture_.stop());
  hold_button();
}

void Session::hold_button() {
  const bool wanted = !stopped_ && !hung_;
  if (wanted == wanted_) return;
  wanted_ = wanted;
  if (!wanted_) return give_button_up();
  guard_.watch(display_.window);
  grab_.want(true);
}

// The guard watches as long as the server may freeze a press for us, or has frozen one that is still on its way.
void Session::give_button_up() {
  grab_.want(false);
  sync(display_.control.get());
  while (work()) continue;
  sync(display_.control.get());
  guard_.watch(XCB_WINDOW_NONE);
}

// In milliseconds; -1 for as long as nothing comes.
int Session::time_to_sleep() const {
  const Clock::time_point now = Clock::now();
  std::optional<Clock::time_point> next = program_.heartbeat.next_look(now);
  if (stopped_ && !hung_) next.reset();
  if (lift_end_ && (!next || *lift_end_ < *next)) next = lift_end_;
  if (gesture_.drawing() && path_.has_undrawn() && (!next || next_draw_ < *next)) next = next_draw_;
  if (const auto retry = guard_.next_try(); retry && (!next || *retry < *next)) next = retry;
  if (!next) return -1;
  const auto left = std::chrono::ceil<std::chrono::milliseconds>(*next - now).count();
  return static_cast<int>(std::max<long>(left, 0));
}

// Does what has come in. False if there was nothing: only then may the thread sleep, since every answer that is waited
// for may bring events along.
bool Session::work() {
  bool any = handle_events();
  if (std::exchange(moved_, false) && (gesture_.drawing() || gesture_.lifted())) {
    // The server keeps what it records until it has reason to look at its clients: this is one.
    const Clock::time_point asked = Clock::now();
    sync(display_.control.get());
    answer_time_ = Clock::now() - asked;
    any = true;
  }
  any |= take_recording();
  if (guard_.asked()) {
    // It asks because of a press. The answer must not say that there is no drawing while one is about to begin.
    sync(display_.control.get());
    handle_events();
    guard_.answer(gesture_.holding());
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
  bool any = recording_.take([this](const Sample& sample, Recording::Kind kind) { taken_.emplace_back(sample, kind); });
  const bool buttons =
      std::any_of(taken_.begin(), taken_.end(), [](const auto& one) { return one.second != Recording::Kind::motion; });
  if (buttons) {
    // The events that tell whose buttons these were come first. They may begin the next drawing, to which nothing of
    // this belongs.
    sync(display_.control.get());
    handle_events();
  }
  follow_path();
  draw_trail();
  if (gesture_.lifted() && (path_.ended() || recording_.finished())) perform(gesture_.stays_up());
  if (gesture_.finishing() && recording_.finished()) {
    conclude();
    any = true;
  }
  return any;
}

void Session::follow_path() {
  for (const auto& [sample, kind] : taken_) {
    if (!gesture_.holding()) break;
    path_.take(sample, kind);
  }
  taken_.clear();
  heed_bounces();
}

void Session::heed_bounces() {
  const std::vector<std::uint32_t> bounces = path_.take_bounces();
  for (const std::uint32_t press_ms : bounces) gesture_.bounced(press_ms);
  if (bounces.empty() || !gesture_.drawing()) return;
  lift_end_.reset();
  begin_trail();
  path_.draw_anew();
}

// As often as a screen shows it, and less often where the server has trouble to keep up: it must not fall so far behind
// that this thread, which waits for it, no longer answers the guard.
void Session::draw_trail() {
  const Clock::time_point now = Clock::now();
  if (!gesture_.drawing() || !path_.has_undrawn() || now < next_draw_) return;
  trail_.extend(path_.take_undrawn());
  next_draw_ = now + std::max<Clock::duration>(trail_interval, 4 * answer_time_);
}

// When the button has been up for so long that it did not bounce.
void Session::end_lift() {
  if (!lift_end_ || Clock::now() < *lift_end_) return;
  // This thread may have been kept from looking in time.
  sync(display_.control.get());
  while (work()) continue;
  if (!lift_end_ || Clock::now() < *lift_end_) return;
  if (gesture_.down_again()) {
    // Before the server began to record, or that would have told.
    path_.catch_up();
    heed_bounces();
  }
  perform(gesture_.stays_up());
}

void Session::leave() {
  perform(gesture_.stop());
  trail_.end();
  stopped_ = true;
  hold_button();
}

void Session::handle(const xcb_generic_event_t& event) {
  switch (event.response_type & 0x7f) {
    case XCB_BUTTON_PRESS: {
      const auto& press = reinterpret_cast<const xcb_button_press_event_t&>(event);
      if (press.detail != ButtonGrab::button) break;
      if ((press.state & other_buttons) != 0) {
        // Beside another button the server freezes none: this came by the grab that outlasts a dropped drawing.
        xcb_allow_events(display_.control.get(), XCB_ALLOW_REPLAY_POINTER, press.time);
        break;
      }
      press_ = {static_cast<double>(press.root_x), static_cast<double>(press.root_y), press.time};
      perform(gesture_.frozen_press(press.time, wanted_ && (press.state & XCB_MOD_MASK_CONTROL) == 0));
      break;
    }
    case XCB_BUTTON_RELEASE:
      end_outlasting_grab(reinterpret_cast<const xcb_button_release_event_t&>(event));
      break;
    case XCB_DESTROY_NOTIFY: {
      const xcb_window_t window = reinterpret_cast<const xcb_destroy_notify_event_t&>(event).window;
      grab_.window_destroyed(window);
      trail_.window_gone(window);
      break;
    }
    case XCB_CLIENT_MESSAGE:
      handle_message(reinterpret_cast<const xcb_client_message_event_t&>(event));
      break;
    case XCB_CONFIGURE_NOTIFY:
      handle_resize(reinterpret_cast<const xcb_configure_notify_event_t&>(event));
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

// The button that drew is up, but the server leaves us the pointer until all are: what is done beside the one that
// dropped the drawing is the application's. The time keeps this from a press that was frozen since.
void Session::end_outlasting_grab(const xcb_button_release_event_t& release) {
  if (release.detail != ButtonGrab::button || gesture_.holding() || !gesture_.others_held()) return;
  xcb_ungrab_pointer(display_.control.get(), release.time);
}

void Session::handle_input(const xcb_ge_generic_event_t& event) {
  const auto& button = reinterpret_cast<const xcb_input_raw_button_press_event_t&>(event);
  const auto& key = reinterpret_cast<const xcb_input_raw_key_press_event_t&>(event);
  const Contact contact{button.sourceid, button.detail};
  if (event.event_type == XCB_INPUT_HIERARCHY) return handle_devices(event);
  // Each event comes twice, from its device and from the master that unites them. The master's, too, are withheld while
  // the pointer is frozen, and a device that is attached to no master does not count.
  if (button.deviceid != button.sourceid || !devices_.is_attached(button.sourceid)) return;
  if (event.event_type == XCB_INPUT_RAW_MOTION) {
    moved_ = true;
    return;
  }
  program_.heartbeat.user_is_about(Clock::now());
  switch (event.event_type) {
    case XCB_INPUT_RAW_BUTTON_PRESS: {
      const Step step = gesture_.button_down(contact, button.time);
      if (step.lift) path_.told(button.time, Recording::Kind::press);
      perform(step);
      break;
    }
    case XCB_INPUT_RAW_BUTTON_RELEASE: {
      const Step step = gesture_.button_up(contact);
      if (step.lift) path_.told(button.time, Recording::Kind::release);
      perform(step);
      break;
    }
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
  // The application gets the Escape, too: to keep it back the keyboard would have to be taken, from under the user's
  // hands and perhaps from a menu that has it.
  if (down && keyboard_.is_escape(code)) perform(gesture_.escape());
  if (keyboard_.is_control(code) && down) {
    perform(gesture_.control());
    if (program_.control_keys.down(source, code)) report(hook_key_down, key_control);
  } else if (!down && program_.control_keys.up(source, code)) {
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
    if (program_.control_keys.device_gone(device.data->deviceid)) report(hook_key_up, key_control);
  }
  devices_.refresh();
}

// The program's answer.
void Session::handle_message(const xcb_client_message_event_t& message) {
  if (message.type == display_.atoms.question) program_.heartbeat.answered();
}

void Session::handle_resize(const xcb_configure_notify_event_t& change) {
  if (change.window == display_.screen->root) trail_.resize(change.width, change.height);
}

void Session::perform(Step step) {
  if (step.begin) begin_drawing();
  if (step.end) {
    recording_.end();
    select_input(false);
    lift_end_.reset();
  }
  if (step.lift) {
    lift_end_ = Clock::now() + std::chrono::milliseconds(bounce_ms);
    moved_ = true;
    // Whoever lets go wants to see what is below, and not to wait for it.
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
  taken_.clear();
  next_draw_ = {};
  recording_.begin();
  select_input(true);
  begin_trail();
  path_.begin(press_, density_);
  // Whatever moved before the raw events were selected lies in the recording with nothing to fetch it.
  moved_ = true;
}

// Asks anew each time: since the press, or since the trail was taken off, the compositing manager may have gone.
void Session::begin_trail() {
  SurroundingsQuestion question(display_);
  const Surroundings surroundings = question.answer();
  density_ = surroundings.density;
  trail_.begin(surroundings, {press_.x, press_.y});
}

void Session::conclude() {
  std::optional<std::vector<point_hook>> points = sample_stroke(path_.samples(), density_);
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
  trail_.end();
}

void Session::report(int direction, int key) {
  tell_program(display_.atoms.report, {static_cast<std::uint32_t>(direction), static_cast<std::uint32_t>(key)});
}

void Session::tell_program(xcb_atom_t type, std::array<std::uint32_t, 2> data) {
  xcb_client_message_event_t message{};
  message.response_type = XCB_CLIENT_MESSAGE;
  message.format = 32;
  message.window = program_.window;
  message.type = type;
  std::copy(data.begin(), data.end(), message.data.data32);
  // With no event mask it goes to the client that made the window.
  xcb_send_event(display_.control.get(), 0, program_.window, XCB_EVENT_MASK_NO_EVENT,
                 reinterpret_cast<const char*>(&message));
}

void Session::select_input(bool motion) {
  const InputSelection selection{{XCB_INPUT_DEVICE_ALL, 1}, motion ? drawing_mask : idle_mask};
  xcb_input_xi_select_events(display_.control.get(), display_.screen->root, 1, &selection.head);
}

// A Ctrl key that came up while there was no connection must not leave the program stopped.
void Session::catch_up_with_control_keys() {
  if (!program_.control_keys.any() || keyboard_.control_is_down()) return;
  program_.control_keys.clear();
  report(hook_key_up, key_control);
}

}  // namespace hooklib
