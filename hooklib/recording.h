// The pointer's true way while the server withholds its events.
#pragma once

#include <cstdint>
#include <functional>

#include "hooklib/display.h"
#include "hooklib/sampler.h"

namespace hooklib {

class Recording {
 public:
  // `display` must outlive this.
  explicit Recording(Display& display) : display_(display) {}

  // Starts afresh. What an earlier recording still has under way is dropped.
  void begin();
  // Asks the server to stop. What was recorded up to here comes first, then finished() is true.
  void end();
  // Where the pointer was, and whether a button, not the wheel, went down or came up there.
  enum class Kind { motion, press, release };
  using Sink = std::function<void(const Sample& sample, Kind kind)>;
  // Takes what has come, without waiting, and hands it to `sink`. True if anything came.
  bool take(const Sink& sink);

  // All that was recorded between begin() and end() has been handed on; or the server records nothing, for what reason
  // ever.
  bool finished() const { return finished_; }

 private:
  void wait_for(std::uint8_t category);

  Display& display_;
  unsigned int stream_ = 0;  // sequence number of the request whose replies the recording is; 0 if none runs
  bool open_ = false;        // the server has not yet said that the stream is at its end
  bool finished_ = false;
};

}  // namespace hooklib
