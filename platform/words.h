// Command lines as words.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace platform {

// The words of a command line, split as a shell splits them but with nothing expanded save "~": blanks separate, single
// quotes keep everything, double quotes keep all but a backslash before " \ $ or `, a backslash elsewhere keeps the
// next character. An unquoted "~" that is a word or stands before the first "/" of one is `home`. Nothing where a quote
// is not closed or a backslash ends the line.
std::optional<std::vector<std::string>> split_words(std::string_view line, std::string_view home);

}  // namespace platform
