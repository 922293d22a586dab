#include "desktop/events.h"

#include <QCoreApplication>
#include <utility>

namespace desktop {

// How long one DoEvents may go on when serving events makes new ones all the time, milliseconds.
static constexpr int longest_yield = 20;

DesktopEvents::DesktopEvents() {
  // A timer of no duration fires when nothing else waits.
  idle_.setSingleShot(true);
  idle_.setInterval(0);
  connect(&idle_, &QTimer::timeout, this, [this] { run_next(); });
}

void DesktopEvents::DoEvents() {
  // Windows that were closed meanwhile go here too: what was put off inside a handler is deleted as soon as a loop
  // outside of that handler is back, and never under the feet of one that still runs.
  if (!ended_) QCoreApplication::processEvents(QEventLoop::AllEvents, longest_yield);
}

void DesktopEvents::post(std::function<void()> task) {
  tasks_.push_back(std::move(task));
  wake();
}

void DesktopEvents::wake() {
  if (!tasks_.empty() && holds_ == 0 && !ended_) idle_.start();
}

void DesktopEvents::run_next() {
  if (tasks_.empty() || holds_ > 0 || ended_) return;
  const auto task = std::move(tasks_.front());
  tasks_.pop_front();
  // The task may yield in turn: what waits behind it must not wait for its end.
  wake();
  task();
}

void DesktopEvents::End(int status) {
  if (ended_) return;
  ended_ = true;
  status_ = status;
  tasks_.clear();
  QCoreApplication::exit(status);
}

}  // namespace desktop
