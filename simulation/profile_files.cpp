#include "simulation/profile_files.h"

namespace simulation {

platform::ReadOutcome ProfileFiles::read(std::string_view file, std::string& bytes) {
  if (unreadable) return platform::ReadOutcome::unreadable;
  const auto found = files.find(file);
  if (found == files.end()) return platform::ReadOutcome::missing;
  bytes = found->second;
  return platform::ReadOutcome::read;
}

bool ProfileFiles::replace(std::string_view file, std::string_view bytes) {
  journal_.write("replace ", file);
  if (journal_.fails("replace")) return refuse();
  files[std::string(file)] = bytes;
  unreadable = false;
  ++written;
  stale = false;
  return true;
}

bool ProfileFiles::set_aside(std::string_view file) {
  journal_.write("set_aside ", file);
  if (journal_.fails("set_aside")) return refuse();
  const auto found = files.find(file);
  if (found == files.end()) return true;
  for (int n = 1;; ++n) {
    const std::string copy = std::string(file) + ".ancien" + (n == 1 ? "" : "-" + std::to_string(n));
    // What has been kept already is not kept again.
    const auto [kept, made] = files.try_emplace(copy, found->second);
    if (made || kept->second == found->second) return true;
  }
}

bool ProfileFiles::refuse() {
  ++refused;
  stale = true;
  return false;
}

}  // namespace simulation
