// The desk of a test: screenshots bear its name, and one is left where it fails.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "stage/desk.h"

class Desk : public stage::Desk {
 public:
  explicit Desk(const std::string& profile) : stage::Desk(PROGRAM_FOLDER, profile) {}
  ~Desk() {
    if (testing::Test::HasFailure()) screenshot("failed");
  }
  Desk(const Desk&) = delete;
  Desk& operator=(const Desk&) = delete;

  void screenshot(const std::string& name) const {
    const auto* test = testing::UnitTest::GetInstance()->current_test_info();
    stage::Desk::screenshot(std::string(test != nullptr ? test->name() : "suite") + "-" + name);
  }
};

inline const stage::Path corner = {{200, 300}, {200, 500}, {420, 500}};  // an L
inline const stage::Path slope = {{420, 300}, {200, 500}};               // falling to the left
inline const stage::Path peak = {{200, 500}, {310, 300}, {420, 500}};    // an upside-down V

using stage::along;
using stage::contents;
using stage::eventually;
using stage::Path;
using stage::Process;
using stage::section;
using stage::Watcher;
