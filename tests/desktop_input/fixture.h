// A screen with a window that tells what keys it gets.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/support/xserver.h"

class KeyTest : public testing::Test {
 protected:
  void SetUp() override;
  // Starts the window with the keyboard; see listener.cpp for how it may behave.
  void listen(const std::string& behaviour = "pings");

  // Sets the keyboard layout: "us", "fr bepo", "us,ru".
  static void set_layout(const std::string& layout);
  // The key maps of every keyboard of the server, as text.
  static std::string key_maps();
  // Keys that are down, by code, and the modifiers and group in force ("locked 2, group 1").
  static std::vector<int> keys_down();
  static std::string locked();

  // The keys that have arrived since the last call, modifier keys aside: "4 c", "1 A A" (state, name, text).
  std::vector<std::string> heard();
  // The same as text: what it typed, a line end for Return.
  std::string typed();
  // How many modifier keys were among those last heard.
  int modifiers_heard() const { return modifiers_heard_; }

  test_support::XServer server;

 private:
  test_support::Process listener_;
  int modifiers_heard_ = 0;
};
