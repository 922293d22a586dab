// The tick counter and the blocking sleep.
#pragma once

#include <chrono>

#include "platform/services.h"

namespace desktop {

class DesktopClock final : public platform::Clock {
 public:
  std::int32_t GetTickCount() override;
  void Sleep(int milliseconds) override;

 private:
  const std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
};

}  // namespace desktop
