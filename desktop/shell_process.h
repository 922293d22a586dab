// Starting a program that is nobody's child.
#pragma once

#include <string>
#include <vector>

namespace desktop {

// Runs the program at `path` with `arguments` (its own name not among them) in `directory`, or in the root folder where
// that cannot be entered. It gets a session of its own, the default signal set-up, /dev/null for its three standard
// streams and no other descriptor. Returns as soon as the program is loaded: 0, or the errno of what failed.
int start_detached(const std::string& path, const std::vector<std::string>& arguments, const std::string& directory);

}  // namespace desktop
