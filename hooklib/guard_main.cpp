// The guard of the hook: frees the pointer when the process that holds it stands still. See guard.h.
#include <fcntl.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>
#include <xcb/xcb.h>
#include <xcb/xinput.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <memory>
#include <optional>

#include "hooklib/guard_protocol.h"

namespace {

using hooklib::guard_descriptor;
using hooklib::GuardMessage;
using Clock = std::chrono::steady_clock;

// A hook that has not answered for so long hangs. With what the rest takes, the button is back within a second.
constexpr auto patience = std::chrono::milliseconds(600);
// While a drawing is in progress the hook is asked this often.
constexpr auto interval = std::chrono::milliseconds(200);

struct Free {
  void operator()(void* block) const { std::free(block); }
};
using Event = std::unique_ptr<xcb_generic_event_t, Free>;

class Watch {
 public:
  explicit Watch(xcb_connection_t* display) : display_(display) {}

  // True until there is nothing left to guard.
  bool step() {
    std::array<pollfd, 2> waits{{{xcb_get_file_descriptor(display_), POLLIN, 0}, {guard_descriptor, POLLIN, 0}}};
    poll(waits.data(), waits.size(), timeout_ms());
    // What the hook has said counts before the clock does.
    if (!hear_hook()) return false;
    while (const Event event{xcb_poll_for_event(display_)}) see(*event);
    if (deadline_ && Clock::now() >= *deadline_) cut();
    if (next_ping_ && Clock::now() >= *next_ping_) ping();
    xcb_flush(display_);
    return xcb_connection_has_error(display_) == 0;
  }

 private:
  int timeout_ms() const {
    const std::optional<Clock::time_point> next = deadline_ ? deadline_ : next_ping_;
    if (!next) return -1;
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(*next - Clock::now()).count();
    return static_cast<int>(std::max<long>(left, 0));
  }

  bool hear_hook() {
    for (;;) {
      GuardMessage message{};
      const ssize_t size = recv(guard_descriptor, &message, sizeof message, MSG_DONTWAIT);
      if (size == 0) return false;
      if (size != static_cast<ssize_t>(sizeof message)) return true;
      deadline_.reset();
      next_ping_.reset();
      if (message.kind == GuardMessage::Kind::watch) guarded_ = message.value;
      if (message.kind == GuardMessage::Kind::pong && message.value != 0) next_ping_ = Clock::now() + interval;
    }
  }

  // Any press, of any device, may be one that the server has just frozen for the hook. The wheel never is.
  void see(const xcb_generic_event_t& event) {
    if ((event.response_type & 0x7f) != XCB_GE_GENERIC) return;
    const auto& press = reinterpret_cast<const xcb_input_raw_button_press_event_t&>(event);
    if (press.event_type == XCB_INPUT_RAW_BUTTON_PRESS && (press.detail < 4 || press.detail > 7)) ping();
  }

  void ping() {
    next_ping_.reset();
    if (guarded_ == 0 || deadline_) return;
    const GuardMessage message{GuardMessage::Kind::ping, 0};
    // A hook that does not even read gets no answer out in time either.
    [[maybe_unused]] const ssize_t sent = send(guard_descriptor, &message, sizeof message, MSG_DONTWAIT | MSG_NOSIGNAL);
    deadline_ = Clock::now() + patience;
  }

  void cut() {
    xcb_kill_client(display_, guarded_);
    guarded_ = 0;
    deadline_.reset();
  }

  xcb_connection_t* display_;
  std::uint32_t guarded_ = 0;
  std::optional<Clock::time_point> deadline_;   // of the answer that is due
  std::optional<Clock::time_point> next_ping_;  // during a drawing
};

// Nothing of the program that started us is to be kept open or busy.
void part_from_program() {
  closefrom(guard_descriptor + 1);
  fcntl(guard_descriptor, F_SETFD, FD_CLOEXEC);
  const int nothing = open("/dev/null", O_RDWR);
  for (int standard = STDIN_FILENO; standard <= STDERR_FILENO; ++standard) dup2(nothing, standard);
  if (nothing > guard_descriptor) close(nothing);
  [[maybe_unused]] const int moved = chdir("/");
  sigset_t none;
  sigemptyset(&none);
  sigprocmask(SIG_SETMASK, &none, nullptr);
}

bool watch_presses(xcb_connection_t* display) {
  const xcb_query_extension_reply_t* extension = xcb_get_extension_data(display, &xcb_input_id);
  if (extension == nullptr || extension->present == 0) return false;
  std::free(xcb_input_xi_query_version_reply(display, xcb_input_xi_query_version(display, 2, 1), nullptr));
  const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(display)).data->root;
  const struct {
    xcb_input_event_mask_t head;
    std::uint32_t mask;
  } selection{{XCB_INPUT_DEVICE_ALL, 1}, XCB_INPUT_XI_EVENT_MASK_RAW_BUTTON_PRESS};
  const std::unique_ptr<xcb_generic_error_t, Free> refused(
      xcb_request_check(display, xcb_input_xi_select_events_checked(display, root, 1, &selection.head)));
  return !refused;
}

}  // namespace

int main() {
  part_from_program();
  const std::unique_ptr<xcb_connection_t, decltype(&xcb_disconnect)> display(xcb_connect(nullptr, nullptr),
                                                                             &xcb_disconnect);
  if (xcb_connection_has_error(display.get()) != 0 || !watch_presses(display.get())) return 1;
  const GuardMessage ready{GuardMessage::Kind::ready, 0};
  if (send(guard_descriptor, &ready, sizeof ready, MSG_NOSIGNAL) < 0) return 1;
  Watch watch(display.get());
  while (watch.step()) continue;
  return 0;
}
