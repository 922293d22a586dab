#include "desktop/keymap_spares.h"

#include <X11/Xlib.h>
#include <X11/Xutil.h>

#include <algorithm>
#include <iterator>
#include <thread>
#include <utility>

namespace desktop {
namespace {

// Clients hear of a new key map and fetch it on their own time. Keys sent within 20 ms have been seen to arrive as
// nothing; with more, none.
constexpr std::chrono::milliseconds clients_follow{30};
// A window that has not taken up its keys after this time hangs.
constexpr std::chrono::seconds surely_taken_up{2};

struct Cases {
  KeySym small, capital;
};

Cases cases_of(Symbol symbol) {
  Cases cases{symbol, symbol}, back{symbol, symbol};
  XConvertCase(symbol, &cases.small, &cases.capital);
  // Letters like the dotless i do not come back from the other case.
  XConvertCase(cases.small, &back.small, &back.capital);
  return back.capital == cases.capital ? cases : Cases{symbol, symbol};
}

}  // namespace

SpareKeys::~SpareKeys() {
  std::vector<const Slot*> ours;
  for (Slot& slot : slots_) {
    if (std::exchange(slot.symbol, no_symbol) != no_symbol) ours.push_back(&slot);
  }
  if (ours.empty()) return;
  settle_if_typed();
  write(ours);
}

void SpareKeys::adopt(const Keymap& keymap) {
  std::vector<Slot> slots;
  for (const Slot& slot : slots_) {
    if (slot.symbol != no_symbol && keymap.symbol_on(slot.code) == slot.symbol) slots.push_back(slot);
  }
  for (const std::uint8_t code : keymap.spare_codes()) slots.push_back(Slot{.code = code});
  std::sort(slots.begin(), slots.end(), [](const Slot& a, const Slot& b) { return a.code < b.code; });
  slots_ = std::move(slots);
}

bool SpareKeys::borrowed(std::uint8_t code) const {
  return std::any_of(slots_.begin(), slots_.end(),
                     [code](const Slot& slot) { return slot.code == code && slot.symbol != no_symbol; });
}

Symbol SpareKeys::to_borrow(Symbol symbol) {
  return static_cast<Symbol>(cases_of(symbol).small);
}

bool SpareKeys::assign(const std::vector<Symbol>& symbols) {
  ++uses_;
  std::vector<Symbol> missing;
  for (const Symbol symbol : symbols) {
    const auto slot =
        std::find_if(slots_.begin(), slots_.end(), [symbol](const Slot& s) { return s.symbol == symbol; });
    if (slot == slots_.end()) {
      missing.push_back(symbol);
    } else {
      slot->used = uses_;
    }
  }
  if (missing.empty() || symbols.size() > slots_.size()) return false;

  std::vector<Slot*> oldest;
  for (Slot& slot : slots_) oldest.push_back(&slot);
  std::stable_sort(oldest.begin(), oldest.end(), [](const Slot* a, const Slot* b) { return a->used < b->used; });
  oldest.resize(missing.size());
  settle_if_typed();
  for (std::size_t i = 0; i < missing.size(); ++i) {
    oldest[i]->symbol = missing[i];
    oldest[i]->used = uses_;
  }
  std::sort(oldest.begin(), oldest.end());
  write({oldest.begin(), oldest.end()});
  XSync(connection_.display(), False);
  std::this_thread::sleep_for(clients_follow);
  return true;
}

void SpareKeys::write(const std::vector<const Slot*>& slots) {
  for (auto first = slots.begin(); first != slots.end();) {
    // One request for each run of neighbours. Both columns, so that neither Shift nor a lock makes another letter of
    // it.
    std::vector<KeySym> columns;
    auto last = first;
    for (; last != slots.end() && (*last)->code - (*first)->code == std::distance(first, last); ++last) {
      const Cases cases = cases_of((*last)->symbol);
      columns.insert(columns.end(), {cases.small, cases.capital});
    }
    XChangeKeyboardMapping(connection_.display(), (*first)->code, 2, columns.data(),
                           static_cast<int>(std::distance(first, last)));
    first = last;
  }
}

// Keys that are still to be read would be read by the new map; and some programs that have never had a key read the map
// with their first one, and miss what changes while they do.
void SpareKeys::settle_if_typed() {
  if (std::chrono::steady_clock::now() - typed_ < surely_taken_up) connection_.settle();
}

}  // namespace desktop
