#include "desktop/typist.h"

#include <X11/XKBlib.h>
#include <X11/Xutil.h>
#include <X11/keysym.h>

#include <algorithm>
#include <bit>

namespace desktop {
namespace {

constexpr std::uint8_t all_modifiers = 0xFF;

bool is_lock_key(std::uint8_t key) {
  return key == 0x14 || key == 0x90 || key == 0x91;
}

bool contains(const std::vector<std::uint8_t>& codes, std::uint8_t code) {
  return std::find(codes.begin(), codes.end(), code) != codes.end();
}

}  // namespace

void Typist::type(const std::vector<platform::Stroke>& strokes) {
  if (strokes.empty()) return;
  keyboard_.refresh();
  release_held_modifiers();
  home_group_ = group_ = keyboard_.group();
  suspend_locks();
  for (std::size_t begin = 0; begin < strokes.size();) {
    const std::size_t end = borrow_for(strokes, begin);
    for (; begin < end; ++begin) strike(strokes[begin]);
  }
  hold_only({});
  if (group_ != home_group_) keyboard_.lock_group(home_group_);
  resume_locks();
  XSync(keyboard_.display(), False);
}

Symbol Typist::symbol_of(const platform::Stroke& stroke) const {
  if (stroke.key != 0) {
    const auto symbols = symbols_of_key(stroke.key);
    return symbols.empty() ? no_symbol : symbols.front();
  }
  const Symbol symbol = symbol_of_character(stroke.character);
  if ((stroke.modifiers & (platform::modifier_control | platform::modifier_alt)) == 0) return symbol;
  // In a shortcut a letter means its key, whatever its case: "^C" is Ctrl+C.
  KeySym small = NoSymbol, capital = NoSymbol;
  XConvertCase(symbol, &small, &capital);
  return static_cast<Symbol>(small);
}

// Borrows what the strokes from `begin` on need, as far as the spare codes go; gives where they end.
std::size_t Typist::borrow_for(const std::vector<platform::Stroke>& strokes, std::size_t begin) {
  std::vector<Symbol> foreign;
  std::size_t end = begin;
  for (; end < strokes.size(); ++end) {
    const Symbol symbol = symbol_of(strokes[end]);
    const auto place = keyboard_.find(symbol, group_);
    if (symbol == no_symbol || (place && !keyboard_.spares().borrowed(place->code))) continue;
    const Symbol wanted = SpareKeys::to_borrow(symbol);
    if (std::find(foreign.begin(), foreign.end(), wanted) != foreign.end()) continue;
    if (keyboard_.spares().capacity() == 0) continue;
    if (foreign.size() == keyboard_.spares().capacity()) break;
    foreign.push_back(wanted);
  }
  keyboard_.borrow(foreign);
  return end;
}

void Typist::strike(const platform::Stroke& stroke) {
  const Symbol symbol = symbol_of(stroke);
  const auto place = symbol == no_symbol ? std::nullopt : keyboard_.find(symbol, home_group_);
  if (!place) {
    hold_only(modifier_codes(0, stroke.kept));
    return;
  }
  if (place->group != group_) {
    keyboard_.lock_group(place->group);
    group_ = place->group;
  }
  // A lock key in a text is a wish to change the lock that the user sees.
  if (is_lock_key(stroke.key)) resume_locks();
  hold_only(modifier_codes(place->modifiers, stroke.modifiers));
  keyboard_.send(place->code, true);
  keyboard_.send(place->code, false);
  hold_only(modifier_codes(0, stroke.kept));
  if (is_lock_key(stroke.key)) suspend_locks();
}

// The keys to hold for real modifiers and for those of a stroke.
std::vector<std::uint8_t> Typist::modifier_codes(std::uint8_t real, std::uint8_t explicit_ones) const {
  const Keymap& keymap = keyboard_.keymap();
  if ((explicit_ones & platform::modifier_shift) != 0) real |= ShiftMask;
  if ((explicit_ones & platform::modifier_control) != 0) real |= ControlMask;
  std::vector<std::uint8_t> codes;
  // Shift last: on many keyboards it makes something else of the keys that choose the higher levels.
  for (std::size_t number = 8; number-- > 0;) {
    if ((real >> number & 1U) != 0 && keymap.modifier_key(number) != 0) codes.push_back(keymap.modifier_key(number));
  }
  if ((explicit_ones & platform::modifier_alt) != 0) {
    if (const auto alt = keymap.find(XK_Alt_L, group_); alt && !contains(codes, alt->code)) codes.push_back(alt->code);
  }
  return codes;
}

void Typist::hold_only(const std::vector<std::uint8_t>& codes) {
  for (std::size_t i = held_.size(); i-- > 0;) {
    if (contains(codes, held_[i])) continue;
    keyboard_.send(held_[i], false);
    held_.erase(held_.begin() + static_cast<std::ptrdiff_t>(i));
  }
  for (const std::uint8_t code : codes) {
    if (contains(held_, code)) continue;
    keyboard_.send(code, true);
    held_.push_back(code);
  }
}

// Lets go of the modifiers that the user holds. They are not pressed again: if the user let go of them meanwhile they
// would stay down for ever.
void Typist::release_held_modifiers() {
  for (const std::uint8_t code : keyboard_.keys_down()) {
    if (keyboard_.keymap().is_modifier(code)) keyboard_.send(code, false);
  }
}

// Takes back every lock and latch that changes what keys type; number pad and scrolling are none of our business.
void Typist::suspend_locks() {
  const Keymap& keymap = keyboard_.keymap();
  const unsigned harmless = keymap.lock_modifiers(XK_Num_Lock) | keymap.lock_modifiers(XK_Scroll_Lock);
  XkbStateRec state{};
  XkbGetState(keyboard_.display(), XkbUseCoreKbd, &state);
  suspended_locks_ = static_cast<std::uint8_t>(state.locked_mods & ~harmless);
  if (suspended_locks_ != 0) XkbLockModifiers(keyboard_.display(), XkbUseCoreKbd, suspended_locks_, 0);
  if (state.latched_mods != 0) XkbLatchModifiers(keyboard_.display(), XkbUseCoreKbd, all_modifiers, 0);
}

void Typist::resume_locks() {
  if (suspended_locks_ != 0) {
    XkbLockModifiers(keyboard_.display(), XkbUseCoreKbd, suspended_locks_, suspended_locks_);
  }
  suspended_locks_ = 0;
}

}  // namespace desktop
