// The two parties of the hook library's contract as tests and benchmarks need them: a program that loads it, and an
// application whose window lies under the pointer.
#pragma once

#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <X11/extensions/XTest.h>
#include <X11/keysym.h>
#include <dlfcn.h>
#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "platform/hook_contract.h"
#include "stage/windows.h"
#include "stage/xserver.h"

namespace stage {

// The environment may name another copy of the library here.
inline constexpr const char* other_library = "STAGE_HOOK_LIBRARY";

// The library, loaded as the program loads it.
struct Library {
  Library() {
    for (const char* idle : {"DLL_Hook", "DLL_UnHook", "HelloWorld", "GetMessage"}) find<void()>(idle)();
  }
  template <class Function>
  static Function* find(const char* name) {
    const char* const other = std::getenv(other_library);
    void* const library = dlopen(other != nullptr ? other : HOOK_LIBRARY, RTLD_NOW | RTLD_LOCAL);
    void* const function = library != nullptr ? dlsym(library, name) : nullptr;
    if (function == nullptr) throw std::runtime_error(dlerror());
    return reinterpret_cast<Function*>(function);
  }
  InitHook_t* InitHook = find<InitHook_t>("InitHook");
  EndHook_t* EndHook = find<EndHook_t>("EndHook");
  DLL_STOP_t* DLL_STOP = find<DLL_STOP_t>("DLL_STOP");
  ENVOIS_BUF_TMP_t* ENVOIS_BUF_TMP = find<ENVOIS_BUF_TMP_t>("ENVOIS_BUF_TMP");
};

// Direction and key code of a report.
using Report = std::pair<long, long>;
inline const Report stroke_report{hook_key_down, key_stroke};
inline const Report control_down{hook_key_down, key_control};
inline const Report control_up{hook_key_up, key_control};

// A program with a window that is never shown, on the display of the environment.
class Host {
 public:
  // One that answers when the hook asks whether it hangs must look at its reports all the time.
  explicit Host(bool answering = false) : answering_(answering) {}
  Library& exports() { return library_; }
  void init() {
    XSync(display_.get(), False);
    library_.InitHook(static_cast<std::uint32_t>(window_));
  }
  // The last stroke as fetched into an array that was wiped before.
  Path fetch() {
    std::array<point_hook, hook_capacity> points{};
    points.fill({-7, -7});
    std::int32_t count = 0;
    library_.ENVOIS_BUF_TMP(points.data(), &count);
    Path fetched;
    for (const point_hook& point : points) fetched.emplace_back(point.x, point.y);
    const auto end = fetched.begin() + count;
    if (std::count(end, fetched.end(), std::pair(-7, -7)) != fetched.end() - end) throw std::runtime_error("overrun");
    fetched.erase(end, fetched.end());
    return fetched;
  }
  // All reports that have come so far, since the last forget().
  const std::vector<Report>& reports() {
    while (XPending(display_.get()) > 0) {
      XEvent event;
      XNextEvent(display_.get(), &event);
      const XClientMessageEvent& message = event.xclient;
      if (event.type == ClientMessage && message.message_type == atom_ && message.format == 32) {
        reports_.emplace_back(message.data.l[0], message.data.l[1]);
      }
      if (answering_ && event.type == ClientMessage && message.message_type == question_) {
        event.xclient.window = static_cast<Window>(message.data.l[0]);
        XSendEvent(display_.get(), event.xclient.window, False, NoEventMask, &event);
      }
    }
    return reports_;
  }
  void forget() { reports_.clear(); }
  int descriptor() const { return ConnectionNumber(display_.get()); }

 private:
  Library library_;
  DisplayHandle display_{XOpenDisplay(nullptr)};
  Window window_ = XCreateSimpleWindow(display_.get(), DefaultRootWindow(display_.get()), 0, 0, 10, 10, 0, 0, 0);
  Atom atom_ = XInternAtom(display_.get(), hook_report_atom, False);
  Atom question_ = XInternAtom(display_.get(), hook_question_atom, False);
  bool answering_;
  std::vector<Report> reports_;
};

// An application: a window of 800 x 600 pixels somewhere around (600, 400), and what the mouse did to it: "press 3 at
// 500,400", "motion at 510,400", "release 3 at 510,400", in screen pixels.
class Target {
 public:
  explicit Target(const std::string& display) : display_(XOpenDisplay(display.c_str())) {
    Display* const connection = display_.get();
    const Window window =
        XCreateSimpleWindow(connection, DefaultRootWindow(connection), 200, 100, 800, 600, 0, 0, 0x808080);
    XSizeHints hints{};
    hints.flags = USPosition;
    XSetWMNormalHints(connection, window, &hints);
    XSelectInput(connection, window, ButtonPressMask | ButtonReleaseMask | PointerMotionMask);
    XMapWindow(connection, window);
    if (!settles(connection, window)) throw std::runtime_error("the window never appeared");
  }
  // What has come so far, since the last forget(). Motion only if asked for.
  std::vector<std::string> events(bool motion = false) {
    while (XPending(display_.get()) > 0) {
      XEvent event;
      XNextEvent(display_.get(), &event);
      const XButtonEvent& button = event.xbutton;
      const std::string at = " at " + std::to_string(button.x_root) + "," + std::to_string(button.y_root);
      if (event.type == ButtonPress) events_.push_back("press " + std::to_string(button.button) + at);
      if (event.type == ButtonRelease) events_.push_back("release " + std::to_string(button.button) + at);
      if (event.type == MotionNotify) events_.push_back("motion" + at);
    }
    std::vector<std::string> wanted = events_;
    if (!motion) std::erase_if(wanted, [](const std::string& event) { return event.starts_with("motion"); });
    return wanted;
  }
  void forget() {
    events();
    events_.clear();
  }
  // Until what the user did has come, which it only does while nobody withholds the pointer. Not while a drawing is in
  // progress, and with the pointer at rest: what the server hands over late has the place of that moment.
  bool hears_of(User& user) {
    elsewhere_ = !elsewhere_;
    const int x = elsewhere_ ? 980 : 990;
    user.move_to(x, 690);
    const std::string mark = "motion at " + std::to_string(x) + ",690";
    return eventually([&] {
      events();
      return !events_.empty() && events_.back() == mark;
    });
  }
  // Whether no key and no button is down.
  bool nothing_is_down() const {
    std::array<char, 32> keys{};
    XQueryKeymap(display_.get(), keys.data());
    Window window = None;
    int place = 0;
    unsigned buttons = 0;
    XQueryPointer(display_.get(), DefaultRootWindow(display_.get()), &window, &window, &place, &place, &place, &place,
                  &buttons);
    return std::count(keys.begin(), keys.end(), 0) == 32 && buttons == 0;
  }
  Display* display() const { return display_.get(); }

 private:
  DisplayHandle display_;
  std::vector<std::string> events_;
  bool elsewhere_ = false;
};

// A host in a process of its own: prints "ready", then each report as "direction key". Told "inject" it presses Shift,
// told "inject all" a button, too, and says "pressed"; told "hang" it does nothing until it is told anything more; told
// "end" it ends.
inline void be_host() {
  // Who asks whether it hangs may be gone before it answers; a toolkit does not die of that either.
  XSetErrorHandler([](Display*, XErrorEvent*) { return 0; });
  Host host(true);
  host.init();
  const DisplayHandle display(XOpenDisplay(nullptr));
  std::puts("ready");
  std::array<pollfd, 2> waits{{{host.descriptor(), POLLIN, 0}, {STDIN_FILENO, POLLIN, 0}}};
  for (std::string line; line != "end";) {
    for (const auto& [direction, key] : host.reports()) std::printf("%ld %ld\n", direction, key);
    std::fflush(stdout);
    host.forget();
    poll(waits.data(), waits.size(), -1);
    if (waits[1].revents == 0) continue;
    if (!std::getline(std::cin, line)) break;
    if (line == "hang") std::getline(std::cin, line);
    if (!line.starts_with("inject")) continue;
    XTestFakeKeyEvent(display.get(), XKeysymToKeycode(display.get(), XK_Shift_L), True, CurrentTime);
    if (line == "inject all") XTestFakeButtonEvent(display.get(), 1, True, CurrentTime);
    XSync(display.get(), False);
    std::puts("pressed");
  }
  host.exports().EndHook();
}

}  // namespace stage
