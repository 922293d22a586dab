#include "desktop/shell_entry.h"

#include <map>

#include "platform/text.h"
#include "platform/words.h"

namespace desktop {
namespace {

// The keys of the group [Desktop Entry], without translations.
std::map<std::string, std::string, std::less<>> main_group(std::string_view text) {
  std::map<std::string, std::string, std::less<>> keys;
  bool inside = false;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    const std::string_view line =
        platform::trimmed(text.substr(0, text.substr(0, end).ends_with('\r') ? end - 1 : end));
    text.remove_prefix(std::min(end + 1, text.size()));
    if (line.starts_with('[')) inside = line == "[Desktop Entry]";
    const std::size_t equals = line.find('=');
    if (!inside || line.starts_with('#') || equals == std::string_view::npos) continue;
    keys.emplace(platform::trimmed(line.substr(0, equals)), platform::trimmed(line.substr(equals + 1)));
  }
  return keys;
}

// Undoes the escapes that every value of type string has.
std::string unescaped(std::string_view value) {
  std::string text;
  for (std::size_t i = 0; i < value.size(); ++i) {
    constexpr std::string_view letters = "sntr\\";
    constexpr std::string_view meanings = " \n\t\r\\";
    const std::size_t known = value[i] == '\\' && i + 1 < value.size() ? letters.find(value[i + 1]) : letters.npos;
    if (known != letters.npos) ++i;
    text += known != letters.npos ? meanings[known] : value[i];
  }
  return text;
}

// A word of the command line with its field codes replaced.
std::string without_codes(std::string_view word, const std::string& name, const std::string& path) {
  std::string text;
  for (std::size_t i = 0; i < word.size(); ++i) {
    if (word[i] != '%' || i + 1 == word.size()) {
      text += word[i];
    } else if (const char code = word[++i]; code == '%') {
      text += '%';
    } else if (code == 'c') {
      text += name;
    } else if (code == 'k') {
      text += path;
    }
  }
  return text;
}

}  // namespace

std::optional<DesktopEntry> read_desktop_entry(std::string_view text, const std::string& path) {
  const auto keys = main_group(text);
  const auto value = [&](std::string_view key) {
    const auto found = keys.find(key);
    return found == keys.end() ? std::string() : unescaped(found->second);
  };
  DesktopEntry entry;
  if (value("Type") == "Link") {
    entry.address = value("URL");
    return entry.address.empty() ? std::nullopt : std::optional(entry);
  }
  // "~" has no meaning in these lines: as the home folder it stands for itself.
  const auto words = platform::split_words(value("Exec"), "~");
  if (value("Type") != "Application" || !words) return std::nullopt;
  const std::string icon = value("Icon");
  for (const std::string& word : *words) {
    if (word == "%i") {
      if (!icon.empty()) entry.command.insert(entry.command.end(), {"--icon", icon});
      continue;
    }
    std::string plain = without_codes(word, value("Name"), path);
    // A word that was nothing but codes goes with them; one that was empty from the start stays.
    if (!plain.empty() || word.empty()) entry.command.push_back(std::move(plain));
  }
  if (entry.command.empty() || entry.command.front().empty()) return std::nullopt;
  entry.directory = value("Path");
  entry.in_terminal = value("Terminal") == "true";
  return entry;
}

}  // namespace desktop
