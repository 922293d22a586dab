// What a string that the user wants opened stands for. Nothing here touches the machine but through the probe.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace desktop {

// What is found at a path. `program`: a file that may be executed and begins as a binary or a script does; on many
// foreign file systems every document may be executed.
enum class Found { nothing, folder, document, program };

struct Surroundings {
  std::string home;                                // absolute
  std::string directory;                           // where relative paths start, absolute
  std::vector<std::string> search_path;            // folders of commands
  std::function<Found(const std::string&)> probe;  // of an absolute path
};

struct Target {
  enum class Kind {
    nothing,
    program,       // `path` is to be run with `arguments`
    document,      // `path`, a file or folder, is for the desktop's handler of its type
    address,       // so is the URL in `path`
    desktop_entry  // `path` describes how to start something
  };
  Kind kind = Kind::nothing;
  std::string path;
  std::vector<std::string> arguments;
  bool operator==(const Target&) const = default;
};

// In this order: a command on the search path, if `text` is one plain word; a path, blanks and all; an address (a
// scheme and a colon, or "www."); a command line, of which the first word is a program. "~" is the home folder.
Target find_target(std::string_view text, const Surroundings& around);

// The path of a command; empty where the search path has none of that name.
std::string find_command(const std::string& name, const Surroundings& around);

}  // namespace desktop
