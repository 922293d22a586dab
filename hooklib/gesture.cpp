#include "hooklib/gesture.h"

#include <algorithm>

namespace hooklib {

Step Gesture::button_down(Contact contact, std::uint32_t time_ms) {
  if (is_wheel(contact.button)) return {};
  presses_[next_press_] = {contact, time_ms, true};
  next_press_ = (next_press_ + 1) % presses_.size();
  if (contact == drawn_with_ && state_ == State::lifted) {
    bounces_.push_back({time_ms, false});
    return {.lift = true};
  }
  if (contact == drawn_with_) return {};
  // A second button in mid-drawing is how one backs out without a keyboard; after it, it is the next thing one does.
  if (state_ == State::lifted) return stays_up();
  return state_ == State::drawing ? cancel(Release::swallow) : Step{};
}

Step Gesture::button_up(Contact contact) {
  for (Press& press : presses_) {
    if (press.contact == contact) press.down = false;
  }
  if ((state_ != State::drawing && state_ != State::lifted) || contact != drawn_with_) return {};
  state_ = State::lifted;
  return {.lift = true};
}

Step Gesture::stays_up() {
  if (state_ != State::lifted) return {};
  state_ = State::finishing;
  std::erase_if(bounces_, [](const Bounce& bounce) { return !bounce.certain; });
  return {.end = true};
}

void Gesture::bounced(std::uint32_t press_ms) {
  if (state_ != State::drawing && state_ != State::lifted) return;
  const auto bounce = std::find_if(bounces_.begin(), bounces_.end(),
                                   [&](const Bounce& one) { return one.time_ms == press_ms && !one.certain; });
  if (bounce == bounces_.end()) return;
  bounce->certain = true;
  // It may be up once more by now.
  if (button_held()) state_ = State::drawing;
}

bool Gesture::button_held() const {
  return std::any_of(presses_.begin(), presses_.end(),
                     [&](const Press& press) { return press.down && press.contact == drawn_with_; });
}

bool Gesture::others_held() const {
  return std::any_of(presses_.begin(), presses_.end(),
                     [&](const Press& press) { return press.down && press.contact != drawn_with_; });
}

Step Gesture::frozen_press(std::uint32_t time_ms, bool wanted) {
  const auto bounce =
      std::find_if(bounces_.begin(), bounces_.end(), [&](const Bounce& one) { return one.time_ms == time_ms; });
  if (bounce != bounces_.end()) {
    bounces_.erase(bounce);
    return {.release = fate_};
  }
  const auto press = std::find_if(presses_.begin(), presses_.end(),
                                  [&](const Press& seen) { return seen.down && seen.time_ms == time_ms; });
  // A press that is over before we hear of it was a click, and one that no device made has no release to wait for.
  if (!wanted || press == presses_.end()) return {.release = Release::hand_over};
  state_ = State::drawing;
  drawn_with_ = press->contact;
  bounces_.clear();
  return {.begin = true};
}

Step Gesture::recorded(bool click) {
  if (state_ != State::finishing) return {};
  return conclude({.release = click ? Release::hand_over : Release::as_stroke});
}

Step Gesture::control() {
  return drawing_on() ? cancel(Release::hand_over) : Step{};
}

Step Gesture::stop() {
  return state_ != State::idle ? cancel(Release::hand_over) : Step{};
}

Step Gesture::escape() {
  return drawing_on() ? cancel(Release::swallow) : Step{};
}

// Also while it is not yet certain that the button only bounced.
bool Gesture::drawing_on() const {
  return drawing() || down_again();
}

Step Gesture::device_gone(std::uint16_t device) {
  for (Press& press : presses_) {
    if (press.contact.device == device) press.down = false;
  }
  if (drawn_with_.device != device) return {};
  return state_ == State::drawing ? cancel(Release::hand_over) : stays_up();
}

Step Gesture::cancel(Release release) {
  return conclude({.end = state_ != State::finishing, .release = release});
}

Step Gesture::conclude(Step step) {
  state_ = State::idle;
  fate_ = step.release == Release::hand_over ? Release::hand_over : Release::swallow;
  return step;
}

}  // namespace hooklib
