// A program with the hook in a process of its own, to be killed, stopped and run twice: prints "ready", then each
// report as "direction key". Ends when its input does, or with the word "end" by way of EndHook.
#include <poll.h>
#include <unistd.h>

#include <array>
#include <cstdio>

#include "tests/hooklib/host.h"

int main() {
  hook_test::Host host;
  host.init();
  std::puts("ready");
  std::fflush(stdout);
  for (;;) {
    for (const auto& [direction, key] : host.reports()) std::printf("%ld %ld\n", direction, key);
    std::fflush(stdout);
    host.forget();
    std::array<pollfd, 2> waits{{{host.descriptor(), POLLIN, 0}, {STDIN_FILENO, POLLIN, 0}}};
    poll(waits.data(), waits.size(), -1);
    if (waits[1].revents != 0) break;
  }
  host.library().EndHook();
  std::puts("ended");
  return 0;
}
