#include "hooklib/path.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "hooklib/gesture.h"

namespace hooklib {
namespace {

// The trail appears once the pointer is this far from the press. Pixels at 96 dpi.
constexpr double trail_begin = 4.0;
// A switch that bounces does so where it is; a press farther away is another one. Pixels at 96 dpi.
constexpr double bounce_radius = 8.0;
// A switch has come to rest this long after the press. What goes on like that is a program that clicks without a pause.
constexpr std::uint32_t settle_ms = 100;

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
  down_ms_ = press.time_ms;
  told_.clear();
  undecided_.clear();
  doubtful_.clear();
  bounces_.clear();
  undrawn_.clear();
}

void DrawnPath::take(const Sample& sample, Recording::Kind kind) {
  // What would have been recorded by now was not.
  while (!told_.empty() && later(sample.time_ms, told_.front().time_ms) > 0) follow_unrecorded();
  if (kind == Recording::Kind::motion) {
    const bool undecided = !told_.empty() && told_.front().time_ms == sample.time_ms;
    return undecided ? undecided_.push_back(sample) : follow(sample, kind);
  }
  const auto same = [&](const Change& one) { return one.time_ms == sample.time_ms && one.kind == kind; };
  if (const auto change = std::find_if(told_.begin(), told_.end(), same); change != told_.end()) {
    for (auto before = change - told_.begin(); before > 0; --before) follow_unrecorded();
    told_.pop_front();
  }
  follow_undecided();
  follow(sample, kind);
}

void DrawnPath::catch_up() {
  while (!told_.empty()) follow_unrecorded();
}

// The first change that was told, made where the way had come to, and then what may have come after it.
void DrawnPath::follow_unrecorded() {
  const Change change = told_.front();
  told_.pop_front();
  Sample sample = samples().back();
  sample.time_ms = change.time_ms;
  follow(sample, change.kind);
  if (told_.empty() || told_.front().time_ms != change.time_ms) follow_undecided();
}

void DrawnPath::follow_undecided() {
  for (const Sample& sample : std::exchange(undecided_, {})) follow(sample, Recording::Kind::motion);
}

void DrawnPath::follow(const Sample& sample, Recording::Kind kind) {
  if (ended_) return;
  if (lifted_) return follow_lifted(sample, kind);
  add(sample);
  // No other button can be down: a press of one would have ended the drawing.
  lifted_ = kind == Recording::Kind::release;
  lift_ = sample;
  // A click is handed on at once, bounces and all, as it would be without us. No hand is so fast as a switch that
  // bounces.
  const bool bouncing = sample.time_ms - down_ms_ <= bounce_ms && sample.time_ms - press_.time_ms <= settle_ms;
  ended_ = lifted_ && !bouncing && is_click(recorder_.samples(), density_);
}

void DrawnPath::follow_lifted(const Sample& sample, Recording::Kind kind) {
  const bool near = distance(sample, lift_) <= bounce_radius * density_ && sample.time_ms - lift_.time_ms <= bounce_ms;
  ended_ = !near || kind == Recording::Kind::release;
  if (ended_) return;
  doubtful_.push_back(sample);
  if (kind == Recording::Kind::motion) return;
  lifted_ = false;
  down_ms_ = sample.time_ms;
  bounces_.push_back(sample.time_ms);
  add_doubtful();
}

std::vector<std::uint32_t> DrawnPath::take_bounces() {
  return std::exchange(bounces_, {});
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

void DrawnPath::draw_anew() {
  undrawn_.clear();
  if (!away_) return;
  for (const Sample& sample : samples()) undrawn_.push_back({sample.x, sample.y});
}

}  // namespace hooklib
