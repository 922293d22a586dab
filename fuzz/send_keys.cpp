// Any text may be bound as a text to type.
#include "fuzz/input.h"
#include "platform/sendkeys.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const auto strokes = platform::parse_send_keys(Input(data, size).text(size));
  if (!strokes) return 0;
  promise(strokes->size() <= platform::send_keys_limit);
  for (const platform::Stroke& stroke : *strokes) {
    promise((stroke.character == 0) != (stroke.key == 0));
    promise((stroke.kept & ~stroke.modifiers) == 0 && stroke.modifiers < 8);
  }
  // No modifier may stay down.
  promise(strokes->empty() || strokes->back().kept == 0);
  return 0;
}
