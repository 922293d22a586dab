#include "desktop/shell_target.h"

#include <cctype>
#include <optional>

#include "platform/text.h"
#include "platform/words.h"

namespace desktop {
namespace {

bool is_letter(char c) {
  return std::isalpha(static_cast<unsigned char>(c)) != 0;
}

bool may_be_in_scheme(char c) {
  return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '+' || c == '.' || c == '-';
}

// A URL for the desktop's handler, completed by its scheme; empty where `text` is none. A single letter before the
// colon is a drive of another system, no scheme.
std::string address(std::string_view text) {
  constexpr std::string_view bare = "www.";
  if (text.starts_with(bare) && text.size() > bare.size() && text.find(' ') == std::string_view::npos) {
    return "http://" + std::string(text);
  }
  std::size_t colon = 0;
  while (colon < text.size() && may_be_in_scheme(text[colon])) ++colon;
  const bool scheme = colon >= 2 && is_letter(text.front());
  if (!scheme || colon + 1 >= text.size() || text[colon] != ':' || text[colon + 1] == ' ') return {};
  return std::string(text);
}

std::string absolute(std::string_view path, const Surroundings& around) {
  if (path == "~" || path.starts_with("~/")) return around.home + std::string(path.substr(1));
  if (path.starts_with('/')) return std::string(path);
  return around.directory + '/' + std::string(path);
}

// The target at a path that stands for itself, without arguments.
Target at_path(const std::string& path, const Surroundings& around) {
  const Found found = around.probe(path);
  if (found == Found::nothing) return {};
  if (found != Found::folder && path.ends_with(".desktop")) return {Target::Kind::desktop_entry, path, {}};
  return {found == Found::program ? Target::Kind::program : Target::Kind::document, path, {}};
}

}  // namespace

std::string find_command(const std::string& name, const Surroundings& around) {
  for (const std::string& folder : around.search_path) {
    std::string path = folder;
    path.append("/").append(name);
    if (around.probe(path) == Found::program) return path;
  }
  return {};
}

Target find_target(std::string_view text, const Surroundings& around) {
  text = platform::trimmed(text);
  const auto words = platform::split_words(text, around.home);
  if (words && words->empty()) return {};
  const bool command = words && !words->front().empty() && words->front().find('/') == std::string::npos;
  const std::string command_path = command ? find_command(words->front(), around) : std::string();
  if (!command_path.empty() && words->size() == 1) return {Target::Kind::program, command_path, {}};

  if (Target whole = at_path(absolute(text, around), around); whole.kind != Target::Kind::nothing) return whole;
  if (std::string url = address(text); !url.empty()) return {Target::Kind::address, std::move(url), {}};
  if (!words) return {};

  Target target = command_path.empty() ? at_path(absolute(words->front(), around), around)
                                       : Target{Target::Kind::program, command_path, {}};
  if (target.kind == Target::Kind::program) {
    target.arguments.assign(words->begin() + 1, words->end());
  } else if (words->size() > 1) {
    return {};
  }
  return target;
}

}  // namespace desktop
