// The way of the pointer from the press to the release that ends the drawing, told from what the server recorded. A
// worn switch lets go for a moment: only what follows a release tells whether it was the last.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "hooklib/recording.h"
#include "hooklib/sampler.h"
#include "hooklib/trail.h"

namespace hooklib {

class DrawnPath {
 public:
  void begin(Sample press, double density);

  // The button came up at this time. The server may have begun to record after that: then the way ends here, although
  // no release is recorded.
  void released(std::uint32_t time_ms) { released_ms_ = time_ms; }

  enum class News {
    none,
    bounced,  // the button is down again and the way goes on; the press was at samples().back()
    ended,    // the way ended with the release
  };
  // The next thing recorded. After the end nothing is taken in any more.
  News take(const Sample& sample, Recording::Kind kind);

  std::span<const Sample> samples() const { return recorder_.samples(); }
  // What is new for the trail since the last time: nothing as long as the pointer has not left the press, so that a
  // click that trembles shows nothing.
  std::vector<TrailPoint> take_undrawn();
  bool has_undrawn() const { return !undrawn_.empty(); }

 private:
  void add(const Sample& sample);
  void add_doubtful();
  News take_unreleased(const Sample& sample);
  News take_lifted(const Sample& sample, Recording::Kind kind);

  Recorder recorder_;
  Sample press_{};
  double density_ = normal_density;
  bool away_ = false;    // from the press, so far that the trail shows
  bool lifted_ = false;  // since `lift_`, a release that may not have been the last
  bool ended_ = false;
  Sample lift_{};
  std::optional<std::uint32_t> released_ms_;
  std::vector<Sample> doubtful_;  // perhaps made after the end
  std::vector<TrailPoint> undrawn_;
};

}  // namespace hooklib
