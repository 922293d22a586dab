// How long the two pieces of arithmetic take that stand between the release of the button and the action.
#include <benchmark/benchmark.h>

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "hooklib/sampler.h"
#include "model/patrons.h"
#include "recognition/verdict.h"

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

// A full table, patrons and stroke of the same number of points: what a program's own strokes have, and the most there
// is.
void Verdict(benchmark::State& state) {
  const auto points = static_cast<std::int16_t>(state.range(0));
  Mod_dessin::Dessin dessin;
  dessin.dessin_nb = points;
  Mod_dessin::Table table;
  table.nb_patrons = Mod_dessin::table_capacity;
  for (std::size_t s = 0; s < Mod_dessin::table_capacity; ++s) {
    Mod_dessin::Patron& patron = table.patrons[s];
    patron.Ind = points;
    const auto shape = spiral(Mod_dessin::dessin_slots, 0.1 * static_cast<double>(s));
    for (const hooklib::Sample& point : shape) {
      patron.X.values.push_back((point.x - 300) * 64 / 600);
      patron.Y.values.push_back((point.y - 200) * 48 / 600);
    }
    if (s != Mod_dessin::table_capacity / 2) continue;
    for (std::size_t i = 0; i < Mod_dessin::dessin_slots; ++i) {
      dessin.dessin_x[i] = static_cast<float>(patron.X.values[i]) + 3;
      dessin.dessin_y[i] = static_cast<float>(patron.Y.values[i]);
    }
  }
  while (state.KeepRunning()) benchmark::DoNotOptimize(Mod_dessin::verdict(dessin, table, Mod_dessin::table_capacity));
}
BENCHMARK(Verdict)->Arg(hooklib::stroke_points)->Arg(hook_max_points);

}  // namespace
