// Chance that a seed brings back, on every machine.
#pragma once

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <random>

class Chances {
 public:
  explicit Chances(std::uint64_t seed) : engine_(seed) {}
  // 0 to `bound` - 1.
  std::size_t below(std::size_t bound) { return static_cast<std::size_t>(engine_() % bound); }
  int between(int low, int high) { return low + static_cast<int>(below(static_cast<std::size_t>(high - low) + 1)); }
  // Once in `times`.
  bool once_in(std::size_t times) { return below(times) == 0; }
  template <class T>
  T one_of(std::initializer_list<T> choices) {
    return choices.begin()[below(choices.size())];
  }
  template <class List>
  const auto& among(const List& list) {
    return list[below(std::size(list))];
  }

 private:
  std::mt19937_64 engine_;
};
