// A disk in memory that can lose its power. What was not synced may then be there, be gone or, in a file, be garbage;
// each name of a folder for itself.
#pragma once

#include <cstdint>
#include <limits>
#include <map>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include "platform/file_system.h"

namespace simulation {

class DiskInMemory : public platform::FileSystem {
 public:
  static constexpr std::size_t never = std::numeric_limits<std::size_t>::max();

  DiskInMemory();

  // Calls that are still made; from then on the power is off, and none does anything.
  std::size_t calls_left = never;
  bool linkless = false;  // a file cannot have two names
  bool off() const { return off_; }
  // Loses what was not synced, as the chances will have it, and starts anew as another process.
  void lose_power(std::mt19937& chances);
  // The same for the process alone: what it did stays.
  void restart();

  // A file that a hand has put there, and has not synced. Its folder must be there.
  void put(const std::string& path, std::string bytes);
  // The bytes of a file; nothing where there is no file.
  std::optional<std::string> file(const std::string& path) const;
  std::vector<std::string> names(const std::string& folder) const;

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
  std::int64_t process() override { return process_; }
  bool alive(std::int64_t process) override { return process == process_; }
  std::uint32_t random() override { return ++drawn_; }

 private:
  using Number = std::size_t;  // of a node; 0 is none
  struct Node {
    bool folder = false;
    unsigned int mode = 0600;
    std::string bytes, lasting;  // of a file: now, and when it was last synced
    std::int64_t changed = 0;
    // Of a folder: by name, what it has stood for since the folder was last synced, the present last.
    std::map<std::string, std::vector<Number>> entries;
  };
  struct Open {
    Number node;
    std::size_t place;
  };

  bool powered();
  int fail(int error) const;
  Number find(const std::string& path) const;
  Node* folder_of(const std::string& path);
  void point(const std::string& path, Number to);
  static platform::FileState state_of(const Node& node);
  void settle(Node& node, std::mt19937& chances) const;

  std::vector<Node> nodes_;
  std::map<int, Open> open_;
  int next_file_ = 3;
  std::int64_t process_ = 1;
  std::int64_t clock_ = 0;  // seconds; stands still while a process runs
  std::uint32_t drawn_ = 0;
  bool off_ = false;
};

}  // namespace simulation
