// A profile as the program writes it, or as a hand may have spoilt it.
#pragma once

#include <string>

#include "fuzz/chances.h"

struct Profile {
  std::string text;  // in the file's own characters; empty for no file
  bool odd = false;  // holds something that a save would not write back
};

Profile some_profile(Chances& chances);
