// A window that has the keyboard and waits for a key.
#pragma once

#include "tests/support/xserver.h"

struct _XDisplay;

class KeyTarget {
 public:
  explicit KeyTarget(const test_support::XServer& server);
  ~KeyTarget();
  KeyTarget(const KeyTarget&) = delete;
  KeyTarget& operator=(const KeyTarget&) = delete;
  // Drops the keys that have come so far.
  void forget();
  // Waits for a key going down; false where none comes within 5 seconds.
  bool wait_for_key();

 private:
  _XDisplay* display_;
};
