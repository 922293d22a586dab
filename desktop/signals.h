// Requests to end the process, brought to the thread that serves events.
#pragma once

#include <QSocketNotifier>
#include <array>
#include <csignal>
#include <functional>
#include <memory>

namespace desktop {

// While it lives, SIGTERM, SIGINT and SIGHUP call `asked` from the event loop instead of ending the process; a signal
// that was ignored stays so. One object at a time.
class TerminationSignals {
 public:
  explicit TerminationSignals(std::function<void()> asked);
  TerminationSignals(const TerminationSignals&) = delete;
  TerminationSignals& operator=(const TerminationSignals&) = delete;
  ~TerminationSignals();

 private:
  static constexpr std::array watched_ = {SIGTERM, SIGINT, SIGHUP};
  std::array<struct sigaction, watched_.size()> former_{};
  std::unique_ptr<QSocketNotifier> notifier_;
};

}  // namespace desktop
