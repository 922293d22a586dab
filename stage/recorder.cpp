// Writes down what the mouse and the keyboard of a display do, one event a line, until it is interrupted; stage/trace.h
// has the form. What it writes, the trial of the hook plays: `hook_reliability --replay FILE`.
// usage: event_recorder [DISPLAY]     by default that of the environment
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <iostream>

#include "stage/trace.h"

namespace {

volatile std::sig_atomic_t interrupted = 0;

void interrupt(int /*signal*/) {
  interrupted = 1;
}

}  // namespace

int main(int count, char** arguments) {
  std::signal(SIGINT, interrupt);
  std::signal(SIGTERM, interrupt);
  const char* const own = std::getenv("DISPLAY");
  const std::string display = count > 1 ? arguments[1] : own != nullptr ? own : "";
  if (stage::record(display, std::cout, [] { return interrupted != 0; })) return 0;
  std::fprintf(stderr, "no display, or none that tells of its devices: %s\n", display.c_str());
  return 1;
}
