#include "desktop/signals.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

namespace desktop {

namespace {

// The pipe by which the signal handler, in which next to nothing is allowed, wakes the event loop.
int pipe_ends[2] = {-1, -1};

extern "C" void note_signal(int /*number*/) {
  const int saved = errno;
  const char byte = 0;
  // A full pipe holds enough wake-ups already.
  [[maybe_unused]] const auto written = write(pipe_ends[1], &byte, 1);
  errno = saved;
}

}  // namespace

TerminationSignals::TerminationSignals(std::function<void()> asked) {
  if (pipe2(pipe_ends, O_CLOEXEC | O_NONBLOCK) != 0) return;  // the signals keep their own effect
  notifier_ = std::make_unique<QSocketNotifier>(pipe_ends[0], QSocketNotifier::Read);
  QObject::connect(notifier_.get(), &QSocketNotifier::activated, [asked = std::move(asked)] {
    std::array<char, 64> bytes{};
    while (read(pipe_ends[0], bytes.data(), bytes.size()) > 0) {
    }
    asked();
  });
  struct sigaction action {};
  action.sa_handler = note_signal;
  action.sa_flags = SA_RESTART;
  sigemptyset(&action.sa_mask);
  for (std::size_t i = 0; i < watched_.size(); ++i) {
    sigaction(watched_[i], nullptr, &former_[i]);
    if (former_[i].sa_handler != SIG_IGN) sigaction(watched_[i], &action, nullptr);
  }
}

TerminationSignals::~TerminationSignals() {
  if (!notifier_) return;
  for (std::size_t i = 0; i < watched_.size(); ++i) sigaction(watched_[i], &former_[i], nullptr);
  notifier_.reset();
  for (int& end : pipe_ends) close(std::exchange(end, -1));
}

}  // namespace desktop
