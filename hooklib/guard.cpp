#include "hooklib/guard.h"

#include <dlfcn.h>
#include <fcntl.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <string>

#include "hooklib/guard_protocol.h"

namespace hooklib {
namespace {

constexpr const char* guard_name = "strokemind-guard";
// A guard that has not come up after this time is given up.
constexpr std::chrono::milliseconds start_limit(2000);
// One that is gone is not started more often than this.
constexpr std::chrono::steady_clock::duration restart_interval = std::chrono::seconds(1);
// The longest pause after starts that failed.
constexpr std::chrono::steady_clock::duration longest_pause = std::chrono::minutes(1);

// The guard's program, beside the library that this code is part of; empty if that cannot be told.
std::string guard_path() {
  Dl_info info{};
  static const char anchor = 0;
  if (dladdr(&anchor, &info) == 0 || info.dli_fname == nullptr) return {};
  const std::string library = info.dli_fname;
  const std::size_t slash = library.rfind('/');
  return (slash == std::string::npos ? "./" : library.substr(0, slash + 1)) + guard_name;
}

// A plain copy of this process. Unlike fork() it sends no signal when it ends, and a program that waits for its own
// children never meets it.
pid_t silent_fork() {
  return static_cast<pid_t>(syscall(SYS_clone, 0L, nullptr, nullptr, nullptr, nullptr));
}

// In the copy: only system calls from here on, since other threads may have held any lock when it was made.
[[noreturn]] void become_guard(const char* path, int socket) {
  // A stop or an interrupt from the terminal is meant for the program, and must not hit its guard.
  setsid();
  if (silent_fork() != 0) _exit(0);
  if (socket == guard_descriptor) {
    fcntl(socket, F_SETFD, 0);
  } else {
    dup2(socket, guard_descriptor);
  }
  const std::array<const char*, 2> arguments{guard_name, nullptr};
  execv(path, const_cast<char* const*>(arguments.data()));
  _exit(1);
}

void send_message(int socket, GuardMessage message) {
  // A guard that is gone is noticed where its questions are read.
  [[maybe_unused]] const ssize_t sent = send(socket, &message, sizeof message, MSG_DONTWAIT | MSG_NOSIGNAL);
}

}  // namespace

Guard::~Guard() {
  if (socket_ >= 0) send_message(socket_, {GuardMessage::Kind::farewell, 0});
  stop();
}

void Guard::stop() {
  if (socket_ >= 0) close(socket_);
  socket_ = -1;
}

void Guard::start() {
  if (socket_ >= 0) return;
  wanted_ = true;
  launch();
  if (socket_ < 0) return;
  pollfd wait{socket_, POLLIN, 0};
  poll(&wait, 1, static_cast<int>(start_limit.count()));
  asked();
  if (socket_ >= 0 && !ready_) lose();
}

void Guard::launch() {
  ready_ = false;
  started_ = Clock::now();
  const std::string path = guard_path();
  installed_ = !path.empty() && access(path.c_str(), X_OK) == 0;
  std::array<int, 2> ends{};
  if (!installed_ || socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends.data()) != 0) return lose();
  const pid_t child = silent_fork();
  if (child == 0) become_guard(path.c_str(), ends[1]);
  close(ends[1]);
  socket_ = ends[0];
  // The copy in between is gone as soon as it has made the guard, which then belongs to nobody here.
  while (child > 0 && waitpid(child, nullptr, __WCLONE) < 0 && errno == EINTR) continue;
  if (child < 0) lose();
}

// It is gone, or has not come up.
void Guard::lose() {
  stop();
  pause_ = ready_ ? restart_interval : std::clamp(2 * pause_, restart_interval, longest_pause);
  next_try_ = (ready_ ? started_ : Clock::now()) + pause_;
}

bool Guard::revive() {
  if (socket_ >= 0 && !ready_ && Clock::now() >= started_ + start_limit) lose();
  if (!wanted_ || socket_ >= 0 || Clock::now() < next_try_) return false;
  launch();
  return socket_ >= 0;
}

std::optional<std::chrono::steady_clock::time_point> Guard::next_try() const {
  if (socket_ >= 0) return ready_ ? std::nullopt : std::optional(started_ + start_limit);
  return wanted_ && installed_ ? std::optional(next_try_) : std::nullopt;
}

void Guard::watch(xcb_window_t resource) {
  if (socket_ >= 0) send_message(socket_, {GuardMessage::Kind::watch, resource});
}

bool Guard::asked() {
  bool pinged = false;
  GuardMessage message{};
  while (socket_ >= 0) {
    const ssize_t size = recv(socket_, &message, sizeof message, MSG_DONTWAIT);
    if (size == 0) lose();
    if (size != static_cast<ssize_t>(sizeof message)) break;
    ready_ |= message.kind == GuardMessage::Kind::ready;
    pinged |= message.kind == GuardMessage::Kind::ping;
  }
  return pinged;
}

void Guard::answer(bool drawing) {
  if (socket_ >= 0) send_message(socket_, {GuardMessage::Kind::pong, drawing ? 1U : 0U});
}

}  // namespace hooklib
