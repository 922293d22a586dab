#include "platform/profile_service.h"

#include <algorithm>
#include <utility>

namespace platform {

namespace {

// Cuts to `limit` characters, never inside one.
std::string cut(std::string text, std::size_t limit) {
  std::size_t characters = 0;
  std::size_t end = 0;
  while (end < text.size()) {
    if (characters == limit) {
      text.resize(end);
      break;
    }
    ++characters;
    ++end;
    while (end < text.size() && (static_cast<unsigned char>(text[end]) & 0xC0U) == 0x80) ++end;
  }
  return text;
}

std::string nul_separated(const std::vector<std::string>& names) {
  std::string list;
  for (const std::string& name : names) list.append(name).push_back('\0');
  return list;
}

}  // namespace

ProfileService::Gathered& ProfileService::gathered(std::string_view file) {
  const auto known = gathered_.find(file);
  if (known != gathered_.end()) return known->second;
  Gathered& fresh = gathered_[std::string(file)];
  std::string bytes;
  const ReadOutcome outcome = files_.read(file, bytes);
  fresh.exists = outcome != ReadOutcome::missing;
  fresh.preserve = outcome == ReadOutcome::unreadable;
  if (outcome == ReadOutcome::read) {
    fresh.text = ProfileText::parse(bytes);
    fresh.preserve = fresh.text.residue();
    fresh.known = std::move(bytes);
  }
  return fresh;
}

std::string ProfileService::GetPrivateProfileStringA(std::optional<std::string_view> section,
                                                     std::optional<std::string_view> key, std::string_view fallback,
                                                     std::size_t size, std::string_view file) {
  const ProfileText& text = gathered(file).text;
  if (!section) return cut(nul_separated(text.sections()), size - 2);
  if (!key) return cut(nul_separated(text.keys(*section)), size - 2);
  const std::string* const value = text.value(*section, *key);
  return cut(value == nullptr ? std::string(fallback) : *value, size - 1);
}

bool ProfileService::WritePrivateProfileStringA(std::string_view section, std::string_view key, std::string_view value,
                                                std::string_view file) {
  gathered(file).text.set(section, key, value);
  return true;
}

bool ProfileService::Dir(std::string_view file) {
  // What a failed save has left gathered is to be dropped like a file.
  const Gathered& known = gathered(file);
  return known.exists || !known.text.empty();
}

void ProfileService::Kill(std::string_view file) {
  gathered(file).text.clear();
}

bool ProfileService::flush(std::string_view file) {
  Gathered& pending = gathered(file);
  std::string bytes = pending.text.bytes();
  if (foreign(file, pending, bytes)) pending.preserve = true;
  if (pending.preserve && !files_.set_aside(file)) return false;
  if (!files_.replace(file, bytes)) return false;
  // Until then the copy may be owed still.
  pending.preserve = false;
  pending.known = std::move(bytes);
  pending.exists = true;
  return true;
}

// Whether the file holds something that neither was seen here nor is about to be written: another instance has saved,
// or a hand has changed it.
bool ProfileService::foreign(std::string_view file, const Gathered& pending, const std::string& next) {
  std::string now;
  const ReadOutcome outcome = files_.read(file, now);
  if (outcome == ReadOutcome::read) return now != pending.known && now != next;
  return outcome == ReadOutcome::unreadable;
}

void ProfileService::preserve(std::string_view file) {
  gathered(file).preserve = true;
}

}  // namespace platform
