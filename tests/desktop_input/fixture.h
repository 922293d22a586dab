// A screen with a window that tells what keys it gets.
#pragma once

#include <X11/keysym.h>
#include <gtest/gtest.h>

#include <string>

#include "stage/xserver.h"

class KeyTest : public testing::Test {
 protected:
  KeyTest();
  // Starts the window with the keyboard; see listener.cpp for how it may behave.
  void listen(const std::string& behaviour = "pings");
  // Sets the keyboard layout: "us", "fr bepo", "us,ru"; with a key to change the group, to the second group.
  void set_layout(const std::string& layout);
  // The key maps of every keyboard of the server, as text.
  static std::string key_maps();
  // How many keys are down, and the modifiers and the group in force: "0 down, locked 2, group 1".
  static std::string state();
  // The keys that have arrived since the last call: "4 c|^|1 A A" (state, name and text of each, "^" for modifiers).
  std::string heard(bool as_text = false);
  // The same as text, with the names of other keys than modifiers: "ab<Return>".
  std::string typed() { return heard(true); }

  stage::XServer server;

 private:
  stage::Process listener_;
};
