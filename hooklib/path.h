// The way of the pointer from the press to the release that ends the drawing, told from what the server recorded. A
// worn switch lets go for a moment: only what follows a release tells whether it was the last.
#pragma once

#include <cstdint>
#include <deque>
#include <span>
#include <vector>

#include "hooklib/recording.h"
#include "hooklib/sampler.h"
#include "hooklib/trail.h"

namespace hooklib {

class DrawnPath {
 public:
  void begin(Sample press, double density);

  // The button came up or went down again at this time. To be told in order, and before what is recorded of it. The
  // server may have begun to record after that: then it was where the way had come to.
  void told(std::uint32_t time_ms, Recording::Kind kind) { told_.push_back({time_ms, kind}); }

  // The next thing recorded. After the end nothing is taken in any more.
  void take(const Sample& sample, Recording::Kind kind);
  // All that was recorded up to now has been taken, and the button is down again as far as was told.
  void catch_up();

  // The way ended with a release.
  bool ended() const { return ended_; }
  // When the button went down again and the way went on, since the last time this was asked.
  std::vector<std::uint32_t> take_bounces();

  std::span<const Sample> samples() const { return recorder_.samples(); }
  // What is new for the trail since the last time: nothing as long as the pointer has not left the press, so that a
  // click that trembles shows nothing.
  std::vector<TrailPoint> take_undrawn();
  bool has_undrawn() const { return !undrawn_.empty(); }
  // The trail has been taken off: all of it is new again.
  void draw_anew();

 private:
  // What the button did, as the devices tell it.
  struct Change {
    std::uint32_t time_ms;
    Recording::Kind kind;
  };

  void add(const Sample& sample);
  void add_doubtful();
  void follow(const Sample& sample, Recording::Kind kind);
  void follow_lifted(const Sample& sample, Recording::Kind kind);
  void follow_unrecorded();
  void follow_undecided();

  Recorder recorder_;
  Sample press_{};
  double density_ = normal_density;
  bool away_ = false;    // from the press, so far that the trail shows
  bool lifted_ = false;  // since `lift_`, a release that may not have been the last
  bool ended_ = false;
  Sample lift_{};
  std::uint32_t down_ms_ = 0;      // when the button went down last
  std::deque<Change> told_;        // and not recorded, or not yet
  std::vector<Sample> undecided_;  // motion within the millisecond of the first of these: before it or after
  std::vector<Sample> doubtful_;   // perhaps made after the end
  std::vector<std::uint32_t> bounces_;
  std::vector<TrailPoint> undrawn_;
};

}  // namespace hooklib
