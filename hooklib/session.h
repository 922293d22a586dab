// The hook at work on one connection to the server.
#pragma once

#include <xcb/xcb.h>

#include <array>
#include <chrono>
#include <cstdint>
#include <optional>
#include <utility>
#include <vector>

#include "hooklib/button_grab.h"
#include "hooklib/devices.h"
#include "hooklib/display.h"
#include "hooklib/exchange.h"
#include "hooklib/gesture.h"
#include "hooklib/guard.h"
#include "hooklib/heartbeat.h"
#include "hooklib/held_keys.h"
#include "hooklib/keyboard.h"
#include "hooklib/path.h"
#include "hooklib/recording.h"
#include "hooklib/surroundings.h"
#include "hooklib/trail.h"

namespace hooklib {

// What is known of the program over all sessions.
struct Program {
  xcb_window_t window = 0;  // where reports go
  HeldKeys control_keys;    // the Ctrl keys that were reported as down
  Heartbeat heartbeat;
};

class Session {
 public:
  // Takes the button, unless drawing is stopped or another instance has it. All of these must outlive the session, but
  // for the display, which it takes over.
  Session(Display display, Program& program, Exchange& exchange, Guard& guard);

  // Holds the button, records, reports. True when the program has asked to quit, false when the connection was lost;
  // either way no press is ours any more.
  bool run();

 private:
  using Clock = std::chrono::steady_clock;

  bool work();
  bool handle_events();
  bool take_recording();
  void follow_path();
  void heed_bounces();
  void draw_trail();
  void end_lift();
  void obey(const Exchange::Orders& orders);
  void look_after_program();
  void hold_button();
  void give_button_up();
  int time_to_sleep() const;
  void leave();

  void handle(const xcb_generic_event_t& event);
  void end_outlasting_grab(const xcb_button_release_event_t& release);
  void handle_input(const xcb_ge_generic_event_t& event);
  void handle_key(std::uint16_t source, std::uint32_t code, bool down);
  void handle_devices(const xcb_ge_generic_event_t& event);
  void handle_message(const xcb_client_message_event_t& message);
  void handle_resize(const xcb_configure_notify_event_t& change);

  void perform(Step step);
  void begin_drawing();
  void begin_trail();
  void conclude();
  void let_go(std::uint8_t mode);
  void report(int direction, int key);
  void tell_program(xcb_atom_t type, std::array<std::uint32_t, 2> data);
  void select_input(bool motion);
  void catch_up_with_control_keys();

  Display display_;
  Program& program_;
  Exchange& exchange_;
  Guard& guard_;

  Devices devices_;
  Keyboard keyboard_;
  ButtonGrab grab_;
  Recording recording_;
  Trail trail_;
  Gesture gesture_;
  DrawnPath path_;
  double density_ = normal_density;

  bool stopped_ = false;  // the program's latest word
  bool hung_ = false;     // the program does not serve its events
  bool wanted_ = false;   // neither: presses are to be held back
  bool moved_ = false;    // something was done that the recording has, but may not have handed out
  Sample press_{};
  std::vector<std::pair<Sample, Recording::Kind>> taken_;  // from the recording, and not yet looked at
  Clock::duration answer_time_{};                          // what the server last took to answer
  Clock::time_point next_draw_;                            // the trail is not drawn on before
  std::optional<Clock::time_point> lift_end_;              // until then the button may come down again
};

}  // namespace hooklib
