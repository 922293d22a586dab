// The hook at work on one connection to the server.
#pragma once

#include <xcb/xcb.h>

#include <cstdint>
#include <vector>

#include "hooklib/button_grab.h"
#include "hooklib/devices.h"
#include "hooklib/display.h"
#include "hooklib/exchange.h"
#include "hooklib/gesture.h"
#include "hooklib/guard.h"
#include "hooklib/held_keys.h"
#include "hooklib/keyboard.h"
#include "hooklib/recording.h"
#include "hooklib/sampler.h"
#include "hooklib/surroundings.h"
#include "hooklib/trail.h"

namespace hooklib {

class Session {
 public:
  // Takes the button, unless drawing is stopped or another instance has it. Reports go to `window`. `control_keys` are
  // the Ctrl keys that were reported as down, over all sessions. All of these must outlive the session, but for the
  // display, which it takes over.
  Session(Display display, xcb_window_t window, Exchange& exchange, Guard& guard, HeldKeys& control_keys);

  // Holds the button, records, reports. True when the program has asked to quit, false when the connection was lost;
  // either way no press is ours any more.
  bool run();

 private:
  bool work();
  bool handle_events();
  bool take_recording();
  void obey(const Exchange::Orders& orders);
  void leave();

  void handle(const xcb_generic_event_t& event);
  void handle_input(const xcb_ge_generic_event_t& event);
  void handle_key(std::uint16_t source, std::uint32_t code, bool down);
  void handle_devices(const xcb_ge_generic_event_t& event);

  void perform(Step step);
  void begin_drawing();
  void draw_trail();
  void conclude();
  void let_go(std::uint8_t mode);
  void report(int direction, int key);
  void select_input(bool motion);
  void catch_up_with_control_keys();

  Display display_;
  xcb_window_t window_;
  Exchange& exchange_;
  Guard& guard_;
  HeldKeys& control_keys_;

  Devices devices_;
  Keyboard keyboard_;
  ButtonGrab grab_;
  Recording recording_;
  Trail trail_;
  Gesture gesture_;
  Recorder recorder_;
  Surroundings surroundings_;

  bool stopped_ = true;  // until the first orders are read
  bool moved_ = false;   // the pointer has moved since the last flush of the recording
  Sample press_{};
  bool path_complete_ = false;  // up to the release of the button
  std::vector<TrailPoint> undrawn_;
  bool trail_shown_ = false;
};

}  // namespace hooklib
