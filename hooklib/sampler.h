// What becomes of the raw motion of a stroke: which strokes are clicks, and which points of the others cross to the
// matcher. Pure arithmetic; stored patrons and new strokes rely on it staying as it is.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "platform/hook_contract.h"

namespace hooklib {

// Where the pointer was, in pixels of the whole virtual screen, and when, on the server's millisecond clock. The clock
// wraps after 49 days: only differences mean anything.
struct Sample {
  double x;
  double y;
  std::uint32_t time_ms;
};

// Points of a reported stroke. The matcher's accuracy is the same up to 64; with 32 it accepts fewer strangers.
inline constexpr int stroke_points = 32;

// A press whose extent stays below this on both axes is a click. Pixels at 96 dpi.
inline constexpr double click_extent = 20.0;

// The density of a screen of 96 dpi, the measure of all lengths above.
inline constexpr double normal_density = 1.0;

// Whether a press that went so far is a click.
bool is_click(std::span<const Sample> events, double density);

// Takes the raw samples of one press, from the press itself to the release, in order, and the screen's density (its dpi
// divided by 96). Gives the points to report, always `stroke_points` of them, or nothing if the press was a click.
std::optional<std::vector<point_hook>> sample_stroke(std::span<const Sample> events, double density);

// Gathers the samples of one press in bounded memory, however long the button stays down: when the room is used up,
// every second sample goes, and from then on only every second (fourth, eighth...) is taken in. The first and the
// newest sample are always there.
class Recorder {
 public:
  // Most samples ever held, over eight seconds of a mouse that reports a thousand times a second.
  static constexpr std::size_t capacity = 8192;

  // Forgets what was there and starts with the press.
  void begin(Sample press);
  // Takes the next sample, in order of time. Needs a press before it.
  void add(Sample sample);
  // What is held, in order; valid until the next call that changes it.
  std::span<const Sample> samples() const { return samples_; }

 private:
  void halve();

  std::vector<Sample> samples_;
  std::size_t stride_ = 1;   // one sample in so many is kept
  std::size_t pending_ = 0;  // samples taken since the last one that was kept for good
};

}  // namespace hooklib
