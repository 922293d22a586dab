// The calls of the real system.
#pragma once

#include "platform/file_system.h"

namespace desktop {

class SystemFiles : public platform::FileSystem {
 public:
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
  std::int64_t process() override;
  bool alive(std::int64_t process) override;
  std::uint32_t random() override;
};

}  // namespace desktop
