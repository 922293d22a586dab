// What strings and entries stand for, on a machine that is made up.
#include <gtest/gtest.h>

#include <map>

#include "desktop/shell_entry.h"
#include "desktop/shell_target.h"

namespace {

using desktop::Found;
using desktop::Target;
using Kind = desktop::Target::Kind;

desktop::Surroundings machine() {
  static const std::map<std::string, Found> files{
      {"/bin/xterm", Found::program},     {"/bin/cat", Found::program},
      {"/usr/bin/cat", Found::program},   {"/h", Found::folder},
      {"/h/xterm", Found::folder},        {"/h/notes.txt", Found::document},
      {"/h/cat notes", Found::document},  {"/h/my tool", Found::program},
      {"/h/tool", Found::program},        {"/h/http:", Found::folder},
      {"/h/http://odd", Found::document}, {"/mnt/disk/letter.odt", Found::document},
  };
  return {.home = "/h", .directory = "/h", .search_path = {"/bin", "/usr/bin"}, .probe = [](const std::string& path) {
            const auto file = files.find(path);
            return file == files.end() ? Found::nothing : file->second;
          }};
}

TEST(ShellTarget, AStringIsWhatItNames) {
  struct Case {
    std::string text;
    Target target;
  };
  const std::vector<Case> cases{
      {"", {}},
      // Commands, with arguments as a shell would split them.
      {" xterm -e 'a b' ~/x ", {Kind::program, "/bin/xterm", {"-e", "a b", "/h/x"}}},
      {"cat https://a.b/c", {Kind::program, "/bin/cat", {"https://a.b/c"}}},
      // Paths, blanks and quotes and all.
      {"~", {Kind::document, "/h", {}}},
      {"~/notes.txt", {Kind::document, "/h/notes.txt", {}}},
      {"cat notes", {Kind::document, "/h/cat notes", {}}},
      {"\"/mnt/disk/letter.odt\"", {Kind::document, "/mnt/disk/letter.odt", {}}},
      {"/mnt/disk/letter.odt now", {}},
      {"~/my tool", {Kind::program, "/h/my tool", {}}},
      {"'/h/my tool' \"\" b", {Kind::program, "/h/my tool", {"", "b"}}},
      {"~/tool \"", {}},
      {"./tool -v", {}},
      // Addresses.
      {"https://a.b/c?d=e f", {Kind::address, "https://a.b/c?d=e f", {}}},
      {"mailto:a@b", {Kind::address, "mailto:a@b", {}}},
      {"www.a.b", {Kind::address, "http://www.a.b", {}}},
      {"http://odd", {Kind::document, "/h/http://odd", {}}},
      {"C:\\Windows\\notepad.exe", {}},
      {"note: buy milk", {}},
      {"/no/where", {}},
  };
  for (const auto& [text, target] : cases) {
    const Target found = desktop::find_target(text, machine());
    EXPECT_EQ(found, target) << '"' << text << "\" gave kind " << static_cast<int>(found.kind) << ' ' << found.path;
  }
}

TEST(ShellEntry, IsReadAsTheStandardSays) {
  struct Case {
    std::string text;
    std::vector<std::string> command;  // empty: the entry starts nothing
  };
  const std::string head = "# comment\n[Desktop Entry]\nType=Application\nName=My App\nName[fr]=Mon appli\nIcon=pic\n";
  const std::vector<Case> cases{
      {head + "Exec = prog -a %f --x=%u b%%c %U\r\n", {"prog", "-a", "--x=", "b%c"}},
      {head + "Exec=prog %i \"%c\" %k \"\"\n", {"prog", "--icon", "pic", "My App", "/e.desktop", ""}},
      {head + "Exec=\"/opt/my prog\" \"a \\\\\"b\\\\\" \\\\$c\" ~\n", {"/opt/my prog", "a \"b\" $c", "~"}},
      {head + "Exec=first\nExec=second\n[Desktop Action x]\nExec=third\n", {"first"}},
      {head + "[Other]\nExec=prog\n", {}},
      {head + "Exec=\"open\n", {}},
      {head + "Exec=%f\n", {}},
      {"", {}},
  };
  for (const auto& [text, command] : cases) {
    const auto entry = desktop::read_desktop_entry(text, "/e.desktop");
    EXPECT_EQ(entry.has_value(), !command.empty()) << text;
    EXPECT_EQ(entry ? entry->command : std::vector<std::string>(), command) << text;
  }
  const auto full = desktop::read_desktop_entry(head + "Exec=p\nPath=/x\\sy\nTerminal=true\n", "");
  ASSERT_TRUE(full);
  EXPECT_EQ(full->directory, "/x y");
  EXPECT_TRUE(full->in_terminal);
}

}  // namespace
