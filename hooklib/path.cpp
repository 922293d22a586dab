#include "hooklib/path.h"

#include <cmath>
#include <utility>

#include "hooklib/gesture.h"

namespace hooklib {
namespace {

// The trail appears once the pointer is this far from the press. Pixels at 96 dpi.
constexpr double trail_begin = 4.0;
// A switch that bounces does so where it is; a press farther away is another one. Pixels at 96 dpi.
constexpr double bounce_radius = 8.0;

double distance(const Sample& a, const Sample& b) {
  return std::hypot(a.x - b.x, a.y - b.y);
}

// By how much `a` is later than `b` on a clock that wraps.
std::int32_t later(std::uint32_t a, std::uint32_t b) {
  return static_cast<std::int32_t>(a - b);
}

}  // namespace

void DrawnPath::begin(Sample press, double density) {
  recorder_.begin(press);
  press_ = press;
  density_ = density;
  away_ = lifted_ = ended_ = false;
  released_ms_.reset();
  doubtful_.clear();
  undrawn_.clear();
}

DrawnPath::News DrawnPath::take(const Sample& sample, Recording::Kind kind) {
  if (ended_) return News::none;
  if (lifted_) return take_lifted(sample, kind);
  if (kind == Recording::Kind::motion && released_ms_ && later(sample.time_ms, *released_ms_) >= 0) {
    return take_unreleased(sample);
  }
  doubtful_.push_back(sample);
  add_doubtful();
  // No other button can be down: a press of one would have ended the drawing.
  lifted_ = kind == Recording::Kind::release;
  lift_ = sample;
  // A click is handed on at once, bounces and all, as it would be without us.
  ended_ = lifted_ && is_click(recorder_.samples(), density_);
  return ended_ ? News::ended : News::none;
}

// A motion no earlier than a release that has not been seen in the recording. Within the same millisecond it may have
// been before it; then the release comes next.
DrawnPath::News DrawnPath::take_unreleased(const Sample& sample) {
  doubtful_.push_back(sample);
  ended_ = later(sample.time_ms, *released_ms_) > 0;
  return ended_ ? News::ended : News::none;
}

DrawnPath::News DrawnPath::take_lifted(const Sample& sample, Recording::Kind kind) {
  const bool near = distance(sample, lift_) <= bounce_radius * density_ && sample.time_ms - lift_.time_ms <= bounce_ms;
  ended_ = !near || kind == Recording::Kind::release;
  if (ended_) return News::ended;
  doubtful_.push_back(sample);
  if (kind == Recording::Kind::motion) return News::none;
  lifted_ = false;
  if (released_ms_ && later(*released_ms_, sample.time_ms) <= 0) released_ms_.reset();
  add_doubtful();
  return News::bounced;
}

void DrawnPath::add_doubtful() {
  for (const Sample& sample : doubtful_) add(sample);
  doubtful_.clear();
}

void DrawnPath::add(const Sample& sample) {
  recorder_.add(sample);
  away_ |= distance(sample, press_) >= trail_begin * density_;
  // Somebody may hold the button for an hour without going anywhere.
  if (away_) undrawn_.push_back({sample.x, sample.y});
}

std::vector<TrailPoint> DrawnPath::take_undrawn() {
  return std::exchange(undrawn_, {});
}

}  // namespace hooklib
