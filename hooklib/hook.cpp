#include "hooklib/hook.h"

#include <poll.h>
#include <pthread.h>

#include <csignal>
#include <cstdlib>
#include <optional>
#include <system_error>
#include <utility>

#include "hooklib/display.h"

namespace hooklib {

namespace {

// A server may turn a client away for a moment, for one because it has too many. One that is gone stays gone.
constexpr int connection_tries = 6;
constexpr int pause_ms = 500;

bool display_is_named() {
  const char* const name = std::getenv("DISPLAY");
  return name != nullptr && *name != '\0';
}

}  // namespace

Hook::Hook(std::uint32_t window) {
  program_.window = window;
  // The program's signals are for its own threads; a new thread starts with the mask of the one that makes it.
  sigset_t all;
  sigset_t before;
  sigfillset(&all);
  pthread_sigmask(SIG_SETMASK, &all, &before);
  try {
    thread_ = std::thread([this] { work(); });
    pthread_setname_np(thread_.native_handle(), "strokemind-hook");
  } catch (const std::system_error&) {
    // The machine has no thread to give: the button stays the user's.
    started_.set_value();
  }
  pthread_sigmask(SIG_SETMASK, &before, nullptr);
  started_.get_future().wait();
}

Hook::~Hook() {
  exchange_.ask_to_quit();
  if (thread_.joinable()) thread_.join();
}

// False if the program meanwhile wants the hook to end.
bool Hook::pause() {
  pollfd wait{exchange_.wake_descriptor(), POLLIN, 0};
  poll(&wait, 1, pause_ms);
  return !exchange_.take_orders().quit;
}

void Hook::work() {
  bool first = true;
  int tries = connection_tries;
  bool quit = exchange_.wake_descriptor() < 0;
  while (!quit) {
    std::optional<Display> display = open_display();
    if (!display) {
      // The program must not wait for what may never come.
      if (std::exchange(first, false)) started_.set_value();
      if (--tries == 0 || !display_is_named() || !pause()) break;
      continue;
    }
    tries = connection_tries;
    guard_.start();
    Session session(std::move(*display), program_, exchange_, guard_);
    if (std::exchange(first, false)) started_.set_value();
    // A connection that was lost may have been cut by the guard while this process stood still: begin again.
    quit = session.run();
  }
  if (first) started_.set_value();
}

}  // namespace hooklib
