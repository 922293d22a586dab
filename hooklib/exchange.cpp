#include "hooklib/exchange.h"

#include <sys/eventfd.h>
#include <unistd.h>

#include <algorithm>
#include <cassert>
#include <utility>

namespace hooklib {

Exchange::Exchange() : wake_(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {}

Exchange::~Exchange() {
  if (wake_ >= 0) close(wake_);
}

void Exchange::wake() const {
  const std::uint64_t one = 1;
  // Can fail only when it is full of wake-ups already.
  [[maybe_unused]] const ssize_t written = write(wake_, &one, sizeof one);
}

void Exchange::set_stopped(bool stopped) {
  const std::lock_guard lock(mutex_);
  orders_.stopped = stopped;
  orders_.interrupted |= stopped;
  wake();
}

void Exchange::ask_to_quit() {
  const std::lock_guard lock(mutex_);
  orders_.quit = true;
  wake();
}

void Exchange::copy_stroke(point_hook* points, std::int32_t* count) {
  const std::lock_guard lock(mutex_);
  if (stroke_.empty()) return;
  std::copy(stroke_.begin(), stroke_.end(), points);
  *count = static_cast<std::int32_t>(stroke_.size());
}

Exchange::Orders Exchange::take_orders() {
  const std::lock_guard lock(mutex_);
  std::uint64_t wakes = 0;
  [[maybe_unused]] const ssize_t taken = read(wake_, &wakes, sizeof wakes);
  return std::exchange(orders_, Orders{.stopped = orders_.stopped, .quit = orders_.quit});
}

bool Exchange::publish(std::vector<point_hook> points, const std::function<void()>& report) {
  assert(points.size() <= hook_max_points);
  const std::lock_guard lock(mutex_);
  if (orders_.stopped || orders_.interrupted || orders_.quit) return false;
  stroke_ = std::move(points);
  report();
  return true;
}

}  // namespace hooklib
