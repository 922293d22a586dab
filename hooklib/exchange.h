// What the program's thread and the hook's thread tell each other.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <mutex>
#include <vector>

#include "platform/hook_contract.h"

namespace hooklib {

class Exchange {
 public:
  Exchange();
  ~Exchange();
  Exchange(const Exchange&) = delete;
  Exchange& operator=(const Exchange&) = delete;

  // For the program's thread. None of these waits for the server.

  // Drawing is stopped, or goes on. When a stop has returned, no stroke is reported any more.
  void set_stopped(bool stopped);
  void ask_to_quit();
  // As ENVOIS_BUF_TMP.
  void copy_stroke(point_hook* points, std::int32_t* count);

  // For the hook's thread.

  // Readable when the program has asked for something; to be polled. -1 if the system had none to give.
  int wake_descriptor() const { return wake_; }
  struct Orders {
    bool stopped = false;      // the latest word
    bool interrupted = false;  // it was stopped at some time since the last look
    bool quit = false;
  };
  Orders take_orders();
  // Makes this the last finished stroke and calls `report`, unless the program has stopped drawing: then nothing
  // happens, and false is given.
  bool publish(std::vector<point_hook> points, const std::function<void()>& report);

 private:
  void wake() const;

  std::mutex mutex_;
  std::vector<point_hook> stroke_;
  Orders orders_;
  int wake_;
};

}  // namespace hooklib
