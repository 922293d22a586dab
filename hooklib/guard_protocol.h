// What the hook and its guard tell each other over a socket that keeps messages apart.
#pragma once

#include <cstdint>

namespace hooklib {

struct GuardMessage {
  enum class Kind : std::uint32_t {
    // From the guard.
    ready,  // it watches; sent once
    ping,   // is the hook alive? To be answered at once
    // From the hook.
    watch,     // `value`: an X resource of the connection to cut if the hook hangs; 0 if it holds nothing
    pong,      // `value`: 1 while a drawing is in progress, else 0
    farewell,  // the program ends the hook in good order
  };
  Kind kind;
  std::uint32_t value;
};

// The guard finds its end of the socket here, and no other descriptor open.
inline constexpr int guard_descriptor = 3;

}  // namespace hooklib
