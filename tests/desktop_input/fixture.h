// A screen with a window that tells what keys it gets.
#pragma once

#include <X11/keysym.h>
#include <gtest/gtest.h>

#include <string>

#include "stage/keyboard.h"

class KeyTest : public testing::Test {
 protected:
  KeyTest();
  // Starts the window with the keyboard; see listener.cpp for how it may behave.
  void listen(const std::string& behaviour = "pings");
  void set_layout(const std::string& layout) { stage::set_layout(server, layout); }
  std::string key_maps() const { return stage::key_maps(server); }
  std::string state() const { return stage::key_state(server); }
  // The keys that have arrived since the last call: "4 c|^|1 A A" (state, name and text of each, "^" for modifiers).
  std::string heard(bool as_text = false);
  // The same as text, with the names of other keys than modifiers: "ab<Return>".
  std::string typed() { return heard(true); }

  stage::XServer server;

 private:
  stage::Process listener_;
};
