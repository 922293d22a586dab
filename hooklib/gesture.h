// What becomes of each press of the right button: the decisions of the hook, free of any server. Told what the devices
// do and what the server holds back, it says what is to be done; every press that the server froze for us leads to
// exactly one Release.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace hooklib {

// The wheel is four buttons, by old custom. Turning it says nothing about a drawing.
constexpr bool is_wheel(std::uint32_t button) {
  return button >= 4 && button <= 7;
}

// A button of one device, as the device numbers it. Two mice have two left buttons.
struct Contact {
  std::uint16_t device;
  std::uint32_t button;
  bool operator==(const Contact&) const = default;
};

// How a frozen press is let go.
enum class Release {
  none,       // it is still ours, or there was none
  hand_over,  // the application gets the press and all that followed, as if we had never been there
  swallow,    // the application gets nothing, up to the moment the button comes up
  as_stroke,  // as swallow, and the stroke is reported
};

// A worn switch lets go for a moment. A release is one only if no press at the same place follows within this time.
inline constexpr std::uint32_t bounce_ms = 25;

// What is to be done now. The parts are done in this order.
struct Step {
  bool begin = false;  // start recording the pointer's way
  bool end = false;    // stop recording
  bool lift = false;   // the button came up, or down again after that: see what was recorded of it
  Release release = Release::none;
  bool operator==(const Step&) const = default;
};

class Gesture {
 public:
  // A device's button went down, at this time of the server's clock, or came up. Always told before the server tells of
  // the press that it froze, and also while it freezes.
  Step button_down(Contact contact, std::uint32_t time_ms);
  Step button_up(Contact contact);

  // After a lift: the button stays up.
  Step stays_up();
  // The switch had let go for a moment only, until this press. The drawing goes on, unless it has let go again.
  void bounced(std::uint32_t press_ms);

  // The server froze a press of the right button made at this time. `wanted` is false if the press is not for drawing:
  // Ctrl is held, or drawing is stopped.
  Step frozen_press(std::uint32_t time_ms, bool wanted);

  // All that was recorded up to the release is there. `click` if it is too small for a stroke.
  Step recorded(bool click);

  // Ctrl went down: the press is the application's after all.
  Step control();
  // Drawing is stopped, or the hook goes: likewise.
  Step stop();
  // Escape went down: the drawing is dropped, the press too.
  Step escape();
  // A device was unplugged or switched off; the release of its buttons need not come any more.
  Step device_gone(std::uint16_t device);

  bool drawing() const { return state_ == State::drawing; }
  // The button came up and may come down again at once.
  bool lifted() const { return state_ == State::lifted; }
  // It did, and whether it only bounced is not known yet.
  bool down_again() const { return lifted() && button_held(); }
  // The button is up, but what was recorded is not all there yet.
  bool finishing() const { return state_ == State::finishing; }
  // A button is down that is not the one of the last drawing.
  bool others_held() const;
  // There is a press that the server froze for us.
  bool holding() const { return state_ != State::idle; }

 private:
  enum class State { idle, drawing, lifted, finishing };
  struct Press {
    Contact contact{};
    std::uint32_t time_ms = 0;
    bool down = false;
  };

  Step cancel(Release release);
  Step conclude(Step step);
  bool button_held() const;
  bool drawing_on() const;

  State state_ = State::idle;
  Contact drawn_with_{};
  // The latest presses, so that a frozen one can be traced to its device: the server tells of it without.
  std::array<Press, 16> presses_{};
  std::size_t next_press_ = 0;
  // Presses of the drawing's own button since it came up first, as those of a switch that bounces. The server freezes
  // each of them again once the first is let go: they then share its fate. Two may have the same time.
  struct Bounce {
    std::uint32_t time_ms;
    bool certain;
  };
  std::vector<Bounce> bounces_;
  Release fate_ = Release::none;
};

}  // namespace hooklib
