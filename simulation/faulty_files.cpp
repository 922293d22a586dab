#include "simulation/faulty_files.h"

#include <algorithm>
#include <cerrno>
#include <map>

namespace simulation {

using platform::FileState;
using platform::Opening;

bool FaultyFiles::hits(std::string_view name) const {
  if (!fault || calls.size() <= fault->call) return false;
  const bool its_own = calls.size() == fault->call + 1;
  return its_own || (fault->lasting && calls[fault->call] == name);
}

template <class Call>
auto FaultyFiles::made(std::string_view name, const std::string& changed, const Call& call) -> decltype(call()) {
  calls.push_back(name);
  if (before) before();
  if (hits(name) && fault->error != 0) {
    errno = fault->error;
    return -1;
  }
  if (!read_only.empty() && changed.starts_with(read_only)) {
    errno = EROFS;
    return -1;
  }
  const auto result = call();
  // What `after` does must not hide the reason of a failure.
  const int reason = errno;
  if (after) after();
  errno = reason;
  return result;
}

// To be asked before the call is counted.
bool FaultyFiles::stops_half_way(std::string_view name) const {
  if (!fault || fault->error != 0) return false;
  return calls.size() == fault->call || (fault->lasting && calls.size() > fault->call && calls[fault->call] == name);
}

int FaultyFiles::open(const std::string& path, Opening how) {
  return made("open", how == Opening::create ? path : "", [&] {
    if (how != Opening::read || path != unreadable) return below_.open(path, how);
    errno = EACCES;
    return -1;
  });
}

int FaultyFiles::close(int file) {
  const int result = made("close", "", [&] { return below_.close(file); });
  // The descriptor is gone even where closing fails.
  if (result != 0 && fault && hits("close")) {
    const int reason = errno;
    below_.close(file);
    errno = reason;
  }
  return result;
}

std::int64_t FaultyFiles::read(int file, char* bytes, std::size_t size) {
  if (stops_half_way("read")) size = (size + 1) / 2;
  return made("read", "", [&] { return below_.read(file, bytes, size); });
}

std::int64_t FaultyFiles::write(int file, const char* bytes, std::size_t size) {
  if (stops_half_way("write")) size = (size + 1) / 2;
  if (longest_write != 0) size = std::min(size, longest_write);
  return made("write", "", [&] { return below_.write(file, bytes, size); });
}

int FaultyFiles::fstat(int file, FileState& state) {
  return made("fstat", "", [&] { return below_.fstat(file, state); });
}

int FaultyFiles::stat(const std::string& path, FileState& state) {
  return made("stat", "", [&] { return below_.stat(path, state); });
}

int FaultyFiles::lstat(const std::string& path) {
  return made("lstat", "", [&] { return below_.lstat(path); });
}

int FaultyFiles::fchmod(int file, unsigned int mode) {
  return made("fchmod", "", [&] { return below_.fchmod(file, mode); });
}

int FaultyFiles::fsync(int file) {
  return made("fsync", "", [&] { return below_.fsync(file); });
}

int FaultyFiles::rename(const std::string& from, const std::string& to) {
  return made("rename", to, [&] { return below_.rename(from, to); });
}

int FaultyFiles::link(const std::string& from, const std::string& to) {
  return made("link", to, [&] {
    if (!linkless) return below_.link(from, to);
    errno = EPERM;
    return -1;
  });
}

int FaultyFiles::unlink(const std::string& path) {
  return made("unlink", path, [&] { return below_.unlink(path); });
}

int FaultyFiles::mkdir(const std::string& path) {
  return made("mkdir", path, [&] { return below_.mkdir(path); });
}

int FaultyFiles::readlink(const std::string& path, std::string& target) {
  return made("readlink", "", [&] { return below_.readlink(path, target); });
}

int FaultyFiles::list(const std::string& folder, std::vector<std::string>& names) {
  return made("list", "", [&] { return below_.list(folder, names); });
}

const std::vector<int>& errors_of(std::string_view call) {
  static const std::map<std::string_view, std::vector<int>> errors = {
      {"open", {EACCES, EDQUOT, EINTR, EIO, ELOOP, EMFILE, ENFILE, ENOMEM, ENOSPC, EPERM, EROFS}},
      {"close", {EDQUOT, EINTR, EIO, ENOSPC}},
      {"read", {0, EINTR, EIO}},
      {"write", {0, EDQUOT, EFBIG, EINTR, EIO, ENOSPC, EPERM}},
      {"fstat", {EIO, ENOMEM, EOVERFLOW}},
      {"stat", {EACCES, EIO, ELOOP, ENOMEM, EOVERFLOW}},
      {"lstat", {EACCES, EIO, ENOMEM}},
      {"fchmod", {EINTR, EIO, EPERM, EROFS}},
      {"fsync", {EDQUOT, EINTR, EINVAL, EIO, ENOSPC, EROFS}},
      {"rename", {EACCES, EBUSY, EDQUOT, EIO, ENOMEM, ENOSPC, EPERM, EROFS, EXDEV}},
      {"link", {EACCES, EDQUOT, EIO, EMLINK, ENOSPC, EPERM, EROFS, EXDEV}},
      {"unlink", {EACCES, EBUSY, EIO, EPERM, EROFS}},
      {"mkdir", {EACCES, EDQUOT, EIO, EMLINK, ENOENT, ENOSPC, EROFS}},
      {"readlink", {EACCES, EIO, ELOOP, ENOMEM}},
      {"list", {EACCES, EIO, EMFILE, ENOMEM}}};
  return errors.at(call);
}

}  // namespace simulation
