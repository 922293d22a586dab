// Keys of the toolkit by the codes that the program knows.
#pragma once

#include <QKeyEvent>

namespace desktop {

// The virtual key code: letters and digits by their capital character, others by the usual numbers (Enter 13, Shift 16,
// Ctrl 17, Alt 18, Esc 27, F1 112...); 0 for a key that has none.
int virtual_key(const QKeyEvent& event);

// The character that a key types: its code point, for control characters their own; 0 for a key that types none.
int typed_character(const QKeyEvent& event);

}  // namespace desktop
