// What a program of chance still says when it dies: how to play the fatal life again.
#pragma once

#include <string_view>

// From now on every way of dying says this line on the standard error: a fatal signal, an uncaught exception, a
// sanitizer's report. At most 120 characters; none: nothing is said.
void set_last_words(std::string_view line);
