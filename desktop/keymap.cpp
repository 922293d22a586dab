#include "desktop/keymap.h"

#include <X11/XKBlib.h>
#include <X11/keysym.h>

#include <algorithm>
#include <bit>

namespace desktop {
namespace {

int popcount(unsigned bits) {
  return std::popcount(bits);
}

// The group of a key that is in force while the keyboard as a whole is in `group`.
int group_of_key(XkbDescPtr description, unsigned code, int group) {
  const int count = XkbKeyNumGroups(description, code);
  if (group < count) return group;
  const unsigned info = XkbKeyGroupInfo(description, code);
  switch (XkbOutOfRangeGroupAction(info)) {
    case XkbClampIntoRange:
      return count - 1;
    case XkbRedirectIntoRange: {
      const auto target = static_cast<int>(XkbOutOfRangeGroupNumber(info));
      return target < count ? target : 0;
    }
    default:
      return group % count;
  }
}

// The fewest modifiers out of `usable` that choose a level of a key; nothing where they cannot.
std::optional<std::uint8_t> modifiers_for_level(const XkbKeyTypeRec& type, int level, unsigned usable) {
  std::optional<std::uint8_t> fewest;
  if (level == 0) fewest = 0;  // what no entry names is level 0
  for (int i = 0; i < type.map_count; ++i) {
    const XkbKTMapEntryRec& entry = type.map[i];
    if (entry.active == 0 || entry.level != level || (entry.mods.mask & ~usable) != 0) continue;
    if (!fewest || popcount(entry.mods.mask) < popcount(*fewest)) fewest = entry.mods.mask;
  }
  return fewest;
}

// The real modifiers that a key holds while it is down.
std::uint8_t modifiers_set_by(XkbDescPtr description, unsigned code) {
  if (XkbKeyHasActions(description, code) == 0) return 0;
  const XkbAction& action = XkbKeyActionsPtr(description, code)[0];
  if (action.type != XkbSA_SetMods) return 0;
  return (action.mods.flags & XkbSA_UseModMapMods) != 0 ? description->map->modmap[code] : action.mods.mask;
}

}  // namespace

Keymap::Keymap(const InputConnection& connection) {
  const XkbDescPtr description = XkbGetMap(connection.display(), XkbAllMapComponentsMask, connection.device());
  if (description == nullptr) return;
  first_code_ = description->min_key_code;
  last_code_ = description->max_key_code;
  int groups = 1;
  for (unsigned code = first_code_; code <= last_code_; ++code) {
    groups = std::max<int>(groups, XkbKeyNumGroups(description, code));
  }
  read_modifiers(description);
  for (unsigned code = first_code_; code <= last_code_; ++code) read_key(description, code, groups);
  XkbFreeKeyboard(description, 0, True);
}

void Keymap::read_modifiers(XkbDescPtr description) {
  for (unsigned code = first_code_; code <= last_code_; ++code) {
    const std::uint8_t set = modifiers_set_by(description, code);
    real_modifiers_[code] = set | description->map->modmap[code];
    if (!std::has_single_bit(set) || XkbKeyNumGroups(description, code) == 0) continue;
    // Of several keys the first: it is the plainest, the left one.
    std::uint8_t& key = modifier_keys_[static_cast<std::size_t>(std::countr_zero(set))];
    if (key == 0) key = static_cast<std::uint8_t>(code);
  }
}

void Keymap::read_key(XkbDescPtr description, unsigned code, int groups) {
  if (XkbKeyNumGroups(description, code) == 0) return;
  // Levels may be reached by what a key can hold; a lock is not to be touched for it.
  unsigned usable = 0;
  for (std::size_t i = 0; i < modifier_keys_.size(); ++i) usable |= modifier_keys_[i] != 0 ? 1U << i : 0U;
  usable &= ~static_cast<unsigned>(LockMask);
  for (int group = 0; group < groups; ++group) {
    const int own = group_of_key(description, code, group);
    const XkbKeyTypeRec& type = *XkbKeyKeyType(description, code, own);
    for (int level = 0; level < type.num_levels; ++level) {
      const auto symbol = static_cast<Symbol>(XkbKeySymEntry(description, code, level, own));
      if (symbol == NoSymbol) continue;
      if (first_symbols_[code] == no_symbol) first_symbols_[code] = symbol;
      const auto modifiers = modifiers_for_level(type, level, usable);
      if (!modifiers) continue;
      const KeyPlace place{static_cast<std::uint8_t>(code), static_cast<std::uint8_t>(group), *modifiers};
      by_symbol_.emplace(symbol, place);
      if (const char32_t character = character_of_symbol(symbol); character != 0)
        by_character_.emplace(character, place);
    }
  }
}

std::optional<KeyPlace> Keymap::best(const Places& places, std::uint32_t what, int group) {
  const auto [begin, end] = places.equal_range(what);
  const auto order = [group](const auto& a, const auto& b) {
    const auto rank = [group](const KeyPlace& place) {
      return std::array<int, 4>{place.group != group, popcount(place.modifiers), place.group, place.code};
    };
    return rank(a.second) < rank(b.second);
  };
  const auto found = std::min_element(begin, end, order);
  return found == end ? std::nullopt : std::optional(found->second);
}

std::optional<KeyPlace> Keymap::find(Symbol symbol, int group) const {
  return best(by_symbol_, symbol, group);
}

std::optional<KeyPlace> Keymap::find_character(char32_t character, int group) const {
  return best(by_character_, character, group);
}

std::vector<std::uint8_t> Keymap::codes(Symbol symbol) const {
  std::vector<std::uint8_t> found;
  const auto [begin, end] = by_symbol_.equal_range(symbol);
  for (auto place = begin; place != end; ++place) found.push_back(place->second.code);
  return found;
}

std::vector<std::uint8_t> Keymap::spare_codes() const {
  std::vector<std::uint8_t> spare;
  for (unsigned code = first_code_; code <= last_code_; ++code) {
    if (first_symbols_[code] == no_symbol && real_modifiers_[code] == 0)
      spare.push_back(static_cast<std::uint8_t>(code));
  }
  return spare;
}

std::uint8_t Keymap::lock_modifiers(Symbol lock) const {
  std::uint8_t modifiers = 0;
  for (const std::uint8_t code : codes(lock)) modifiers |= real_modifiers_[code];
  return modifiers;
}

}  // namespace desktop
