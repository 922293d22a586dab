// Which program of the user's desktop ends the session or runs a command.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace desktop {

// What there is in the session.
struct SessionView {
  std::string desktops;                                      // as in XDG_CURRENT_DESKTOP: "ubuntu:GNOME"
  std::function<bool(const std::string&)> has_owner;         // a name on the session bus
  std::function<bool(const std::string&)> can_be_activated;  // likewise: its program would be started
  std::function<bool(const std::string&)> has_command;       // on the search path
};

struct Opening {
  enum class Kind {
    own,  // nothing of the desktop's: a box of this program
    bus,
    command
  };
  Kind kind = Kind::own;
  std::string target;  // name on the bus, or command with its arguments
  std::string path, interface, method;
  std::vector<std::variant<bool, int>> arguments;
  bool operator==(const Opening&) const = default;
};

// The dialog that ends the session, and the one that runs a command. Each of them asks the user before anything
// happens. A desktop that is named but not known has none; where none is named, whatever owns its name on the bus will
// do.
Opening choose_session_end(const SessionView& session);
Opening choose_launcher(const SessionView& session);

}  // namespace desktop
