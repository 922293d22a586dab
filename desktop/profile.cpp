#include "desktop/profile.h"

#include <fcntl.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <utility>

namespace desktop {

namespace {

// Far above anything the table can hold; what is larger is no profile and is not read into memory.
constexpr off_t largest_profile = off_t{32} << 20;  // bytes
constexpr int most_copies = 1000;

// A file descriptor that is closed at the end of its scope.
class Descriptor {
 public:
  explicit Descriptor(int fd) : fd_(fd) {}
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  ~Descriptor() {
    if (fd_ >= 0) ::close(fd_);
  }
  int get() const { return fd_; }
  bool open() const { return fd_ >= 0; }
  // Closing can be the moment at which a write fails. After EINTR the descriptor is gone all the same.
  bool close() { return ::close(std::exchange(fd_, -1)) == 0 || errno == EINTR; }

 private:
  int fd_;
};

bool write_all(int fd, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t written = ::write(fd, bytes.data(), bytes.size());
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(written));
  }
  return true;
}

bool sync(int fd) {
  while (::fsync(fd) != 0) {
    if (errno != EINTR) return false;
  }
  return true;
}

void complain(const std::string& what, const std::string& path) {
  std::fprintf(stderr, "Strokemind: cannot %s %s: %s\n", what.c_str(), path.c_str(), std::strerror(errno));
}

std::string folder_of(const std::string& path) {
  return path.substr(0, path.rfind('/'));
}

// The file behind a chain of symbolic links, which need not exist yet.
std::string resolved(std::string path) {
  constexpr int most_links = 40;
  for (int n = 0; n < most_links; ++n) {
    char target[PATH_MAX];
    const ssize_t length = ::readlink(path.c_str(), target, sizeof target);
    if (length < 0 || length == static_cast<ssize_t>(sizeof target)) break;
    const std::string_view link(target, static_cast<std::size_t>(length));
    path = link.starts_with('/') ? std::string(link) : folder_of(path) + "/" + std::string(link);
  }
  return path;
}

// What a process that was killed while it saved left behind is taken over.
int create_temporary(const std::string& path) {
  constexpr int flags = O_CREAT | O_EXCL | O_WRONLY | O_CLOEXEC | O_NOFOLLOW;
  int fd = ::open(path.c_str(), flags, 0600);
  if (fd < 0 && errno == EEXIST && ::unlink(path.c_str()) == 0) fd = ::open(path.c_str(), flags, 0600);
  return fd;
}

bool write_temporary(const std::string& temporary, const std::string& target, std::string_view bytes) {
  Descriptor file(create_temporary(temporary));
  if (!file.open()) return false;
  struct stat old = {};
  const bool replaces = ::stat(target.c_str(), &old) == 0 && S_ISREG(old.st_mode);
  if (replaces && ::fchmod(file.get(), old.st_mode & 07777U) != 0) return false;
  return write_all(file.get(), bytes) && sync(file.get()) && file.close();
}

}  // namespace

std::string profile_folder() {
  const char* const config = std::getenv("XDG_CONFIG_HOME");
  if (config != nullptr && config[0] == '/') return std::string(config) + "/strokemind";
  const char* home = std::getenv("HOME");
  if (home == nullptr || home[0] == '\0') {
    const passwd* const user = ::getpwuid(::getuid());
    home = user != nullptr ? user->pw_dir : "/";
  }
  return std::string(home) + "/.config/strokemind";
}

platform::ReadOutcome ProfileFolder::read(std::string_view file, std::string& bytes) {
  using platform::ReadOutcome;
  // Not blocking: a pipe of that name must not hold the start up.
  const Descriptor descriptor(::open(path(file).c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
  if (!descriptor.open()) return errno == ENOENT || errno == ENOTDIR ? ReadOutcome::missing : ReadOutcome::unreadable;
  struct stat state = {};
  if (::fstat(descriptor.get(), &state) != 0 || !S_ISREG(state.st_mode) || state.st_size > largest_profile) {
    return ReadOutcome::unreadable;
  }
  bytes.resize(static_cast<std::size_t>(state.st_size));
  std::size_t filled = 0;
  while (filled < bytes.size()) {
    const ssize_t got = ::read(descriptor.get(), bytes.data() + filled, bytes.size() - filled);
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) return ReadOutcome::unreadable;
    if (got == 0) break;
    filled += static_cast<std::size_t>(got);
  }
  bytes.resize(filled);
  return ReadOutcome::read;
}

bool ProfileFolder::replace(std::string_view file, std::string_view bytes) {
  const std::string target = resolved(path(file));
  std::error_code ignored;  // the opening of the temporary file tells whether the folder is there
  const std::filesystem::path folder = folder_of(target);
  std::filesystem::create_directories(folder.parent_path(), ignored);
  ::mkdir(folder.c_str(), 0700);

  const std::string temporary = folder.string() + "/." + target.substr(target.rfind('/') + 1) + ".nouveau";
  if (!write_temporary(temporary, target, bytes) || ::rename(temporary.c_str(), target.c_str()) != 0) {
    complain("save", target);
    ::unlink(temporary.c_str());
    return false;
  }
  // The new file is in place; only a power cut in the next moments could still bring the old one back.
  const Descriptor directory(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (!directory.open() || !sync(directory.get())) complain("make lasting", target);
  return true;
}

bool ProfileFolder::set_aside(std::string_view file) {
  const std::string original = resolved(path(file));
  struct stat state = {};
  if (::lstat(original.c_str(), &state) != 0 && errno == ENOENT) return true;
  for (int n = 1; n <= most_copies; ++n) {
    const std::string copy = path(file) + ".ancien" + (n == 1 ? "" : "-" + std::to_string(n));
    if (::link(original.c_str(), copy.c_str()) == 0) return true;
    std::string bytes;
    const bool readable = read(file, bytes) == platform::ReadOutcome::read;
    if (::lstat(copy.c_str(), &state) == 0) {
      // What has been kept already need not be kept again: an oddity may survive the save, and come at every start.
      std::string kept;
      if (readable && read(copy.substr(copy.rfind('/') + 1), kept) == platform::ReadOutcome::read && kept == bytes) {
        return true;
      }
      continue;
    }
    if (readable) return replace(copy.substr(copy.rfind('/') + 1), bytes);
    if (::rename(original.c_str(), copy.c_str()) == 0) return true;
    break;
  }
  complain("set aside", original);
  return false;
}

}  // namespace desktop
