#include "desktop/shell.h"

#include <fcntl.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdlib>
#include <fstream>
#include <iterator>

#include "desktop/shell_entry.h"
#include "desktop/shell_process.h"
#include "desktop/shell_target.h"
#include "platform/text.h"
#include "platform/words.h"

namespace desktop {
namespace {

constexpr int success = 42;
constexpr int error_not_found = 2;
constexpr int error_access_denied = 5;
constexpr int error_no_resources = 8;
constexpr int error_bad_format = 11;
constexpr int error_no_association = 31;

bool begins_as_program(const char* path) {
  const int fd = open(path, O_RDONLY | O_CLOEXEC | O_NONBLOCK);
  if (fd < 0) return true;  // may be executed and not read: no document
  std::array<char, 4> head{};
  const ssize_t got = read(fd, head.data(), head.size());
  close(fd);
  const std::string_view start(head.data(), got > 0 ? static_cast<std::size_t>(got) : 0);
  return start ==
             "\x7f"
             "ELF" ||
         start.starts_with("#!");
}

Found probe(const std::string& path) {
  struct stat about {};
  if (stat(path.c_str(), &about) != 0) return Found::nothing;
  if (S_ISDIR(about.st_mode)) return Found::folder;
  if (!S_ISREG(about.st_mode)) return Found::nothing;  // reading a pipe or a device could block
  return access(path.c_str(), X_OK) == 0 && begins_as_program(path.c_str()) ? Found::program : Found::document;
}

std::string home_folder() {
  const char* const home = std::getenv("HOME");
  if (home != nullptr && *home == '/') return home;
  const passwd* const user = getpwuid(getuid());
  return user != nullptr ? user->pw_dir : "/";
}

std::vector<std::string> search_path() {
  const char* const given = std::getenv("PATH");
  std::string_view rest = given != nullptr ? given : "/usr/local/bin:/usr/bin:/bin";
  std::vector<std::string> folders;
  while (!rest.empty()) {
    const std::size_t colon = std::min(rest.find(':'), rest.size());
    // A relative folder means wherever this program happens to have been started.
    if (rest.starts_with('/')) folders.emplace_back(rest.substr(0, colon));
    rest.remove_prefix(std::min(colon + 1, rest.size()));
  }
  return folders;
}

int start(const std::string& path, const std::vector<std::string>& arguments, const std::string& directory) {
  switch (start_detached(path, arguments, directory)) {
    case 0:
      return success;
    case ENOENT:
    case ENOTDIR:
      return error_not_found;
    case EACCES:
    case EPERM:
      return error_access_denied;
    case ENOEXEC:
      return error_bad_format;
    default:
      return error_no_resources;
  }
}

// Hands a document or an address to whatever the desktop has chosen for its type.
int start_handler(const std::string& what, const Surroundings& around) {
  if (const std::string opener = find_command("xdg-open", around); !opener.empty()) {
    return start(opener, {what}, around.directory);
  }
  if (const std::string gio = find_command("gio", around); !gio.empty()) {
    return start(gio, {"open", what}, around.directory);
  }
  return error_no_association;
}

int start_entry(const std::string& path, const Surroundings& around) {
  std::ifstream file(path, std::ios::binary);
  const std::string text{std::istreambuf_iterator<char>(file), {}};
  auto entry = read_desktop_entry(text, path);
  if (!entry) return error_bad_format;
  if (!entry->address.empty()) return start_handler(entry->address, around);
  // Debian's name for the terminal that the user has chosen.
  if (entry->in_terminal) entry->command.insert(entry->command.begin(), {"x-terminal-emulator", "-e"});
  const std::string& name = entry->command.front();
  const std::string program = name.starts_with('/') ? name : find_command(name, around);
  if (program.empty()) return error_not_found;
  return start(program, {entry->command.begin() + 1, entry->command.end()},
               entry->directory.empty() ? around.directory : entry->directory);
}

}  // namespace

int shell_open(std::string_view verb, std::string_view file, std::string_view parameters, std::string_view directory) {
  if (!verb.empty() && !platform::equal_ignoring_case(verb, "open")) return error_no_association;
  const std::string home = home_folder();
  const Surroundings around{.home = home,
                            .directory = directory.empty() ? home : std::string(directory),
                            .search_path = search_path(),
                            .probe = probe};
  Target target = find_target(file, around);
  const auto further = platform::split_words(parameters, home);
  switch (target.kind) {
    case Target::Kind::program:
      if (!further) return error_bad_format;
      target.arguments.insert(target.arguments.end(), further->begin(), further->end());
      return start(target.path, target.arguments, around.directory);
    case Target::Kind::document:
    case Target::Kind::address:
      return start_handler(target.path, around);
    case Target::Kind::desktop_entry:
      return start_entry(target.path, around);
    case Target::Kind::nothing:
      break;
  }
  return error_not_found;
}

}  // namespace desktop
