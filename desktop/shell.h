// Opening of programs, documents and addresses on a Linux desktop.
#pragma once

#include <string_view>

namespace desktop {

// `file` is a program with its arguments, a document, a folder, an address or a .desktop entry: see shell_target.h.
// `parameters` are further arguments of a program; `directory` is where it starts, the home folder where empty. Verbs
// other than "open" are unknown. What is started is on its own: it outlives this program, shares no descriptor or
// session with it, and need not be waited for.
// Gives 42, or on failure a code up to 32: 2 not found, 5 not permitted, 8 out of processes or memory, 11 not a
// program, 31 nothing is set up to open it.
int shell_open(std::string_view verb, std::string_view file, std::string_view parameters, std::string_view directory);

}  // namespace desktop
