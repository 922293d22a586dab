// From the release of the right button to the first key event at the window that has the keyboard: the whole program on
// a private X server, 200 gestures. Takes about three minutes, since strokes closer than 700 ms are not recognised.

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <thread>
#include <vector>

#include "bench/key_target.h"
#include "stage/desk.h"

namespace {

using Clock = std::chrono::steady_clock;

constexpr auto apart = std::chrono::milliseconds(760);

double milliseconds(Clock::duration duration) {
  return std::chrono::duration<double, std::milli>(duration).count();
}

}  // namespace

int main(int argc, char** argv) {
  const int gestures = argc > 1 ? std::atoi(argv[1]) : 200;
  const stage::Path corner = {{200, 300}, {200, 500}, {420, 500}};
  stage::Desk desk(PROGRAM_FOLDER, stage::section("COIN", corner, "T:a"));
  desk.start();
  if (!desk.program.running()) return 1;
  KeyTarget target(desk.server);
  std::vector<double> times;
  for (int n = 0; n < gestures; ++n) {
    std::this_thread::sleep_for(apart);
    // Each time: the main window comes up at the start and may be given the keyboard late.
    target.take_keyboard();
    if (!desk.user.begin_stroke(3, corner[0].first, corner[0].second)) return 1;
    for (const auto& [x, y] : stage::along(corner)) desk.user.move_to(x, y);
    target.forget();
    const auto start = Clock::now();
    desk.user.release(3);
    if (!target.wait_for_key()) {
      std::printf("gesture %d: no key has come\n", n + 1);
      return 1;
    }
    times.push_back(milliseconds(Clock::now() - start));
  }
  std::sort(times.begin(), times.end());
  const auto part = [&](double p) {
    return times[static_cast<std::size_t>(p * static_cast<double>(times.size() - 1))];
  };
  std::printf(
      "release to first key at the target, %zu gestures: median %.2f ms, 99th percentile %.2f ms, max %.2f ms\n",
      times.size(), part(0.5), part(0.99), times.back());
  return 0;
}
