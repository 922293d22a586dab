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

using stage::along;
using stage::contents;
using stage::Path;
using stage::section;
using stage::Watcher;
