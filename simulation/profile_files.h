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
  // Keeps a copy under the first free name of "NAME.ancien", "NAME.ancien-2"... Fault "set_aside": fails.
  bool set_aside(std::string_view file) override;

  std::map<std::string, std::string, std::less<>> files;  // by name, bytes of code page 1252
  bool unreadable = false;                                // what stands there cannot be read
  int written = 0;                                        // replacements that did not fail
  int refused = 0;                                        // saves that did
  bool stale = false;                                     // the last save failed

 private:
  bool refuse();

  Journal& journal_;
};

}  // namespace simulation
