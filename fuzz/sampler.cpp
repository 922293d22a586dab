// Any stream of pointer events: a click, or a stroke of the agreed number of points that the matcher can take.
#include "hooklib/sampler.h"

#include "fuzz/input.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Input input(data, size);
  hooklib::Recorder recorder;
  const auto flags = input.number<std::uint8_t>();
  // Pointers report 16.16 fixed-point numbers, or moves that add up.
  double x = 0;
  double y = 0;
  const auto next = [&]() -> hooklib::Sample {
    const bool far = (flags & 1) != 0;
    x = far ? input.number<std::int32_t>() / 65536.0 : x + input.number<std::int8_t>() / 4.0;
    y = far ? input.number<std::int32_t>() / 65536.0 : y + input.number<std::int8_t>() / 4.0;
    return {x, y, (flags & 2) != 0 ? input.number<std::uint32_t>() : input.number<std::uint8_t>()};
  };
  const hooklib::Sample press = next();
  recorder.begin(press);
  hooklib::Sample last = press;
  const int times = (flags & 4) != 0 ? 64 : 1;
  while (!input.empty()) {
    last = next();
    // Many more than the recorder holds, out of a short input.
    for (int n = 0; n < times; ++n) recorder.add({last.x + n, last.y, last.time_ms + static_cast<std::uint32_t>(n)});
  }
  const auto samples = recorder.samples();
  promise(samples.size() <= hooklib::Recorder::capacity);
  promise(samples.front().x == press.x && samples.front().time_ms == press.time_ms);
  promise(times != 1 || (samples.back().x == last.x && samples.back().y == last.y));
  const auto points = hooklib::sample_stroke(samples, ((flags >> 3) + 1) / 8.0);
  promise(!points || points->size() == static_cast<std::size_t>(hooklib::stroke_points));
  return 0;
}
