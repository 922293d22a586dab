// The whole program under a user of chance: many short lives, each from a seed, until the time or the events are used
// up, whichever comes first.
//
// usage: simulation_run [--seconds N] [--events N] [--first-seed S]     20 seconds from seed 1 on
//        simulation_run --seed S                                        one life, with a trace of all that was done
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <string>
#include <string_view>

#include "fuzz/last_words.h"
#include "fuzz/user.h"

namespace {

constexpr long events_of_a_life = 2000;
constexpr unsigned int seconds_of_a_life = 120;  // more is a handler that never yields

extern "C" void too_long(int /*signal*/) {
  constexpr std::string_view said = "a handler hangs\n";
  if (::write(STDERR_FILENO, said.data(), said.size()) >= 0) std::abort();
}

constexpr long no_limit = std::numeric_limits<long>::max();

struct Orders {
  long seconds = no_limit;
  long events = no_limit;
  long first_seed = 1;
  bool trace = false;
};

Orders orders_of(int count, char** arguments) {
  Orders orders;
  for (int n = 1; n + 1 < count; n += 2) {
    const std::string_view option = arguments[n];
    const long value = std::strtol(arguments[n + 1], nullptr, 10);
    if (option == "--seconds") {
      orders.seconds = value;
    } else if (option == "--events") {
      orders.events = value;
    } else if (option == "--first-seed") {
      orders.first_seed = value;
    } else if (option == "--seed") {
      orders.first_seed = value;
      orders.events = 1;
      orders.trace = true;
    } else {
      std::fprintf(stderr, "simulation_run: unknown option %s\n", arguments[n]);
      std::exit(2);
    }
  }
  if (orders.seconds == no_limit && orders.events == no_limit) orders.seconds = 20;
  return orders;
}

// A life, and now and then another one on the files that it has left. Gives the number of events.
long lives(std::uint64_t seed, bool trace) {
  User user(seed);
  user.trace = trace;
  const long events = user.live(events_of_a_life);
  if (seed % 4 != 0) return events;
  User heir(~seed, user.files());
  heir.trace = trace;
  return events + heir.live(events_of_a_life);
}

}  // namespace

int main(int count, char** arguments) {
  const Orders orders = orders_of(count, arguments);
  std::signal(SIGALRM, too_long);
  const auto start = std::chrono::steady_clock::now();
  const auto seconds = [&] { return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count(); };
  long events = 0;
  long seed = orders.first_seed;
  for (; events < orders.events && seconds() < static_cast<double>(orders.seconds); ++seed) {
    const std::string again = "again: simulation_run --seed " + std::to_string(seed);
    set_last_words(again);
    ::alarm(seconds_of_a_life);
    try {
      events += lives(static_cast<std::uint64_t>(seed), orders.trace);
    } catch (const std::exception& broken) {
      std::printf("seed %ld: broken: %s\n%s\n", seed, broken.what(), again.c_str());
      return 1;
    }
  }
  set_last_words("");
  std::printf("%ld events in %ld lives, %.0f s: every promise kept\n", events, seed - orders.first_seed, seconds());
  return 0;
}
