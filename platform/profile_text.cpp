#include "platform/profile_text.h"

#include <algorithm>

#include "platform/text.h"

namespace platform {

namespace {

constexpr std::size_t max_keys = 1000;  // of one section: keys are looked up one by one

}  // namespace

ProfileText ProfileText::parse(std::string_view bytes) {
  ProfileText text;
  Section* current = nullptr;
  while (!bytes.empty()) {
    const std::size_t end = bytes.find_first_of("\r\n");
    text.parse_line(bytes.substr(0, end), current);
    if (end == std::string_view::npos) break;
    bytes.remove_prefix(end + 1);
  }
  return text;
}

void ProfileText::parse_line(std::string_view line, Section*& current) {
  line = trimmed(line);
  if (line.empty()) return;
  if (line.front() == '[' && line.find('\0') == std::string_view::npos) {
    const std::size_t end = line.rfind(']');
    const std::string name = from_cp1252(trimmed(line.substr(1, end == std::string_view::npos ? end : end - 1)));
    if (end != line.size() - 1 || name.empty()) residue_ = true;
    if (end == std::string_view::npos || name.empty()) {
      current = nullptr;
      return;
    }
    // A section that comes again is not seen: the first of a name counts.
    current = find(name) == nullptr ? &append(name) : nullptr;
    if (current == nullptr) residue_ = true;
    return;
  }
  const std::size_t mark = line.find('=');
  const std::string key = from_cp1252(trimmed(line.substr(0, mark == std::string_view::npos ? 0 : mark)));
  const bool readable = line.front() != ';' && !key.empty() && line.find('\0') == std::string_view::npos;
  const auto same_key = [&](const Entry& entry) { return equal_ignoring_case(entry.key, key); };
  if (!readable || current == nullptr || current->entries.size() >= max_keys ||
      std::any_of(current->entries.begin(), current->entries.end(), same_key)) {
    residue_ = true;
    return;
  }
  current->entries.push_back({key, from_cp1252(trimmed(line.substr(mark + 1)))});
}

std::string ProfileText::bytes() const {
  std::string result;
  for (const Section& section : sections_) {
    result += "[" + to_cp1252(section.name) + "]\r\n";
    for (const Entry& entry : section.entries) result += to_cp1252(entry.key) + "=" + to_cp1252(entry.value) + "\r\n";
  }
  return result;
}

std::vector<std::string> ProfileText::sections() const {
  std::vector<std::string> names;
  names.reserve(sections_.size());
  for (const Section& section : sections_) names.push_back(section.name);
  return names;
}

std::vector<std::string> ProfileText::keys(std::string_view section) const {
  std::vector<std::string> names;
  if (const Section* found = find(section)) {
    for (const Entry& entry : found->entries) names.push_back(entry.key);
  }
  return names;
}

const std::string* ProfileText::value(std::string_view section, std::string_view key) const {
  const Section* found = find(section);
  if (found == nullptr) return nullptr;
  for (const Entry& entry : found->entries) {
    if (equal_ignoring_case(entry.key, key)) return &entry.value;
  }
  return nullptr;
}

void ProfileText::set(std::string_view section, std::string_view key, std::string_view value) {
  Section* target = find(section);
  if (target == nullptr) target = &append(section);
  std::string line(value);
  std::replace_if(
      line.begin(), line.end(), [](char c) { return c == '\r' || c == '\n' || c == '\0'; }, ' ');
  for (Entry& entry : target->entries) {
    if (equal_ignoring_case(entry.key, key)) {
      entry.value = std::move(line);
      return;
    }
  }
  target->entries.push_back({std::string(key), std::move(line)});
}

void ProfileText::clear() {
  sections_.clear();
  places_.clear();
}

ProfileText::Section& ProfileText::append(std::string_view name) {
  places_.emplace(upper_case(name), sections_.size());
  return sections_.emplace_back(Section{std::string(name), {}});
}

const ProfileText::Section* ProfileText::find(std::string_view name) const {
  const auto place = places_.find(upper_case(name));
  return place == places_.end() ? nullptr : &sections_[place->second];
}

ProfileText::Section* ProfileText::find(std::string_view name) {
  const auto place = places_.find(upper_case(name));
  return place == places_.end() ? nullptr : &sections_[place->second];
}

}  // namespace platform
