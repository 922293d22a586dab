// The guard of the hook: frees the pointer when the process that holds it stands still, and lets go of the keys that
// the program held down by injection when it stood still or died. See guard.h.
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
#include <fstream>
#include <iterator>
#include <memory>
#include <optional>
#include <string>

#include "hooklib/guard_protocol.h"
#include "hooklib/injected.h"

namespace {

using hooklib::guard_descriptor;
using hooklib::GuardMessage;
using Clock = std::chrono::steady_clock;

// A hook that has not answered for so long is in doubt.
constexpr auto patience = std::chrono::milliseconds(350);
// It may have waited for the server, as everybody does while that stands still or somebody has it grabbed. So long it
// has from when the server answers again; then it hangs. With what the rest takes, the button is back within a second.
constexpr auto grace = std::chrono::milliseconds(150);
// An answer of the server that took longer came after such a standstill. One that is always so slow gets its limit.
constexpr auto standstill = std::chrono::milliseconds(50);
constexpr int most_graces = 5;
// While a drawing is in progress, or an injected key is down, the hook is asked this often.
constexpr auto interval = std::chrono::milliseconds(150);
// The server may still be busy with what a program that died had asked for.
constexpr auto aftermath = std::chrono::milliseconds(300);

struct Free {
  void operator()(void* block) const { std::free(block); }
};
using Event = std::unique_ptr<xcb_generic_event_t, Free>;

// Whether the hook's process was stopped, and so will not answer. One that is being traced may run on at any moment.
bool hook_is_stopped() {
  ucred hook{};
  socklen_t size = sizeof hook;
  if (getsockopt(guard_descriptor, SOL_SOCKET, SO_PEERCRED, &hook, &size) != 0) return false;
  std::ifstream file("/proc/" + std::to_string(hook.pid) + "/stat");
  const std::string text(std::istreambuf_iterator<char>(file), {});
  // The state comes after the program's name, which may hold anything.
  const std::size_t name_end = text.rfind(") ");
  return name_end != std::string::npos && name_end + 2 < text.size() && text[name_end + 2] == 'T';
}

class Watch {
 public:
  explicit Watch(xcb_connection_t* display) : display_(display), injected_(display) {}

  // Selects what it needs to know.
  bool begin() const;

  // True until there is nothing left to guard.
  bool step() {
    std::array<pollfd, 2> waits{{{xcb_get_file_descriptor(display_), POLLIN, 0}, {guard_descriptor, POLLIN, 0}}};
    // Sending and asking read as well: what came then would not end the sleep.
    see_all();
    poll(waits.data(), waits.size(), timeout_ms());
    // What the hook has said counts before the clock does.
    if (!hear_hook()) return false;
    see_all();
    if (deadline_ && Clock::now() >= *deadline_) run_out();
    if (next_ping_ && Clock::now() >= *next_ping_) {
      next_ping_.reset();
      if (drawing_ || injected_.any_down()) ping();
    }
    xcb_flush(display_);
    return xcb_connection_has_error(display_) == 0;
  }

  // When the hook is gone.
  void clear_up() {
    const Clock::time_point end = Clock::now() + aftermath;
    while (!farewell_ && Clock::now() < end && xcb_connection_has_error(display_) == 0) {
      injected_.release_all();
      pollfd wait{xcb_get_file_descriptor(display_), POLLIN, 0};
      poll(&wait, 1, milliseconds_to(end));
      while (const Event event{xcb_poll_for_event(display_)}) continue;
    }
  }

 private:
  static int milliseconds_to(Clock::time_point time) {
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(time - Clock::now()).count();
    return static_cast<int>(std::max<long>(left, 0));
  }

  int timeout_ms() const {
    const std::optional<Clock::time_point> next = deadline_ ? deadline_ : next_ping_;
    return next ? milliseconds_to(*next) : -1;
  }

  bool hear_hook() {
    for (;;) {
      GuardMessage message{};
      const ssize_t size = recv(guard_descriptor, &message, sizeof message, MSG_DONTWAIT);
      if (size == 0) return false;
      if (size != static_cast<ssize_t>(sizeof message)) return true;
      deadline_.reset();
      graces_ = 0;
      next_ping_.reset();
      // What it held when it said what to watch is not known here: the press may lie before our time.
      drawing_ = message.value != 0;
      if (message.kind == GuardMessage::Kind::watch) guarded_ = message.value;
      farewell_ = message.kind == GuardMessage::Kind::farewell;
      next_ping_ = Clock::now() + interval;
    }
  }

  void see_all() {
    while (const Event event{xcb_poll_for_event(display_)}) see(*event);
  }

  // Any press, of any device, may be one that the server has just frozen for the hook. The wheel never is. A key that
  // is injected is of interest only if it stays down.
  void see(const xcb_generic_event_t& event) {
    if ((event.response_type & 0x7f) != XCB_GE_GENERIC) return;
    const auto& press = reinterpret_cast<const xcb_input_raw_button_press_event_t&>(event);
    const bool injected_key = press.event_type == XCB_INPUT_RAW_KEY_PRESS;
    if (injected_key && !deadline_ && !next_ping_) next_ping_ = Clock::now() + interval;
    const bool wheel = press.detail >= 4 && press.detail <= 7;
    if (press.event_type == XCB_INPUT_RAW_BUTTON_PRESS && !wheel && guarded_ != 0) ping();
  }

  void ping() {
    if (deadline_) return;
    if (hook_is_stopped()) return cut();
    next_ping_.reset();
    const GuardMessage message{GuardMessage::Kind::ping, 0};
    // A hook that does not even read gets no answer out in time either.
    [[maybe_unused]] const ssize_t sent = send(guard_descriptor, &message, sizeof message, MSG_DONTWAIT | MSG_NOSIGNAL);
    deadline_ = Clock::now() + patience;
  }

  void run_out() {
    if (hook_is_stopped()) return cut();
    const Clock::time_point asked = Clock::now();
    // As long as the server does nothing for anybody this waits, too.
    std::free(xcb_get_input_focus_reply(display_, xcb_get_input_focus(display_), nullptr));
    const bool in_doubt = graces_ == 0 || (Clock::now() - asked > standstill && graces_ < most_graces);
    if (!in_doubt) return cut();
    ++graces_;
    deadline_ = Clock::now() + grace;
  }

  void cut() {
    if (guarded_ != 0) xcb_kill_client(display_, guarded_);
    guarded_ = 0;
    deadline_.reset();
    graces_ = 0;
    drawing_ = false;
    injected_.release_all();
  }

  xcb_connection_t* display_;
  hooklib::Injected injected_;
  std::uint32_t guarded_ = 0;
  bool drawing_ = false;
  bool farewell_ = false;
  std::optional<Clock::time_point> deadline_;   // of the answer that is due
  int graces_ = 0;                              // by which it was put off
  std::optional<Clock::time_point> next_ping_;  // if there is reason by then
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

bool Watch::begin() const {
  struct Selection {
    xcb_input_event_mask_t head;
    std::uint32_t mask;
  };
  const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(display_)).data->root;
  const auto select = [&](std::uint16_t device, std::uint32_t mask) {
    const Selection selection{{device, 1}, mask};
    const std::unique_ptr<xcb_generic_error_t, Free> refused(
        xcb_request_check(display_, xcb_input_xi_select_events_checked(display_, root, 1, &selection.head)));
    return !refused;
  };
  // What the user types is no reason to wake.
  if (injected_.keyboard() != 0) select(injected_.keyboard(), XCB_INPUT_XI_EVENT_MASK_RAW_KEY_PRESS);
  return select(XCB_INPUT_DEVICE_ALL, XCB_INPUT_XI_EVENT_MASK_RAW_BUTTON_PRESS);
}

// Raw events come through the grabs of others for those that speak version 2.1 or later.
bool speaks_input(xcb_connection_t* display) {
  const xcb_query_extension_reply_t* extension = xcb_get_extension_data(display, &xcb_input_id);
  if (extension == nullptr || extension->present == 0) return false;
  std::free(xcb_input_xi_query_version_reply(display, xcb_input_xi_query_version(display, 2, 1), nullptr));
  return true;
}

}  // namespace

int main() {
  part_from_program();
  const std::unique_ptr<xcb_connection_t, decltype(&xcb_disconnect)> display(xcb_connect(nullptr, nullptr),
                                                                             &xcb_disconnect);
  if (xcb_connection_has_error(display.get()) != 0 || !speaks_input(display.get())) return 1;
  Watch watch(display.get());
  if (!watch.begin()) return 1;
  const GuardMessage ready{GuardMessage::Kind::ready, 0};
  if (send(guard_descriptor, &ready, sizeof ready, MSG_NOSIGNAL) < 0) return 1;
  while (watch.step()) continue;
  watch.clear_up();
  return 0;
}
