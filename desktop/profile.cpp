#include "desktop/profile.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <charconv>
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
constexpr std::int64_t longest_save = 60;            // seconds; a temporary file that is older is nobody's
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
  const std::string_view numbers = name.substr(mark + std::strlen(mark_temporary));
  const char* const end = numbers.data() + numbers.size();
  std::int64_t process = 0;
  std::uint32_t drawn = 0;
  const auto first = std::from_chars(numbers.data(), end, process);
  if (first.ec != std::errc{} || process <= 0 || first.ptr == end || *first.ptr != '-') return std::nullopt;
  const auto second = std::from_chars(first.ptr + 1, end, drawn);
  if (second.ec != std::errc{} || second.ptr != end) return std::nullopt;
  return process;
}

// A sync that the file system does not know, or that takes a right which one who can write there need not have.
bool no_sync_here() {
  return errno == EACCES || errno == EINVAL;
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
    if (files_.readlink(path, link) != 0) {
      if (errno == EINVAL || errno == ENOENT || errno == ENOTDIR) return path;
      return std::nullopt;
    }
    path = link.starts_with('/') ? link : folder_of(path).append("/").append(link);
  }
  errno = ELOOP;
  return std::nullopt;
}

// Two that save at once must not tread on each other: two processes here differ by their number, and two that share a
// number, on other machines or in other containers, by chance.
std::string ProfileFolder::temporary_of(const std::string& target) {
  return folder_of(target) + "/." + name_of(target) + mark_temporary + std::to_string(files_.process()) + "-" +
         std::to_string(files_.random());
}

bool ProfileFolder::fill(int file, const std::string& target, std::string_view bytes) {
  platform::FileState old;
  const bool there = files_.stat(target, old) == 0;
  if (!there && errno != ENOENT) return false;
  // What is saved must be found again, even in the place of a file that nobody could read.
  constexpr unsigned int readable = 0400;
  const auto keep_mode = [&] { return files_.fchmod(file, old.mode | readable); };
  if (there && old.regular && steadily(keep_mode) != 0) return false;
  return write_all(files_, file, bytes) && steadily([&] { return files_.fsync(file); }) == 0;
}

// Makes a folder and those above it; whether it did. Where it cannot, the opening of the temporary file tells.
bool ProfileFolder::make_folder(const std::string& folder) {
  if (folder.empty()) return false;
  int made = files_.mkdir(folder);
  if (made != 0 && errno == ENOENT) {
    make_folder(folder_of(folder));
    made = files_.mkdir(folder);
  }
  return made == 0;
}

// Makes the names in a folder outlast a power cut.
bool ProfileFolder::make_lasting(const std::string& folder) {
  const Descriptor directory(files_, folder + "/", platform::Opening::folder);
  return (directory.open() && steadily([&] { return files_.fsync(directory.get()); }) == 0) || no_sync_here();
}

// The same for the names of a folder and of those above it.
bool ProfileFolder::make_way_lasting(std::string folder) {
  bool lasting = true;
  while (!folder.empty()) {
    folder = folder_of(folder);
    lasting = make_lasting(folder) && lasting;
  }
  return lasting;
}

// The same for a copy: its bytes, which whoever wrote them need not have synced, and its name.
bool ProfileFolder::make_copy_lasting(const std::string& copy) {
  const Descriptor file(files_, copy, platform::Opening::read);
  const bool lasting = file.open() && steadily([&] { return files_.fsync(file.get()); }) == 0;
  // Something that is no file, such as a socket, has no bytes.
  return (lasting || no_sync_here() || errno == ENXIO) && make_lasting(folder_);
}

// Removes the temporary files of processes that were killed while they saved, and any that this one could not remove.
// A process that is not here may be on another machine: what is new is left to it.
void ProfileFolder::remove_leftovers(const std::string& target) {
  std::erase_if(own_leftovers_, [&](const auto& path) { return files_.unlink(path) == 0 || errno == ENOENT; });
  const std::string folder = folder_of(target) + "/";
  std::vector<std::string> names;
  if (files_.list(folder, names) != 0) return;
  for (const std::string& name : names) {
    const std::optional<std::int64_t> writer = writer_of(name, target);
    if (!writer || (*writer != files_.process() && files_.alive(*writer))) continue;
    // The file just saved tells the time: the clock of the disk may not be the one of this machine.
    platform::FileState saved;
    platform::FileState left;
    if (files_.stat(target, saved) != 0 || files_.stat(folder + name, left) != 0) continue;
    if (saved.changed - left.changed > longest_save) files_.unlink(folder + name);
  }
}

bool ProfileFolder::replace(std::string_view file, std::string_view bytes) {
  const auto move = std::exchange(move_, std::nullopt);
  const std::optional<std::string> target = resolved(path(file));
  if (!target) {
    complain("save", path(file));
    return false;
  }
  const std::string folder = folder_of(*target);
  // Once in any case: an earlier process may have been killed when it had just made them.
  const bool made = make_folder(folder);
  if (made || way_lasting_ != folder) way_lasting_ = make_way_lasting(folder) ? folder : "";
  const std::string temporary = temporary_of(*target);
  Descriptor fresh(files_, temporary, platform::Opening::create);
  if (!fresh.open()) {
    complain("save", *target);
    return false;
  }
  bool moved = false;
  if (!fill(fresh.get(), *target, bytes) || !fresh.close() || (move && !move_away(*move, moved)) ||
      files_.rename(temporary, *target) != 0) {
    complain("save", *target);
    if (moved) files_.rename(move->to, move->from);
    if (files_.unlink(temporary) != 0) own_leftovers_.push_back(temporary);
    return false;
  }
  // The new file is in place; only a power cut in the next moments could still bring the old one back.
  if (!make_lasting(folder)) complain("make lasting", *target);
  remove_leftovers(*target);
  if (path(file) != *target) remove_leftovers(path(file));
  return true;
}

// `moved` tells how far it came where it fails.
bool ProfileFolder::move_away(const Move& move, bool& moved) {
  if (files_.lstat(move.to) == 0) errno = EEXIST;
  if (errno != ENOENT) return false;
  moved = files_.rename(move.from, move.to) == 0;
  return moved && make_copy_lasting(move.to);
}

bool ProfileFolder::set_aside(std::string_view file) {
  move_.reset();
  const std::optional<std::string> original = resolved(path(file));
  if (original && files_.lstat(*original) != 0 && errno == ENOENT) return true;
  for (int n = 1; original && n <= most_copies; ++n) {
    const std::string name = std::string(file) + mark_copy + (n == 1 ? "" : "-" + std::to_string(n));
    const Copy copy = copy_to(*original, file, name);
    if (copy == Copy::name_taken) continue;
    if (copy == Copy::failed) break;
    // The save that follows must not outlast the copy.
    if (copy == Copy::made && !make_copy_lasting(path(name))) break;
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
    return same ? Copy::made : Copy::name_taken;
  }
  // Without knowing that the name is free nothing may be put there.
  if (errno != ENOENT) return Copy::failed;
  if (readable) return replace(name, bytes) ? Copy::made : Copy::failed;
  // Not before the new file is ready: a save that fails must leave the old one in its place.
  move_ = Move{original, path(name)};
  return Copy::owed;
}

}  // namespace desktop
