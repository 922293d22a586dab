#include "desktop/keys.h"

#include <algorithm>
#include <array>
#include <utility>

namespace desktop {

int virtual_key(const QKeyEvent& event) {
  static constexpr std::array<std::pair<int, int>, 46> codes = {{
      {Qt::Key_Backspace, 8},     {Qt::Key_Tab, 9},         {Qt::Key_Backtab, 9},        {Qt::Key_Clear, 12},
      {Qt::Key_Return, 13},       {Qt::Key_Enter, 13},      {Qt::Key_Shift, 16},         {Qt::Key_Control, 17},
      {Qt::Key_Alt, 18},          {Qt::Key_AltGr, 18},      {Qt::Key_Pause, 19},         {Qt::Key_CapsLock, 20},
      {Qt::Key_Escape, 27},       {Qt::Key_Space, 32},      {Qt::Key_PageUp, 33},        {Qt::Key_PageDown, 34},
      {Qt::Key_End, 35},          {Qt::Key_Home, 36},       {Qt::Key_Left, 37},          {Qt::Key_Up, 38},
      {Qt::Key_Right, 39},        {Qt::Key_Down, 40},       {Qt::Key_Print, 44},         {Qt::Key_Insert, 45},
      {Qt::Key_Delete, 46},       {Qt::Key_Help, 47},       {Qt::Key_Meta, 91},          {Qt::Key_Super_L, 91},
      {Qt::Key_Super_R, 92},      {Qt::Key_Menu, 93},       {Qt::Key_NumLock, 144},      {Qt::Key_ScrollLock, 145},
      {Qt::Key_Semicolon, 186},   {Qt::Key_Plus, 187},      {Qt::Key_Equal, 187},        {Qt::Key_Comma, 188},
      {Qt::Key_Minus, 189},       {Qt::Key_Period, 190},    {Qt::Key_Slash, 191},        {Qt::Key_QuoteLeft, 192},
      {Qt::Key_BracketLeft, 219}, {Qt::Key_Backslash, 220}, {Qt::Key_BracketRight, 221}, {Qt::Key_Apostrophe, 222},
      {Qt::Key_Less, 226},        {Qt::Key_Greater, 226},
  }};
  const int key = event.key();
  const bool keypad = event.modifiers().testFlag(Qt::KeypadModifier);
  if (key >= Qt::Key_A && key <= Qt::Key_Z) return key;
  if (key >= Qt::Key_0 && key <= Qt::Key_9) return keypad ? 96 + key - Qt::Key_0 : key;
  if (key >= Qt::Key_F1 && key <= Qt::Key_F24) return 112 + key - Qt::Key_F1;
  if (keypad && key >= Qt::Key_Asterisk && key <= Qt::Key_Slash) return 106 + key - Qt::Key_Asterisk;
  // The row of digits bears other characters on a French keyboard; it keeps its codes.
  constexpr quint32 first_digit = 10;
  constexpr quint32 last_digit = 19;
  const quint32 scan = event.nativeScanCode();
  if (!keypad && scan >= first_digit && scan <= last_digit) return '0' + static_cast<int>(scan - first_digit + 1) % 10;
  const auto* found = std::find_if(codes.begin(), codes.end(), [&](const auto& code) { return code.first == key; });
  return found == codes.end() ? 0 : found->second;
}

int typed_character(const QKeyEvent& event) {
  switch (event.key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
      return 13;
    case Qt::Key_Escape:
      return 27;
    case Qt::Key_Backspace:
      return 8;
    case Qt::Key_Delete:  // the toolkit gives it a character; it types none
      return 0;
    default:
      return event.text().isEmpty() ? 0 : static_cast<int>(event.text().toUcs4().first());
  }
}

}  // namespace desktop
