#include "desktop/profile.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <utility>
#include <vector>

namespace desktop {

namespace {

// Far above anything the table can hold; what is larger is no profile and is not read into memory.
constexpr std::int64_t largest_profile = std::int64_t{32} << 20;  // bytes
constexpr int most_copies = 1000;
constexpr const char* mark_temporary = ".nouveau-";  // between the hidden name of a file and the number of a process
constexpr const char* mark_copy = ".ancien";

// Repeats a call that a signal has broken off.
template <class Call>
auto steadily(const Call& call) {
  auto result = call();
  while (result < 0 && errno == EINTR) result = call();
  return result;
}

// A file descriptor that is closed at the end of its scope.
class Descriptor {
 public:
  Descriptor(platform::FileSystem& files, const std::string& path, platform::Opening how)
      : Descriptor(files, steadily([&] { return files.open(path, how); })) {}
  Descriptor(platform::FileSystem& files, int fd) : files_(files), fd_(fd) {}
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  ~Descriptor() {
    if (fd_ >= 0) files_.close(fd_);
  }
  int get() const { return fd_; }
  bool open() const { return fd_ >= 0; }
  // Closing can be the moment at which a write fails. After EINTR the descriptor is gone all the same.
  bool close() { return files_.close(std::exchange(fd_, -1)) == 0 || errno == EINTR; }

 private:
  platform::FileSystem& files_;
  int fd_;
};

bool write_all(platform::FileSystem& files, int fd, std::string_view bytes) {
  while (!bytes.empty()) {
    const std::int64_t written = steadily([&] { return files.write(fd, bytes.data(), bytes.size()); });
    if (written <= 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(written));
  }
  return true;
}

void complain(const std::string& what, const std::string& path) {
  std::fprintf(stderr, "Strokemind: cannot %s %s: %s\n", what.c_str(), path.c_str(), std::strerror(errno));
}

std::string folder_of(const std::string& path) {
  return path.substr(0, path.rfind('/'));
}

std::string name_of(const std::string& path) {
  return path.substr(path.rfind('/') + 1);
}

// The process that wrote a temporary file of `target`, or of one of its copies; nothing where the name is none of
// these.
std::optional<std::int64_t> writer_of(std::string_view name, const std::string& target) {
  const std::string start = "." + name_of(target);
  if (!name.starts_with(start)) return std::nullopt;
  name.remove_prefix(start.size());
  const std::size_t mark = name.find(mark_temporary);
  if (mark == std::string_view::npos || (mark != 0 && !name.starts_with(mark_copy))) return std::nullopt;
  const std::string_view number = name.substr(mark + std::strlen(mark_temporary));
  constexpr std::size_t most_digits = 18;
  if (number.empty() || number.size() > most_digits) return std::nullopt;
  std::int64_t process = 0;
  for (const char digit : number) {
    if (digit < '0' || digit > '9') return std::nullopt;
    process = process * 10 + (digit - '0');
  }
  return process;
}

}  // namespace

std::string profile_folder(passwd* (*user_of)(uid_t)) {
  const char* const config = std::getenv("XDG_CONFIG_HOME");
  if (config != nullptr && config[0] == '/') return std::string(config) + "/strokemind";
  const char* home = std::getenv("HOME");
  if (home == nullptr || home[0] != '/') {
    const passwd* const user = user_of(::getuid());
    home = user != nullptr ? user->pw_dir : "/";
  }
  return std::string(home) + "/.config/strokemind";
}

platform::ReadOutcome ProfileFolder::read(std::string_view file, std::string& bytes) {
  using platform::ReadOutcome;
  const Descriptor descriptor(files_, path(file), platform::Opening::read);
  if (!descriptor.open()) return errno == ENOENT || errno == ENOTDIR ? ReadOutcome::missing : ReadOutcome::unreadable;
  platform::FileState state;
  if (files_.fstat(descriptor.get(), state) != 0 || !state.regular || state.size > largest_profile) {
    return ReadOutcome::unreadable;
  }
  bytes.resize(static_cast<std::size_t>(state.size));
  std::size_t filled = 0;
  while (filled < bytes.size()) {
    const std::int64_t got =
        steadily([&] { return files_.read(descriptor.get(), bytes.data() + filled, bytes.size() - filled); });
    if (got < 0) return ReadOutcome::unreadable;
    if (got == 0) break;
    filled += static_cast<std::size_t>(got);
  }
  bytes.resize(filled);
  return ReadOutcome::read;
}

// The file behind a chain of symbolic links, which need not exist yet. Nothing where the chain cannot be followed: a
// file put in the place of the link would be another one than the user's.
std::optional<std::string> ProfileFolder::resolved(std::string path) const {
  constexpr int most_links = 40;
  for (int n = 0; n < most_links; ++n) {
    std::string link;
    if (steadily([&] { return files_.readlink(path, link); }) != 0) {
      if (errno == EINVAL || errno == ENOENT || errno == ENOTDIR) return path;
      return std::nullopt;
    }
    path = link.starts_with('/') ? link : folder_of(path).append("/").append(link);
  }
  errno = ELOOP;
  return std::nullopt;
}

// The process is part of the name, so that two that save at once do not tread on each other.
std::string ProfileFolder::temporary_of(const std::string& target) const {
  return folder_of(target) + "/." + name_of(target) + mark_temporary + std::to_string(files_.process());
}

// What an earlier save, or an earlier process of the same number, could not remove is taken over.
int ProfileFolder::create_temporary(const std::string& path) {
  const auto create = [&] { return steadily([&] { return files_.open(path, platform::Opening::create); }); };
  const int fd = create();
  if (fd >= 0 || errno != EEXIST || files_.unlink(path) != 0) return fd;
  return create();
}

bool ProfileFolder::write_temporary(const std::string& temporary, const std::string& target, std::string_view bytes) {
  Descriptor file(files_, create_temporary(temporary));
  if (!file.open()) return false;
  platform::FileState old;
  const bool there = files_.stat(target, old) == 0;
  if (!there && errno != ENOENT) return false;
  const auto keep_mode = [&] { return files_.fchmod(file.get(), old.mode); };
  if (there && old.regular && steadily(keep_mode) != 0) return false;
  return write_all(files_, file.get(), bytes) && steadily([&] { return files_.fsync(file.get()); }) == 0 &&
         file.close();
}

// Makes a folder and those above it. Where it cannot, the opening of the temporary file tells.
void ProfileFolder::make_folder(const std::string& folder) {
  if (folder.empty()) return;
  int made = files_.mkdir(folder);
  if (made != 0 && errno == ENOENT) {
    make_folder(folder_of(folder));
    made = files_.mkdir(folder);
  }
  if (made == 0) make_lasting(folder_of(folder));
}

// Makes the names in a folder outlast a power cut.
bool ProfileFolder::make_lasting(const std::string& folder) {
  const Descriptor directory(files_, folder + "/", platform::Opening::folder);
  return directory.open() && steadily([&] { return files_.fsync(directory.get()); }) == 0;
}

// Removes the temporary files of processes that were killed while they saved, and any that this one could not remove.
void ProfileFolder::remove_leftovers(const std::string& target) {
  const std::string folder = folder_of(target) + "/";
  std::vector<std::string> names;
  if (files_.list(folder, names) != 0) return;
  for (const std::string& name : names) {
    const std::optional<std::int64_t> writer = writer_of(name, target);
    if (writer && (*writer == files_.process() || !files_.alive(*writer))) files_.unlink(folder + name);
  }
}

bool ProfileFolder::replace(std::string_view file, std::string_view bytes) {
  const std::optional<std::string> target = resolved(path(file));
  if (!target) {
    complain("save", path(file));
    return false;
  }
  make_folder(folder_of(*target));
  const std::string temporary = temporary_of(*target);
  if (!write_temporary(temporary, *target, bytes) || files_.rename(temporary, *target) != 0) {
    complain("save", *target);
    files_.unlink(temporary);
    return false;
  }
  // The new file is in place; only a power cut in the next moments could still bring the old one back.
  if (!make_lasting(folder_of(*target))) complain("make lasting", *target);
  remove_leftovers(*target);
  if (path(file) != *target) remove_leftovers(path(file));
  return true;
}

bool ProfileFolder::set_aside(std::string_view file) {
  const std::optional<std::string> original = resolved(path(file));
  if (original && files_.lstat(*original) != 0 && errno == ENOENT) return true;
  for (int n = 1; original && n <= most_copies; ++n) {
    const Copy copy = copy_to(*original, file, std::string(file) + mark_copy + (n == 1 ? "" : "-" + std::to_string(n)));
    if (copy == Copy::name_taken) continue;
    if (copy == Copy::failed) break;
    // The save that follows must not outlast the copy.
    if (copy == Copy::made && !make_lasting(folder_)) complain("make lasting", path(file) + mark_copy);
    return true;
  }
  complain("set aside", path(file));
  return false;
}

ProfileFolder::Copy ProfileFolder::copy_to(const std::string& original, std::string_view file,
                                           const std::string& name) {
  if (files_.link(original, path(name)) == 0) return Copy::made;
  std::string bytes;
  const bool readable = read(file, bytes) == platform::ReadOutcome::read;
  if (files_.lstat(path(name)) == 0) {
    // What has been kept already need not be kept again: an oddity may survive the save, and come at every start.
    std::string kept;
    const bool same = readable && read(name, kept) == platform::ReadOutcome::read && kept == bytes;
    return same ? Copy::there_already : Copy::name_taken;
  }
  // Without knowing that the name is free nothing may be put there.
  if (errno != ENOENT) return Copy::failed;
  if (readable) return replace(name, bytes) ? Copy::made : Copy::failed;
  return files_.rename(original, path(name)) == 0 ? Copy::made : Copy::failed;
}

}  // namespace desktop
