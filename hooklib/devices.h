// The mice and keyboards there are.
#pragma once

#include <cstdint>
#include <vector>

#include "hooklib/display.h"

namespace hooklib {

class Devices {
 public:
  // `display` must outlive this. Knows no device before refresh().
  explicit Devices(Display& display) : display_(display) {}

  // To be called once the server tells of changes, and when devices came or went.
  void refresh();

  // True if what this device does moves the pointer or types; false for masters, and for devices set apart.
  bool is_attached(std::uint16_t device) const;
  // True if what this device sends was injected by a program.
  bool is_injected(std::uint16_t device) const;

 private:
  Display& display_;
  std::vector<std::uint16_t> attached_;
  std::vector<std::uint16_t> injecting_;
};

}  // namespace hooklib
