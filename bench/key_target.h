// A window that waits for a key.
#pragma once

#include "stage/xserver.h"

struct _XDisplay;

class KeyTarget {
 public:
  explicit KeyTarget(const stage::XServer& server);
  ~KeyTarget();
  KeyTarget(const KeyTarget&) = delete;
  KeyTarget& operator=(const KeyTarget&) = delete;
  // Takes the keyboard to itself, whoever has it.
  void take_keyboard();
  // Drops the keys that have come so far.
  void forget();
  // Waits for a key going down; false where none comes within 5 seconds.
  bool wait_for_key();

 private:
  _XDisplay* display_;
  unsigned long window_;
};
