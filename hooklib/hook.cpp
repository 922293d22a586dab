#include "hooklib/hook.h"

#include <pthread.h>

#include <csignal>
#include <optional>
#include <system_error>
#include <utility>

#include "hooklib/display.h"

namespace hooklib {

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

void Hook::work() {
  bool first = true;
  bool quit = exchange_.wake_descriptor() < 0;
  while (!quit) {
    std::optional<Display> display = open_display();
    if (!display) break;
    guard_.start();
    Session session(std::move(*display), program_, exchange_, guard_);
    if (std::exchange(first, false)) started_.set_value();
    // A connection that was lost may have been cut by the guard while this process stood still: begin again.
    quit = session.run();
  }
  if (first) started_.set_value();
}

}  // namespace hooklib
