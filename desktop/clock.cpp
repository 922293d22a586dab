#include "desktop/clock.h"

#include <thread>

namespace desktop {

// What the counter shows when the program starts: well above every interval that the program measures from 0, and not
// the machine's own running time, which may be short.
static constexpr std::int64_t first_tick = 1'000'000;

std::int32_t DesktopClock::GetTickCount() {
  const auto running =
      std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() - start_).count();
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(first_tick + running));
}

void DesktopClock::Sleep(int milliseconds) {
  std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
}

}  // namespace desktop
