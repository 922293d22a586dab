// Numbers and texts taken from the bytes that a fuzzer gives; zeros once they are used up.
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

class Input {
 public:
  Input(const std::uint8_t* data, std::size_t size) : bytes_(reinterpret_cast<const char*>(data), size) {}

  template <class Number>
  Number number() {
    Number value{};
    const std::size_t count = std::min(sizeof value, bytes_.size());
    std::memcpy(&value, bytes_.data(), count);
    bytes_.remove_prefix(count);
    return value;
  }
  // Up to `most` bytes.
  std::string text(std::size_t most) {
    const std::string taken(bytes_.substr(0, most));
    bytes_.remove_prefix(taken.size());
    return taken;
  }
  bool empty() const { return bytes_.empty(); }
  std::size_t left() const { return bytes_.size(); }

 private:
  std::string_view bytes_;
};

// A broken promise is a crash to the fuzzer.
inline void promise(bool kept) {
  if (!kept) __builtin_trap();
}
