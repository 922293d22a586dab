#include "simulation/disk_in_memory.h"

#include <algorithm>
#include <cerrno>
#include <utility>

namespace simulation {

using platform::FileState;
using platform::Opening;

namespace {

constexpr std::size_t root = 1;

std::string last_name(const std::string& path) {
  return path.substr(path.rfind('/') + 1);
}

std::size_t up_to(std::mt19937& chances, std::size_t most) {
  return std::uniform_int_distribution<std::size_t>(0, most)(chances);
}

}  // namespace

DiskInMemory::DiskInMemory() : nodes_(root + 1) {
  nodes_[root].folder = true;
}

bool DiskInMemory::powered() {
  if (calls_left == 0) off_ = true;
  if (!off_ && calls_left != never) --calls_left;
  if (off_) errno = EIO;
  return !off_;
}

int DiskInMemory::fail(int error) const {
  errno = error;
  return -1;
}

DiskInMemory::Number DiskInMemory::find(const std::string& path) const {
  Number number = root;
  for (std::size_t start = 1; start < path.size();) {
    const std::size_t end = std::min(path.find('/', start), path.size());
    const Node& folder = nodes_[number];
    const auto entry = folder.entries.find(path.substr(start, end - start));
    if (!folder.folder || entry == folder.entries.end() || entry->second.back() == 0) return 0;
    number = entry->second.back();
    start = end + 1;
  }
  return number;
}

DiskInMemory::Node* DiskInMemory::folder_of(const std::string& path) {
  const Number number = find(path.substr(0, path.rfind('/')));
  return number != 0 && nodes_[number].folder ? &nodes_[number] : nullptr;
}

void DiskInMemory::point(const std::string& path, Number to) {
  std::vector<Number>& history = folder_of(path)->entries[last_name(path)];
  if (history.empty()) history.push_back(0);
  history.push_back(to);
}

void DiskInMemory::put(const std::string& path, std::string bytes) {
  nodes_.emplace_back();
  nodes_.back().bytes = std::move(bytes);
  nodes_.back().changed = clock_;
  point(path, nodes_.size() - 1);
}

std::optional<std::string> DiskInMemory::file(const std::string& path) const {
  const Number number = find(path);
  if (number == 0 || nodes_[number].folder) return std::nullopt;
  return nodes_[number].bytes;
}

std::vector<std::string> DiskInMemory::names(const std::string& folder) const {
  std::vector<std::string> found;
  const Number number = find(folder);
  if (number == 0) return found;
  for (const auto& [name, history] : nodes_[number].entries) {
    if (history.back() != 0) found.push_back(name);
  }
  return found;
}

void DiskInMemory::restart() {
  off_ = false;
  calls_left = never;
  open_.clear();
  ++process_;
  constexpr std::int64_t until_next_start = 100;
  clock_ += until_next_start;
}

void DiskInMemory::lose_power(std::mt19937& chances) {
  for (Node& node : nodes_) settle(node, chances);
  restart();
}

FileState DiskInMemory::state_of(const Node& node) {
  return {!node.folder, node.mode, static_cast<std::int64_t>(node.bytes.size()), node.changed};
}

void DiskInMemory::settle(Node& node, std::mt19937& chances) const {
  for (auto& [name, history] : node.entries) history = {history[up_to(chances, history.size() - 1)]};
  if (node.bytes == node.lasting) return;
  switch (up_to(chances, 3)) {
    case 0:
      node.bytes = node.lasting;
      break;
    case 1:
      // The length was noted, the bytes were not.
      for (char& byte : node.bytes) byte = static_cast<char>(up_to(chances, 255));
      break;
    case 2:
      // So far and no farther, and blocks that were never written.
      std::fill(node.bytes.begin() + static_cast<std::ptrdiff_t>(up_to(chances, node.bytes.size())), node.bytes.end(),
                '\0');
      break;
    default:
      break;
  }
  node.lasting = node.bytes;
}

int DiskInMemory::open(const std::string& path, Opening how) {
  if (!powered()) return -1;
  Number number = find(path);
  if (how == Opening::create) {
    if (number != 0) return fail(EEXIST);
    if (folder_of(path) == nullptr) return fail(ENOENT);
    nodes_.emplace_back();
    number = nodes_.size() - 1;
    nodes_[number].changed = clock_;
    point(path, number);
  }
  if (number == 0) return fail(ENOENT);
  if (how == Opening::folder && !nodes_[number].folder) return fail(ENOTDIR);
  open_[next_file_] = {number, 0};
  return next_file_++;
}

int DiskInMemory::close(int file) {
  if (!powered()) return -1;
  return open_.erase(file) == 1 ? 0 : fail(EBADF);
}

std::int64_t DiskInMemory::read(int file, char* bytes, std::size_t size) {
  if (!powered()) return -1;
  Open& open = open_.at(file);
  const std::string& from = nodes_[open.node].bytes;
  const std::size_t count = std::min(size, from.size() - open.place);
  std::copy_n(from.begin() + static_cast<std::ptrdiff_t>(open.place), count, bytes);
  open.place += count;
  return static_cast<std::int64_t>(count);
}

std::int64_t DiskInMemory::write(int file, const char* bytes, std::size_t size) {
  if (!powered()) return -1;
  Node& node = nodes_[open_.at(file).node];
  node.bytes.append(bytes, size);
  node.changed = clock_;
  return static_cast<std::int64_t>(size);
}

int DiskInMemory::fstat(int file, FileState& state) {
  if (!powered()) return -1;
  state = state_of(nodes_[open_.at(file).node]);
  return 0;
}

int DiskInMemory::stat(const std::string& path, FileState& state) {
  if (!powered()) return -1;
  const Number number = find(path);
  if (number == 0) return fail(ENOENT);
  state = state_of(nodes_[number]);
  return 0;
}

int DiskInMemory::lstat(const std::string& path) {
  if (!powered()) return -1;
  return find(path) != 0 ? 0 : fail(ENOENT);
}

int DiskInMemory::fchmod(int file, unsigned int mode) {
  if (!powered()) return -1;
  nodes_[open_.at(file).node].mode = mode;
  return 0;
}

int DiskInMemory::fsync(int file) {
  if (!powered()) return -1;
  Node& node = nodes_[open_.at(file).node];
  node.lasting = node.bytes;
  for (auto& [name, history] : node.entries) history = {history.back()};
  return 0;
}

int DiskInMemory::rename(const std::string& from, const std::string& to) {
  if (!powered()) return -1;
  const Number number = find(from);
  if (number == 0 || folder_of(to) == nullptr) return fail(ENOENT);
  point(to, number);
  point(from, 0);
  return 0;
}

int DiskInMemory::link(const std::string& from, const std::string& to) {
  if (!powered()) return -1;
  const Number number = find(from);
  if (number == 0 || folder_of(to) == nullptr) return fail(ENOENT);
  if (find(to) != 0) return fail(EEXIST);
  if (linkless) return fail(EPERM);
  point(to, number);
  return 0;
}

int DiskInMemory::unlink(const std::string& path) {
  if (!powered()) return -1;
  if (find(path) == 0) return fail(ENOENT);
  point(path, 0);
  return 0;
}

int DiskInMemory::mkdir(const std::string& path) {
  if (!powered()) return -1;
  if (find(path) != 0) return fail(EEXIST);
  if (folder_of(path) == nullptr) return fail(ENOENT);
  nodes_.emplace_back();
  nodes_.back().folder = true;
  point(path, nodes_.size() - 1);
  return 0;
}

int DiskInMemory::readlink(const std::string& path, std::string& /*target*/) {
  if (!powered()) return -1;
  return fail(find(path) != 0 ? EINVAL : ENOENT);
}

int DiskInMemory::list(const std::string& folder, std::vector<std::string>& found) {
  if (!powered()) return -1;
  if (find(folder) == 0) return fail(ENOENT);
  found = names(folder);
  return 0;
}

}  // namespace simulation
