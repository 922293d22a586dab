// The bus of the user's session.
#pragma once

namespace desktop {

// Whether the session has a bus.
bool has_session_bus();

// While one of these lives, no bus can be started: where there is none, the toolkit would start one when it first asks
// for it, which would outlive the program. The toolkit asks once, and keeps to the answer. The programs that are
// started later are free to start a bus of their own.
class NoBusStarted {
 public:
  NoBusStarted();
  ~NoBusStarted();
  NoBusStarted(const NoBusStarted&) = delete;
  NoBusStarted& operator=(const NoBusStarted&) = delete;

 private:
  bool disabled_;
};

}  // namespace desktop
