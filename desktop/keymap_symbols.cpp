#include "desktop/keymap_symbols.h"

#include <X11/XF86keysym.h>
#include <X11/keysym.h>

#include <algorithm>
#include <array>
#include <iterator>

#include "desktop/keymap_table.h"

namespace desktop {
namespace {

constexpr Symbol unicode = 0x1000000;

struct NamedKey {
  std::uint8_t key;
  std::array<Symbol, 2> symbols;  // the second one is an alternative, or no_symbol
};

constexpr NamedKey named_keys[] = {
    {0x03, {XK_Break}},
    {0x08, {XK_BackSpace}},
    {0x09, {XK_Tab}},
    {0x0C, {XK_Clear}},
    {0x0D, {XK_Return}},
    {0x10, {XK_Shift_L, XK_Shift_R}},
    {0x11, {XK_Control_L, XK_Control_R}},
    {0x12, {XK_Alt_L, XK_Alt_R}},
    {0x13, {XK_Pause}},
    {0x14, {XK_Caps_Lock}},
    {0x1B, {XK_Escape}},
    {0x20, {XK_space}},
    {0x21, {XK_Prior}},
    {0x22, {XK_Next}},
    {0x23, {XK_End}},
    {0x24, {XK_Home}},
    {0x25, {XK_Left}},
    {0x26, {XK_Up}},
    {0x27, {XK_Right}},
    {0x28, {XK_Down}},
    {0x2C, {XK_Print}},
    {0x2D, {XK_Insert}},
    {0x2E, {XK_Delete}},
    {0x2F, {XK_Help}},
    {0x5B, {XK_Super_L}},
    {0x5C, {XK_Super_R}},
    {0x5D, {XK_Menu}},
    {0x6A, {XK_KP_Multiply}},
    {0x6B, {XK_KP_Add}},
    {0x6C, {XK_KP_Separator}},
    {0x6D, {XK_KP_Subtract}},
    {0x6E, {XK_KP_Decimal}},
    {0x6F, {XK_KP_Divide}},
    {0x90, {XK_Num_Lock}},
    {0x91, {XK_Scroll_Lock}},
    {0xA0, {XK_Shift_L}},
    {0xA1, {XK_Shift_R}},
    {0xA2, {XK_Control_L}},
    {0xA3, {XK_Control_R}},
    {0xA4, {XK_Alt_L}},
    {0xA5, {XK_Alt_R, XK_ISO_Level3_Shift}},
    {0xA6, {XF86XK_Back}},
    {0xA7, {XF86XK_Forward}},
    {0xA8, {XF86XK_Refresh}},
    {0xA9, {XF86XK_Stop}},
    {0xAA, {XF86XK_Search}},
    {0xAB, {XF86XK_Favorites}},
    {0xAC, {XF86XK_HomePage}},
    {0xAD, {XF86XK_AudioMute}},
    {0xAE, {XF86XK_AudioLowerVolume}},
    {0xAF, {XF86XK_AudioRaiseVolume}},
    {0xB0, {XF86XK_AudioNext}},
    {0xB1, {XF86XK_AudioPrev}},
    {0xB2, {XF86XK_AudioStop}},
    {0xB3, {XF86XK_AudioPlay}},
};

bool within(std::uint8_t key, int first, int last) {
  return key >= first && key <= last;
}

}  // namespace

std::vector<Symbol> symbols_of_key(std::uint8_t key) {
  if (within(key, 'A', 'Z')) return {static_cast<Symbol>(key - 'A' + XK_a), static_cast<Symbol>(key)};
  if (within(key, '0', '9')) return {key};
  if (within(key, 0x60, 0x69)) return {static_cast<Symbol>(key - 0x60 + XK_KP_0)};
  if (within(key, 0x70, 0x87)) return {static_cast<Symbol>(key - 0x70 + XK_F1)};
  const auto* const named =
      std::find_if(std::begin(named_keys), std::end(named_keys), [&](const NamedKey& n) { return n.key == key; });
  if (named == std::end(named_keys)) return {};
  if (named->symbols[1] == no_symbol) return {named->symbols[0]};
  return {named->symbols.begin(), named->symbols.end()};
}

Symbol symbol_of_character(char32_t character) {
  const bool latin1 = (character >= 0x20 && character < 0x7F) || (character >= 0xA0 && character <= 0xFF);
  return latin1 ? character : character | unicode;
}

char32_t character_of_symbol(Symbol symbol) {
  if ((symbol >= 0x20 && symbol < 0x7F) || (symbol >= 0xA0 && symbol <= 0xFF)) return symbol;
  if ((symbol & 0xFF000000) == unicode) return symbol & 0xFFFFFF;
  const auto* const after = std::upper_bound(std::begin(symbol_runs), std::end(symbol_runs), symbol,
                                             [](Symbol s, const SymbolRun& run) { return s < run.symbol; });
  if (after == std::begin(symbol_runs)) return 0;
  const SymbolRun& run = *std::prev(after);
  return symbol - run.symbol < run.count ? run.character + (symbol - run.symbol) : 0;
}

}  // namespace desktop
