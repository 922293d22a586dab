#include "stage/trace.h"

#include <X11/XKBlib.h>
#include <X11/Xlib.h>
#include <X11/extensions/XI2.h>
#include <X11/extensions/XInput2.h>
#include <poll.h>

#include <array>
#include <chrono>
#include <optional>
#include <set>
#include <sstream>
#include <string_view>
#include <thread>

#include "stage/windows.h"

namespace stage {
namespace {

bool select_raw_events(Display* display) {
  int opcode = 0, event = 0, error = 0, major = 2, minor = 1;
  if (XQueryExtension(display, "XInputExtension", &opcode, &event, &error) == 0) return false;
  if (XIQueryVersion(display, &major, &minor) != Success) return false;
  std::array<unsigned char, XIMaskLen(XI_LASTEVENT)> bits{};
  for (const int type : {XI_RawMotion, XI_RawButtonPress, XI_RawButtonRelease, XI_RawKeyPress, XI_RawKeyRelease}) {
    unsigned char& eight = bits.at(static_cast<std::size_t>(type) / 8);
    eight = static_cast<unsigned char>(eight | 1U << static_cast<unsigned>(type) % 8);
  }
  XIEventMask mask{XIAllDevices, static_cast<int>(bits.size()), bits.data()};
  XISelectEvents(display, DefaultRootWindow(display), &mask, 1);
  return true;
}

// The devices through which programs inject.
std::set<int> injecting(Display* display) {
  std::set<int> found;
  int count = 0;
  XIDeviceInfo* const all = XIQueryDevice(display, XIAllDevices, &count);
  for (int i = 0; i < count; ++i) {
    if (std::string_view(all[i].name).find("XTEST") != std::string_view::npos) found.insert(all[i].deviceid);
  }
  if (all != nullptr) XIFreeDeviceInfo(all);
  return found;
}

// The rest of an event's line; a raw motion tells only by how much the pointer was to move.
std::string describe(Display* display, const XIRawEvent& event) {
  if (event.evtype == XI_RawMotion) {
    Window window = None;
    int x = 0, y = 0, ignored = 0;
    unsigned state = 0;
    XQueryPointer(display, DefaultRootWindow(display), &window, &window, &x, &y, &ignored, &ignored, &state);
    return "motion " + std::to_string(x) + " " + std::to_string(y);
  }
  if (event.evtype == XI_RawButtonPress) return "press " + std::to_string(event.detail);
  if (event.evtype == XI_RawButtonRelease) return "release " + std::to_string(event.detail);
  const char* const name = XKeysymToString(XkbKeycodeToKeysym(display, static_cast<KeyCode>(event.detail), 0, 0));
  return std::string(event.evtype == XI_RawKeyPress ? "key-down " : "key-up ") + (name != nullptr ? name : "NoSymbol");
}

}  // namespace

bool record(const std::string& name, std::ostream& trace, const std::function<bool()>& enough) {
  constexpr int look_ms = 100;
  const DisplayHandle display(XOpenDisplay(name.c_str()));
  if (!display || !select_raw_events(display.get())) return false;
  const std::set<int> injected = injecting(display.get());
  std::optional<Time> start;
  while (!enough()) {
    pollfd wait{ConnectionNumber(display.get()), POLLIN, 0};
    if (XPending(display.get()) == 0 && poll(&wait, 1, look_ms) <= 0) continue;
    while (XPending(display.get()) > 0) {
      XEvent event;
      XNextEvent(display.get(), &event);
      if (event.type != GenericEvent || XGetEventData(display.get(), &event.xcookie) == 0) continue;
      const auto& raw = *static_cast<const XIRawEvent*>(event.xcookie.data);
      // Each comes twice, from its device and from the master that unites them.
      if (raw.deviceid == raw.sourceid && injected.count(raw.sourceid) == 0) {
        if (!start) start = raw.time;
        trace << raw.time - *start << ' ' << raw.sourceid << ' ' << describe(display.get(), raw) << '\n';
      }
      XFreeEventData(display.get(), &event.xcookie);
    }
    trace.flush();
  }
  return true;
}

bool replay(std::istream& trace, User& user) {
  const auto start = std::chrono::steady_clock::now();
  for (std::string line; std::getline(trace, line);) {
    std::istringstream words(line);
    if (line.starts_with('#')) continue;
    if (line.starts_with('#')) continue;
    long time_ms = 0;
    int device = 0, x = 0, y = 0;
    std::string kind, what;
    if (!(words >> time_ms >> device >> kind >> what)) return false;
    std::istringstream number(what);
    const KeySym keysym = XStringToKeysym(what.c_str());
    std::this_thread::sleep_until(start + std::chrono::milliseconds(time_ms));
    if (kind == "motion" && number >> x && words >> y) {
      user.move_to(x, y);
    } else if (kind == "press" && number >> x) {
      user.press(x);
    } else if (kind == "release" && number >> x) {
      user.release(x);
    } else if (kind == "key-down" && keysym != NoSymbol) {
      user.key_down(keysym);
    } else if (kind == "key-up" && keysym != NoSymbol) {
      user.key_up(keysym);
    } else {
      return false;
    }
  }
  return true;
}

}  // namespace stage
