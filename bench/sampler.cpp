// How long it takes to make a stroke of the events of a drawing.
#include <benchmark/benchmark.h>

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "hooklib/sampler.h"

namespace {

// A spiral of `turns` turns, sampled like a mouse that reports a thousand times a second.
std::vector<hooklib::Sample> spiral(std::size_t count, double turns) {
  std::vector<hooklib::Sample> events;
  for (std::size_t i = 0; i < count; ++i) {
    const double t = static_cast<double>(i) / static_cast<double>(count);
    const double angle = t * turns * 6.283185307179586;
    events.push_back({600 + 300 * t * std::cos(angle), 500 + 300 * t * std::sin(angle), static_cast<std::uint32_t>(i)});
  }
  return events;
}

void SampleStroke(benchmark::State& state) {
  const auto events = spiral(static_cast<std::size_t>(state.range(0)), 3);
  while (state.KeepRunning()) benchmark::DoNotOptimize(hooklib::sample_stroke(events, hooklib::normal_density));
}
BENCHMARK(SampleStroke)->Arg(60)->Arg(1000)->Arg(hooklib::Recorder::capacity);

}  // namespace
