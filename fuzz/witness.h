// Watches what leaves the program: other programs are touched for a stroke alone and by an action that is bound, keys
// that go down come up again, and no file but the profile and its copies is written.
#pragma once

#include <map>
#include <set>
#include <string>

#include "simulation/desktop_in_memory.h"

class Witness {
 public:
  explicit Witness(const simulation::DesktopInMemory& desktop) : desktop_(desktop) {}

  // An event begins, with an empty journal.
  void begin() { strokes_ = 0; }
  void stroke() { ++strokes_; }

  // What should not have been done since the event began, while these actions were bound; empty where nothing.
  std::string fault(const std::set<std::string>& actions) const;

 private:
  std::string fault_of_files() const;

  const simulation::DesktopInMemory& desktop_;
  int strokes_ = 0;  // reports of one, each good for one action
};
