// .desktop files: the freedesktop.org description of how to start something.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace desktop {

struct DesktopEntry {
  std::vector<std::string> command;  // words to run; the first may be a name on the search path
  std::string directory;             // where to run them; empty: anywhere
  bool in_terminal = false;
  std::string address;  // of an entry that is a link; then there is no command
};

// Reads the text of the entry at `path`. Nothing where it starts nothing or is damaged. There being no document to hand
// over, the field codes for documents stand for nothing.
std::optional<DesktopEntry> read_desktop_entry(std::string_view text, const std::string& path);

}  // namespace desktop
