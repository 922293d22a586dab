// The hook and its thread.
#pragma once

#include <cstdint>
#include <future>
#include <thread>

#include "hooklib/exchange.h"
#include "hooklib/guard.h"
#include "hooklib/session.h"

namespace hooklib {

class Hook {
 public:
  // Starts to watch; reports go to the X window `window`. Back when it watches, or when it is known that it cannot.
  explicit Hook(std::uint32_t window);
  // Gives everything back and waits for the thread.
  ~Hook();
  Hook(const Hook&) = delete;
  Hook& operator=(const Hook&) = delete;

  Exchange& exchange() { return exchange_; }

 private:
  void work();
  bool pause();

  Program program_;
  Exchange exchange_;
  Guard guard_;
  std::promise<void> started_;
  std::thread thread_;
};

}  // namespace hooklib
