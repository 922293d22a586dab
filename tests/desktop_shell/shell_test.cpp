// What strings and entries stand for; programs and documents opened for real.
#include "desktop/shell.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <map>

#include "desktop/shell_entry.h"
#include "desktop/shell_target.h"
#include "stage/xserver.h"

namespace {

namespace fs = std::filesystem;
using stage::eventually;

constexpr int success = 42;
const std::string nothing_open = "|/dev/null|/dev/null|/dev/null";
const auto open = [](const std::string& file) { return desktop::shell_open("open", file, "", ""); };

// A home folder of its own, with a bin folder that is all of the search path.
class Shell : public testing::Test {
 protected:
  Shell() {
    fs::create_directories(home / "bin");
    fs::create_symlink(GUEST, home / "bin" / "guest");
    setenv("HOME", home.c_str(), 1);
    setenv("PATH", ("relative:" + (home / "bin").string()).c_str(), 1);
  }
  ~Shell() override { fs::remove_all(home); }

  void put(const std::string& name, const std::string& text, fs::perms mode = fs::perms(0644)) const {
    std::ofstream(home / name) << text;
    fs::permissions(home / name, mode);
  }
  // A handler of documents, which hands its arguments on to the guest.
  void put_handler(const std::string& name) const {
    put("bin/" + name, "#!/bin/sh\nexec '" GUEST "' '" + report + "' " + name + " \"$@\"\n", fs::perms(0755));
  }
  // What the guest's report says behind these words, as "|one|two"; "missing" if there is no report.
  std::string reported(const std::vector<std::string>& words) const {
    std::string all = eventually([&] { return fs::exists(report); }) ? "" : "missing";
    for (const std::string& word : words) {
      std::ifstream in(report);
      for (std::string line; std::getline(in, line);) {
        if (line.starts_with(word)) all += "|" + line.substr(word.size() + 1);
      }
    }
    return all;
  }

  std::string opening(const std::string& file, const std::vector<std::string>& words = {"argument"}) const {
    fs::remove(report);
    EXPECT_EQ(open(file), success) << file;
    return reported(words);
  }

  const fs::path home = fs::canonical(fs::temp_directory_path()) / ("shell " + std::to_string(getpid()));
  const std::string report = home / "report";
};

TEST_F(Shell, AProgramGetsItsArgumentsAndACleanStart) {
  // What must not reach it: descriptors of every kind, a signal that is blocked, one that is ignored.
  const int loose = ::open("/etc/passwd", O_RDONLY), high = fcntl(loose, F_DUPFD, 700);
  sigset_t blocked, now;
  sigemptyset(&blocked);
  sigaddset(&blocked, SIGTERM);
  pthread_sigmask(SIG_BLOCK, &blocked, nullptr);
  std::signal(SIGPIPE, SIG_IGN);

  EXPECT_EQ(opening("guest ~/report 'a b' \"c\\\"d\" $HOME e\\ f"), "|a b|c\"d|$HOME|e f");
  EXPECT_EQ(reported({"directory"}), "|" + home.string());
  EXPECT_EQ(reported({"descriptor", "SigBlk:", "SigIgn:"}), nothing_open + "|0000000000000000|0000000000000000");
  EXPECT_NE(reported({"session"}), "|" + std::to_string(getsid(0)));

  fs::remove(report);
  EXPECT_EQ(desktop::shell_open("Open", "guest ~/report one", "two 'three four'", "/usr"), success);
  EXPECT_EQ(reported({"argument", "directory"}), "|one|two|three four|/usr");
  EXPECT_EQ(desktop::shell_open("print", "guest ~/report", "", ""), 31);

  // Neither running nor dead is it a child of ours, and our own signals are as they were.
  EXPECT_TRUE(waitpid(-1, nullptr, WNOHANG) == -1 && errno == ECHILD);
  pthread_sigmask(SIG_UNBLOCK, &blocked, &now);
  EXPECT_TRUE(sigismember(&now, SIGTERM) == 1 && sigismember(&now, SIGINT) == 0);
  close(loose), close(high);
}

TEST_F(Shell, AProgramOutlivesTheOneThatStartedIt) {
  const std::string pipe = report + ".hold";
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  const pid_t starter = fork();
  if (starter == 0) {
    setpgid(0, 0);
    for (int fd = 0; fd < 3; ++fd) close(fd);
    _exit(open("guest ~/report") == success ? 0 : 1);
  }
  int status = -1, hold = -1;
  ASSERT_TRUE(waitpid(starter, &status, 0) == starter && status == 0);
  EXPECT_EQ(reported({"descriptor"}), nothing_open) << "although the starter had none";
  // What a closing terminal does to the group of a program.
  kill(-starter, SIGKILL);
  // Opens once somebody reads, that is, lives.
  EXPECT_TRUE(eventually([&] { return (hold = ::open(pipe.c_str(), O_WRONLY | O_NONBLOCK)) >= 0; }));
  close(hold);
  EXPECT_TRUE(eventually([&] { return fs::exists(report + ".done"); }));
}

TEST_F(Shell, DocumentsFoldersAndAddressesGoToTheDesktopsHandler) {
  put("some notes.txt", "text");
  put("letter.odt", "everything may be executed on a foreign disk", fs::perms(0777));
  put("link.desktop", "[Desktop Entry]\nType=Link\nURL=ftp://c.d\n");
  EXPECT_EQ(open("letter.odt"), 31) << "where nothing is set up to open it";
  put_handler("gio");
  EXPECT_EQ(opening("letter.odt"), "|gio|open|" + (home / "letter.odt").string());
  put_handler("xdg-open");
  EXPECT_EQ(opening("~/some notes.txt"), "|xdg-open|" + (home / "some notes.txt").string());
  EXPECT_EQ(opening("~"), "|xdg-open|" + home.string());
  EXPECT_EQ(opening("https://a.b/?c&d"), "|xdg-open|https://a.b/?c&d");
  EXPECT_EQ(opening("link.desktop"), "|xdg-open|ftp://c.d");
}

TEST_F(Shell, AnEntryStartsWhatItDescribes) {
  const std::string head = "[Desktop Entry]\nType=Application\nPath=/usr\nExec=guest \"" + report + "\" %U x\n";
  put("plain.desktop", head);
  EXPECT_EQ(opening("~/plain.desktop", {"argument", "directory"}), "|x|/usr");
  put("terminal.desktop", head + "Terminal=true\n");
  EXPECT_EQ(open("~/terminal.desktop"), 2) << "without a terminal";
  put_handler("x-terminal-emulator");
  EXPECT_EQ(opening("~/terminal.desktop"), "|x-terminal-emulator|-e|guest|" + report + "|x");
}

TEST_F(Shell, WhatCannotBeOpenedSaysWhy) {
  put("no_interpreter", "#!/no/such/interpreter\n", fs::perms(0755));
  put("truncated", "\177ELF", fs::perms(0755));
  put("damaged.desktop", "[Desktop Entry]\n");
  ASSERT_EQ(mkfifo((home / "pipe").c_str(), 0600), 0);
  for (const char* text : {"", "/no/such/file", "no_such_command x", "~/pipe", "no_interpreter"}) {
    EXPECT_EQ(open(text), 2) << text;
  }
  for (const char* text : {"~/truncated", "~/damaged.desktop"}) EXPECT_EQ(open(text), 11) << text;
}

std::string joined(std::string text, const std::vector<std::string>& words) {
  for (const std::string& word : words) text += "|" + word;
  return text;
}

TEST(ShellTarget, AStringIsWhatItNames) {
  using enum desktop::Found;
  const std::map<std::string, desktop::Found> files{
      {"/bin/xterm", program}, {"/bin/cat", program},       {"/usr/bin/cat", program},     {"/h", folder},
      {"/h/xterm", folder},    {"/h/cat notes", document},  {"/h/my tool", program},       {"/h/tool", program},
      {"/h/http:", folder},    {"/h/http://odd", document}, {"/disk/letter.odt", document}};
  const auto probe = [&](const std::string& path) { return files.contains(path) ? files.at(path) : nothing; };
  const desktop::Surroundings machine{"/h", "/h", {"/bin", "/usr/bin"}, probe};
  const std::string kinds[] = {"", "run ", "open ", "go ", "entry "};
  std::vector<std::pair<std::string, std::string>> cases{{"cat notes", "open /h/cat notes"},
                                                         {"\"/disk/letter.odt\"", "open /disk/letter.odt"},
                                                         {"http://odd", "open /h/http://odd"},
                                                         {"~/my tool", "run /h/my tool"},
                                                         {"'/h/my tool' \"\" b", "run /h/my tool||b"},
                                                         {" xterm -e 'a b' ~/x ", "run /bin/xterm|-e|a b|/h/x"},
                                                         {"cat https://a.b/c", "run /bin/cat|https://a.b/c"},
                                                         {"https://a.b/c?d=e f", "go https://a.b/c?d=e f"},
                                                         {"mailto:a@b", "go mailto:a@b"},
                                                         {"www.a.b", "go http://www.a.b"}};
  for (const char* text : {"note: buy milk", "C:\\notepad.exe", "~/tool \"", "./tool -v", "/disk/letter.odt now"})
    cases.emplace_back(text, "");
  for (const auto& [text, target] : cases) {
    const auto [kind, path, arguments] = desktop::find_target(text, machine);
    EXPECT_EQ(kinds[static_cast<std::size_t>(kind)] + joined(path, arguments), target) << text;
  }
}

TEST(ShellEntry, IsReadAsTheStandardSays) {
  const std::string head = "# comment\n[Desktop Entry]\nType=Application\nName=My App\nName[fr]=Mon appli\nIcon=pic\n";
  const auto command = [&](const std::string& text) {
    return joined("", desktop::read_desktop_entry(head + text, "/e.desktop").value_or(desktop::DesktopEntry{}).command);
  };
  EXPECT_EQ(command("Exec = prog -a %f --x=%u b%%c %U\r\n"), "|prog|-a|--x=|b%c");
  EXPECT_EQ(command("Exec=prog %i \"%c\" %k \"\"\n"), "|prog|--icon|pic|My App|/e.desktop|");
  EXPECT_EQ(command("Exec=\"/opt/my prog\" \"a \\\\\"b\\\\\" \\\\$c\" ~\n"), "|/opt/my prog|a \"b\" $c|~");
  EXPECT_EQ(command("Exec=first\nExec=second\n[Desktop Action x]\nExec=third\n"), "|first");
  for (const char* none : {"[Other]\nExec=prog\n", "Exec=\"open\n", "Exec=%f\n", ""}) {
    EXPECT_FALSE(desktop::read_desktop_entry(head + none, "/e.desktop")) << none;
  }
  EXPECT_EQ(desktop::read_desktop_entry(head + "Exec=p\nPath=/x\\sy\n", "").value().directory, "/x y");
}

}  // namespace
