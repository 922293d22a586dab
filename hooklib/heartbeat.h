// Whether the program still serves its events. It is asked while the user is about; while nobody is, nothing is done.
// Pure: told the time, it says what is due.
#pragma once

#include <chrono>
#include <optional>

namespace hooklib {

class Heartbeat {
 public:
  using Clock = std::chrono::steady_clock;
  using Time = Clock::time_point;

  // How often the program is asked, and when one that has not answered counts as hung.
  static constexpr auto interval = std::chrono::seconds(1);
  static constexpr auto patience = std::chrono::seconds(3);
  // The user counts as about for this long after the last key or button.
  static constexpr auto attention = std::chrono::seconds(30);

  // On a new connection: an answer to a question from the old one will not come.
  void restart() { asked_.reset(); }
  void user_is_about(Time now) { attentive_until_ = now + attention; }
  // Whether the program is to be asked now; counts as done if so.
  bool take_question(Time now) {
    if (asked_ || now < next_ || now >= attentive_until_) return false;
    asked_ = now;
    next_ = now + interval;
    return true;
  }
  void answered() {
    answers_ = true;
    asked_.reset();
  }
  // A program that has never answered may not know how, which is no reason to do without the button.
  bool hung(Time now) const { return answers_ && asked_ && now >= *asked_ + patience; }
  // When to look again; nothing if that is not a matter of time.
  std::optional<Time> next_look(Time now) const {
    if (asked_) return answers_ && !hung(now) ? std::optional(*asked_ + patience) : std::nullopt;
    return next_ < attentive_until_ && now < attentive_until_ ? std::optional(next_) : std::nullopt;
  }

 private:
  bool answers_ = false;
  std::optional<Time> asked_;  // the question that is open
  Time next_{};
  Time attentive_until_{};
};

}  // namespace hooklib
