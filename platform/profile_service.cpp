#include "platform/profile_service.h"

#include <algorithm>

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
  return gathered(file).exists;
}

void ProfileService::Kill(std::string_view file) {
  gathered(file).text.clear();
}

bool ProfileService::flush(std::string_view file) {
  Gathered& pending = gathered(file);
  if (pending.preserve) {
    if (!files_.set_aside(file)) return false;
    pending.preserve = false;
  }
  if (!files_.replace(file, pending.text.bytes())) return false;
  pending.exists = true;
  return true;
}

void ProfileService::preserve(std::string_view file) {
  gathered(file).preserve = true;
}

}  // namespace platform
