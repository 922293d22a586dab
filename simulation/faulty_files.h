// The calls of a save with a fault among them: they go on to another file system, except the one that is to fail.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/file_system.h"

namespace simulation {

// What is to go wrong: the call of that number, counted from 0, fails with that errno.
struct Fault {
  std::size_t call = 0;
  int error = 0;         // 0: a read or a write stops half-way, which is no failure
  bool lasting = false;  // and so does every later call of the same name
};

class FaultyFiles : public platform::FileSystem {
 public:
  explicit FaultyFiles(platform::FileSystem& below) : below_(below) {}

  std::optional<Fault> fault;
  std::string read_only;                // a folder in which nothing can be changed; empty for none
  bool linkless = false;                // a file cannot have two names
  std::string unreadable;               // a file that may not be opened; empty for none
  std::size_t longest_write = 0;        // bytes that one call writes at most; 0 for any number
  std::function<void()> before, after;  // run around each call
  std::vector<std::string_view> calls;  // the names of those made so far

  int open(const std::string& path, platform::Opening how) override;
  int close(int file) override;
  std::int64_t read(int file, char* bytes, std::size_t size) override;
  std::int64_t write(int file, const char* bytes, std::size_t size) override;
  int fstat(int file, platform::FileState& state) override;
  int stat(const std::string& path, platform::FileState& state) override;
  int lstat(const std::string& path) override;
  int fchmod(int file, unsigned int mode) override;
  int fsync(int file) override;
  int rename(const std::string& from, const std::string& to) override;
  int link(const std::string& from, const std::string& to) override;
  int unlink(const std::string& path) override;
  int mkdir(const std::string& path) override;
  int readlink(const std::string& path, std::string& target) override;
  int list(const std::string& folder, std::vector<std::string>& names) override;
  std::int64_t process() override { return below_.process(); }
  bool alive(std::int64_t process) override { return below_.alive(process); }
  std::uint32_t random() override { return below_.random(); }

 private:
  // Makes the call unless it is the one to fail. `changed`: a path that it would change.
  template <class Call>
  auto made(std::string_view name, const std::string& changed, const Call& call) -> decltype(call());
  bool stops_half_way(std::string_view name) const;
  bool hits(std::string_view name) const;

  platform::FileSystem& below_;
};

// The ways in which a call of that name can fail that matter to a save, by its manual page.
const std::vector<int>& errors_of(std::string_view call);

}  // namespace simulation
