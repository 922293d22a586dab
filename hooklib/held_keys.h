// Which of a set of keys are down, over all keyboards: two Ctrl keys are one to the program.
#pragma once

#include <algorithm>
#include <cstdint>
#include <utility>
#include <vector>

namespace hooklib {

class HeldKeys {
 public:
  // True if this is the first of them to go down.
  bool down(std::uint16_t device, std::uint32_t code) {
    const bool first = held_.empty();
    if (std::find(held_.begin(), held_.end(), std::pair{device, code}) == held_.end()) held_.emplace_back(device, code);
    return first;
  }
  // True if this was the last one down. A key that was down before we came is not ours to miss.
  bool up(std::uint16_t device, std::uint32_t code) {
    return std::erase(held_, std::pair{device, code}) > 0 && held_.empty();
  }
  // As up(), for all keys of a keyboard that is gone.
  bool device_gone(std::uint16_t device) {
    return std::erase_if(held_, [&](const auto& key) { return key.first == device; }) > 0 && held_.empty();
  }
  bool any() const { return !held_.empty(); }
  void clear() { held_.clear(); }

 private:
  std::vector<std::pair<std::uint16_t, std::uint32_t>> held_;
};

}  // namespace hooklib
