// The two parties of the hook library's contract as tests need them: a program that loads it, and an application whose
// window lies under the pointer.
#pragma once

#include <X11/Xlib.h>

#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "platform/hook_contract.h"

namespace hook_test {

struct CloseDisplay {
  void operator()(Display* display) const { XCloseDisplay(display); }
};
using DisplayHandle = std::unique_ptr<Display, CloseDisplay>;

// The library, loaded as the program loads it.
struct Library {
  Library();
  InitHook_t* InitHook;
  EndHook_t* EndHook;
  DLL_STOP_t* DLL_STOP;
  ENVOIS_BUF_TMP_t* ENVOIS_BUF_TMP;
};

// Direction and key code of a report.
using Report = std::pair<long, long>;
inline const Report stroke_report{hook_key_down, key_stroke};
inline const Report control_down{hook_key_down, key_control};
inline const Report control_up{hook_key_up, key_control};

// A program with a window that is never shown, on the display of the environment.
class Host {
 public:
  Host();
  Library& library() { return library_; }
  void init() { library_.InitHook(static_cast<std::uint32_t>(window_)); }
  // The last stroke as fetched into an array that was wiped before.
  std::vector<std::pair<int, int>> fetch();
  // All reports that have come so far, since the last forget().
  const std::vector<Report>& reports();
  void forget() { reports_.clear(); }
  int descriptor() const { return ConnectionNumber(display_.get()); }

 private:
  Library library_;
  DisplayHandle display_;
  Window window_;
  Atom atom_;
  std::vector<Report> reports_;
};

// An application: a window of 800 x 600 pixels somewhere around (600, 400), and what the mouse did to it: "press 3 at
// 500,400", "motion at 510,400", "release 3 at 510,400", in screen pixels.
class Target {
 public:
  explicit Target(const std::string& display);
  // What has come so far, since the last forget(). Motion only if asked for.
  std::vector<std::string> events(bool motion = false);
  void forget();
  Display* display() const { return display_.get(); }

 private:
  DisplayHandle display_;
  Window window_;
  std::vector<std::string> events_;
};

// Whether any client holds the right button of the whole screen.
bool button_is_taken(Display* display);

}  // namespace hook_test
