// Files in memory behind the profile service.
#pragma once

#include <map>
#include <string>
#include <string_view>

#include "platform/profile_service.h"
#include "simulation/journal.h"

namespace simulation {

class ProfileFiles : public platform::FileStore {
 public:
  explicit ProfileFiles(Journal& journal) : journal_(journal) {}

  platform::ReadOutcome read(std::string_view file, std::string& bytes) override;
  // Fault "replace": fails and leaves the old file.
  bool replace(std::string_view file, std::string_view bytes) override;
  // Keeps a copy under the name with ".ancien" behind it. Fault "set_aside": fails.
  bool set_aside(std::string_view file) override;

  std::map<std::string, std::string, std::less<>> files;  // by name, bytes of code page 1252
  bool unreadable = false;                                // what stands there cannot be read

 private:
  Journal& journal_;
};

}  // namespace simulation
