#include "hooklib/gesture.h"

#include <algorithm>

namespace hooklib {

Step Gesture::button_down(Contact contact, std::uint32_t time_ms) {
  if (is_wheel(contact.button)) return {};
  presses_[next_press_] = {contact, time_ms, true};
  next_press_ = (next_press_ + 1) % presses_.size();
  // A second button in mid-drawing is how one backs out without a keyboard.
  return state_ == State::drawing && contact != drawn_with_ ? cancel(Release::swallow) : Step{};
}

Step Gesture::button_up(Contact contact) {
  for (Press& press : presses_) {
    if (press.contact == contact) press.down = false;
  }
  if (state_ != State::drawing || contact != drawn_with_) return {};
  state_ = State::finishing;
  return {.end = true};
}

Step Gesture::frozen_press(std::uint32_t time_ms, bool wanted) {
  const auto press = std::find_if(presses_.begin(), presses_.end(),
                                  [&](const Press& seen) { return seen.down && seen.time_ms == time_ms; });
  // A press that is over before we hear of it was a click, and one that no device made has no release to wait for.
  if (!wanted || press == presses_.end()) return {.release = Release::hand_over};
  state_ = State::drawing;
  drawn_with_ = press->contact;
  return {.begin = true};
}

Step Gesture::recorded(bool click) {
  if (state_ != State::finishing) return {};
  state_ = State::idle;
  return {.release = click ? Release::hand_over : Release::as_stroke};
}

Step Gesture::control() {
  return state_ == State::drawing ? cancel(Release::hand_over) : Step{};
}

Step Gesture::stop() {
  return state_ != State::idle ? cancel(Release::hand_over) : Step{};
}

Step Gesture::escape() {
  return state_ == State::drawing ? cancel(Release::swallow) : Step{};
}

Step Gesture::device_gone(std::uint16_t device) {
  for (Press& press : presses_) {
    if (press.contact.device == device) press.down = false;
  }
  return state_ == State::drawing && drawn_with_.device == device ? cancel(Release::hand_over) : Step{};
}

Step Gesture::cancel(Release release) {
  const bool recording = state_ == State::drawing;
  state_ = State::idle;
  return {.end = recording, .release = release};
}

}  // namespace hooklib
