#include "hooklib/sampler.h"

#include <algorithm>
#include <cassert>
#include <cmath>

namespace hooklib {
namespace {

// A stroke this close to its chord, with this little extent across, was meant as a horizontal or a vertical line. The
// normaliser stretches both axes to its box and would blow the slant up to full height.
constexpr double straight_ratio = 0.94;
constexpr double slender_ratio = 0.35;

// The pointer rests, before it sets off and once it has arrived, within this part of the stroke's diagonal, in these
// bounds (pixels at 96 dpi).
constexpr double rest_ratio = 0.05;
constexpr double rest_least = 2.0;
constexpr double rest_most = 8.0;

// The normaliser looks for its minimum from 2000 downwards, and sets the maximum of a thin axis to 1: an axis that
// starts outside these bounds (pixels) would come out distorted, and is moved to begin well inside.
constexpr std::int32_t range_begin = 64;
constexpr std::int32_t range_end = 2000;
constexpr std::int32_t moved_begin = 1000;

struct Bounds {
  double low;
  double high;
  double extent() const { return high - low; }
};

Bounds bounds_of(std::span<const Sample> events, double Sample::*axis) {
  Bounds bounds{events.front().*axis, events.front().*axis};
  for (const Sample& event : events) {
    bounds.low = std::min(bounds.low, event.*axis);
    bounds.high = std::max(bounds.high, event.*axis);
  }
  return bounds;
}

double distance(const Sample& a, const Sample& b) {
  return std::hypot(b.x - a.x, b.y - a.y);
}

// Milliseconds from a to b, negative if b is earlier, across the wrap of the clock.
std::int32_t elapsed(std::uint32_t a, std::uint32_t b) {
  return static_cast<std::int32_t>(b - a);
}

double path_length(std::span<const Sample> events) {
  double length = 0;
  for (std::size_t i = 1; i < events.size(); ++i) length += distance(events[i - 1], events[i]);
  return length;
}

void straighten(std::vector<Sample>& events, const Bounds& x, const Bounds& y) {
  if (distance(events.front(), events.back()) < straight_ratio * path_length(events)) return;
  const bool lies = y.extent() < x.extent();
  const double across = lies ? y.extent() : x.extent();
  const double along = lies ? x.extent() : y.extent();
  if (across >= slender_ratio * along) return;
  double Sample::*axis = lies ? &Sample::y : &Sample::x;
  double sum = 0;
  for (const Sample& event : events) sum += event.*axis;
  const double mean = sum / static_cast<double>(events.size());
  for (Sample& event : events) event.*axis = mean;
}

// When the pointer set off from the press point and when it arrived at the release point: the first and the last
// sample farther than `radius` from either.
struct Journey {
  std::uint32_t begin;
  std::uint32_t end;
};

Journey journey_of(std::span<const Sample> events, double radius) {
  const auto leaves = [&](const Sample& sample) { return distance(events.front(), sample) > radius; };
  const auto arrives = [&](const Sample& sample) { return distance(events.back(), sample) > radius; };
  const auto begin = std::find_if(events.begin(), events.end(), leaves);
  const auto end = std::find_if(events.rbegin(), events.rend(), arrives);
  return {begin == events.end() ? events.back().time_ms : begin->time_ms,
          end == events.rend() ? events.front().time_ms : end->time_ms};
}

// How far along the stroke each sample is, from 0 to 1: half by its share of the path, half by its share of the time.
// Path alone wastes points on long sides, time alone on hesitation; corners are where both tell.
std::vector<double> progress_of(std::span<const Sample> events, double radius) {
  const Journey journey = journey_of(events, radius);
  const std::int32_t duration = elapsed(journey.begin, journey.end);
  const double length = path_length(events);
  std::vector<double> progress;
  progress.reserve(events.size());
  double travelled = 0;
  for (std::size_t i = 0; i < events.size(); ++i) {
    if (i > 0) travelled += distance(events[i - 1], events[i]);
    const double by_path = travelled / length;
    double by_time = by_path;
    if (duration > 0) {
      by_time = std::clamp(elapsed(journey.begin, events[i].time_ms), 0, duration) / static_cast<double>(duration);
    }
    progress.push_back((by_path + by_time) / 2);
  }
  return progress;
}

point_hook rounded(double x, double y) {
  return {static_cast<std::int32_t>(std::lround(x)), static_cast<std::int32_t>(std::lround(y))};
}

std::vector<point_hook> resample(std::span<const Sample> events, double radius) {
  const std::vector<double> progress = progress_of(events, radius);
  std::vector<point_hook> points;
  points.reserve(stroke_points);
  points.push_back(rounded(events.front().x, events.front().y));
  std::size_t next = 1;
  for (int k = 1; k < stroke_points - 1; ++k) {
    const double wanted = static_cast<double>(k) / (stroke_points - 1);
    while (next + 1 < events.size() && progress[next] < wanted) ++next;
    const Sample& a = events[next - 1];
    const Sample& b = events[next];
    const double step = progress[next] - progress[next - 1];
    const double share = step > 0 ? std::clamp((wanted - progress[next - 1]) / step, 0.0, 1.0) : 1.0;
    points.push_back(rounded(a.x + share * (b.x - a.x), a.y + share * (b.y - a.y)));
  }
  points.push_back(rounded(events.back().x, events.back().y));
  return points;
}

void move_into_range(std::vector<point_hook>& points, std::int32_t point_hook::*axis) {
  std::int32_t low = points.front().*axis;
  for (const point_hook& point : points) low = std::min(low, point.*axis);
  if (low >= range_begin && low < range_end) return;
  for (point_hook& point : points) point.*axis += moved_begin - low;
}

}  // namespace

bool is_click(std::span<const Sample> events, double density) {
  const double limit = click_extent * density;
  return events.empty() ||
         (bounds_of(events, &Sample::x).extent() < limit && bounds_of(events, &Sample::y).extent() < limit);
}

std::optional<std::vector<point_hook>> sample_stroke(std::span<const Sample> events, double density) {
  assert(density > 0);
  if (is_click(events, density)) return std::nullopt;
  const Bounds x = bounds_of(events, &Sample::x);
  const Bounds y = bounds_of(events, &Sample::y);

  std::vector<Sample> stroke(events.begin(), events.end());
  straighten(stroke, x, y);
  const double diagonal = std::hypot(x.extent(), y.extent());
  const double radius = std::clamp(rest_ratio * diagonal, rest_least * density, rest_most * density);
  std::vector<point_hook> points = resample(stroke, radius);
  move_into_range(points, &point_hook::x);
  move_into_range(points, &point_hook::y);
  return points;
}

void Recorder::begin(Sample press) {
  samples_.clear();
  samples_.push_back(press);
  stride_ = 1;
  pending_ = 0;
}

void Recorder::add(Sample sample) {
  assert(!samples_.empty());
  if (pending_ > 0) {
    samples_.back() = sample;
  } else {
    if (samples_.size() == capacity) halve();
    samples_.push_back(sample);
  }
  if (++pending_ >= stride_) pending_ = 0;
}

void Recorder::halve() {
  for (std::size_t i = 0; 2 * i < samples_.size(); ++i) samples_[i] = samples_[2 * i];
  samples_.resize(samples_.size() / 2);
  // The last one dropped was `stride_` samples after the last one kept, and counts towards the longer stride.
  pending_ = stride_;
  stride_ *= 2;
}

}  // namespace hooklib
