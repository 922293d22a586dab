// What was asked of the simulated desktop, one line a call, and the faults that it has been told to commit.
#pragma once

#include <map>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

namespace simulation {

class Journal {
 public:
  template <class... Parts>
  void write(const Parts&... parts) {
    std::ostringstream line;
    (line << ... << parts);
    lines.push_back(line.str());
  }
  // Whether the service of that name is to fail this time.
  bool fails(std::string_view service) {
    const auto fault = faults.find(service);
    if (fault == faults.end() || fault->second == 0) return false;
    if (fault->second > 0) --fault->second;
    return true;
  }
  // The lines that begin with `start`.
  std::vector<std::string> matching(std::string_view start) const {
    std::vector<std::string> found;
    for (const std::string& line : lines) {
      if (line.starts_with(start)) found.push_back(line);
    }
    return found;
  }

  std::vector<std::string> lines;
  std::map<std::string, int, std::less<>> faults;  // by service: how many calls are to fail, -1 for all
};

}  // namespace simulation
