#include "desktop/system_files.h"

#include <dirent.h>
#include <fcntl.h>
#include <signal.h>
#include <sys/random.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <climits>
#include <cstdio>

namespace desktop {

namespace {

int flags_of(platform::Opening how) {
  if (how == platform::Opening::create) return O_CREAT | O_EXCL | O_WRONLY | O_CLOEXEC | O_NOFOLLOW;
  if (how == platform::Opening::folder) return O_RDONLY | O_DIRECTORY | O_CLOEXEC;
  return O_RDONLY | O_CLOEXEC | O_NONBLOCK;
}

platform::FileState state_of(const struct stat& state) {
  return {S_ISREG(state.st_mode), state.st_mode & 07777U, state.st_size, state.st_mtime};
}

}  // namespace

int SystemFiles::open(const std::string& path, platform::Opening how) {
  return ::open(path.c_str(), flags_of(how), 0600);
}

int SystemFiles::close(int file) {
  return ::close(file);
}

std::int64_t SystemFiles::read(int file, char* bytes, std::size_t size) {
  return ::read(file, bytes, size);
}

std::int64_t SystemFiles::write(int file, const char* bytes, std::size_t size) {
  return ::write(file, bytes, size);
}

int SystemFiles::fstat(int file, platform::FileState& state) {
  struct stat found = {};
  const int result = ::fstat(file, &found);
  if (result == 0) state = state_of(found);
  return result;
}

int SystemFiles::stat(const std::string& path, platform::FileState& state) {
  struct stat found = {};
  const int result = ::stat(path.c_str(), &found);
  if (result == 0) state = state_of(found);
  return result;
}

int SystemFiles::lstat(const std::string& path) {
  struct stat found = {};
  return ::lstat(path.c_str(), &found);
}

int SystemFiles::fchmod(int file, unsigned int mode) {
  return ::fchmod(file, mode);
}

int SystemFiles::fsync(int file) {
  return ::fsync(file);
}

int SystemFiles::rename(const std::string& from, const std::string& to) {
  return ::rename(from.c_str(), to.c_str());
}

int SystemFiles::link(const std::string& from, const std::string& to) {
  return ::link(from.c_str(), to.c_str());
}

int SystemFiles::unlink(const std::string& path) {
  return ::unlink(path.c_str());
}

int SystemFiles::mkdir(const std::string& path) {
  return ::mkdir(path.c_str(), 0700);
}

int SystemFiles::readlink(const std::string& path, std::string& target) {
  std::array<char, PATH_MAX> buffer;  // what fills it is too long for a path, as every later call will say
  const ssize_t length = ::readlink(path.c_str(), buffer.data(), buffer.size());
  if (length < 0) return -1;
  target.assign(buffer.data(), static_cast<std::size_t>(length));
  return 0;
}

int SystemFiles::list(const std::string& folder, std::vector<std::string>& names) {
  DIR* const stream = ::opendir(folder.c_str());
  if (stream == nullptr) return -1;
  names.clear();
  while (const dirent* const entry = ::readdir(stream)) names.emplace_back(entry->d_name);
  ::closedir(stream);
  return 0;
}

std::int64_t SystemFiles::process() {
  return ::getpid();
}

bool SystemFiles::alive(std::int64_t process) {
  // One that may not be signalled is there all the same.
  errno = 0;
  ::kill(static_cast<pid_t>(process), 0);
  return errno != ESRCH;
}

std::uint32_t SystemFiles::random() {
  const auto now = static_cast<std::uint32_t>(std::chrono::steady_clock::now().time_since_epoch().count());
  std::uint32_t drawn = 0;  // stays so early in the life of a machine, when there is no chance yet
  [[maybe_unused]] const ssize_t size = ::getrandom(&drawn, sizeof drawn, GRND_NONBLOCK);
  return now ^ drawn;
}

}  // namespace desktop
