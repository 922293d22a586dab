// The calls of the system of which a save is made, one member a call, so that each of them can be seen and made to
// fail. As in POSIX, a result below 0 is a failure and errno says which. Paths are absolute.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace platform {

struct FileState {
  bool regular = false;
  unsigned int mode = 0;     // permission bits
  std::int64_t size = 0;     // bytes
  std::int64_t changed = 0;  // when its bytes were, in seconds
};

enum class Opening {
  read,    // never waits, as a pipe would make it
  create,  // for writing, by its owner alone; EEXIST where something of that name stands already
  folder,  // to be synced
};

class FileSystem {
 public:
  virtual ~FileSystem() = default;
  virtual int open(const std::string& path, Opening how) = 0;
  // The descriptor is gone whatever the result.
  virtual int close(int file) = 0;
  virtual std::int64_t read(int file, char* bytes, std::size_t size) = 0;
  virtual std::int64_t write(int file, const char* bytes, std::size_t size) = 0;
  virtual int fstat(int file, FileState& state) = 0;
  virtual int stat(const std::string& path, FileState& state) = 0;
  // Whether something of that name stands there, be it a link to nowhere.
  virtual int lstat(const std::string& path) = 0;
  virtual int fchmod(int file, unsigned int mode) = 0;
  virtual int fsync(int file) = 0;
  virtual int rename(const std::string& from, const std::string& to) = 0;
  virtual int link(const std::string& from, const std::string& to) = 0;
  virtual int unlink(const std::string& path) = 0;
  // A folder for its owner alone.
  virtual int mkdir(const std::string& path) = 0;
  // EINVAL where it is no symbolic link.
  virtual int readlink(const std::string& path, std::string& target) = 0;
  virtual int list(const std::string& folder, std::vector<std::string>& names) = 0;

  // The number of this process, whether there is a process of a number, and another number at each call, which no
  // other machine is likely to get. These three do not fail.
  virtual std::int64_t process() = 0;
  virtual bool alive(std::int64_t process) = 0;
  virtual std::uint32_t random() = 0;
};

}  // namespace platform
