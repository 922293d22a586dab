// Programs and documents opened for real.
#include "desktop/shell.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "tests/support/xserver.h"

namespace {

namespace fs = std::filesystem;
using test_support::eventually;

constexpr int success = 42;

// A home folder of its own, with a bin folder that is all of the search path.
class Shell : public testing::Test {
 protected:
  void SetUp() override {
    std::string pattern = (fs::temp_directory_path() / "shell XXXXXX").string();
    ASSERT_NE(mkdtemp(pattern.data()), nullptr);
    home = fs::canonical(pattern);
    fs::create_directory(home / "bin");
    fs::create_symlink(GUEST, home / "bin" / "guest");
    setenv("HOME", home.c_str(), 1);
    setenv("PATH", ("relative:" + (home / "bin").string()).c_str(), 1);
    report = home / "report";
  }
  void TearDown() override { fs::remove_all(home); }

  static int open(const std::string& file) { return desktop::DesktopShell().ShellExecuteA(0, "open", file, "", "", 1); }
  void put(const std::string& name, const std::string& text, fs::perms mode = fs::perms(0644)) const {
    std::ofstream(home / name) << text;
    fs::permissions(home / name, mode);
  }
  // A handler of documents, which hands its arguments on to the guest.
  void put_handler(const std::string& name) const {
    put("bin/" + name, "#!/bin/sh\nexec '" GUEST "' '" + report.string() + "' " + name + " \"$@\"\n", fs::perms(0755));
  }
  // The lines of the guest's report that start with `word`, without it; a line "missing" if there is no report.
  std::vector<std::string> reported(const std::string& word) const {
    std::vector<std::string> lines;
    if (!eventually([&] { return fs::exists(report); })) lines.emplace_back("missing");
    std::ifstream in(report);
    for (std::string line; std::getline(in, line);) {
      if (line.starts_with(word)) lines.push_back(line.substr(word.size() + 1));
    }
    return lines;
  }

  fs::path home, report;
};

using Lines = std::vector<std::string>;

TEST_F(Shell, AProgramGetsItsArgumentsAndACleanStart) {
  // What must not reach it: descriptors of every kind, a signal that is blocked, one that is ignored.
  const int loose = ::open("/etc/passwd", O_RDONLY);
  const int high = fcntl(loose, F_DUPFD, 700);
  sigset_t blocked;
  sigemptyset(&blocked);
  sigaddset(&blocked, SIGTERM);
  pthread_sigmask(SIG_BLOCK, &blocked, nullptr);
  std::signal(SIGPIPE, SIG_IGN);

  EXPECT_EQ(open("guest ~/report 'a b' \"c\\\"d\" $HOME e\\ f"), success);
  EXPECT_EQ(reported("argument"), (Lines{"a b", "c\"d", "$HOME", "e f"}));
  EXPECT_EQ(reported("directory"), Lines{home.string()});
  EXPECT_EQ(reported("stream"), Lines(3, "/dev/null"));
  EXPECT_EQ(reported("descriptor"), Lines{});
  EXPECT_EQ(reported("SigBlk:"), Lines{"0000000000000000"});
  EXPECT_EQ(reported("SigIgn:"), Lines{"0000000000000000"});
  EXPECT_NE(reported("session"), Lines{std::to_string(getsid(0))});

  fs::remove(report);
  desktop::DesktopShell shell;
  EXPECT_EQ(shell.ShellExecuteA(0, "Open", "guest ~/report one", "two 'three four'", "/usr", 1), success);
  EXPECT_EQ(reported("argument"), (Lines{"one", "two", "three four"}));
  EXPECT_EQ(reported("directory"), Lines{"/usr"});
  EXPECT_EQ(shell.ShellExecuteA(0, "print", "guest ~/report", "", "", 1), 31);

  // Neither running nor dead is it a child of ours, and our own signals are as they were.
  EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1);
  EXPECT_EQ(errno, ECHILD);
  sigset_t now;
  pthread_sigmask(SIG_UNBLOCK, &blocked, &now);
  EXPECT_TRUE(sigismember(&now, SIGTERM) == 1 && sigismember(&now, SIGINT) == 0);
  close(loose);
  close(high);
}

TEST_F(Shell, AProgramOutlivesTheOneThatStartedIt) {
  ASSERT_EQ(mkfifo((report.string() + ".hold").c_str(), 0600), 0);
  const pid_t starter = fork();
  if (starter == 0) {
    setpgid(0, 0);
    for (int fd = 0; fd < 3; ++fd) close(fd);
    _exit(open("guest ~/report") == success ? 0 : 1);
  }
  int status = -1;
  ASSERT_EQ(waitpid(starter, &status, 0), starter);
  ASSERT_EQ(status, 0);
  EXPECT_EQ(reported("stream"), Lines(3, "/dev/null")) << "although the starter had none";
  // What a closing terminal does to the group of a program.
  kill(-starter, SIGKILL);
  // Opens once somebody reads, that is, lives.
  int hold = -1;
  EXPECT_TRUE(
      eventually([&] { return (hold = ::open((report.string() + ".hold").c_str(), O_WRONLY | O_NONBLOCK)) >= 0; }));
  close(hold);
  EXPECT_TRUE(eventually([&] { return fs::exists(report.string() + ".done"); }));
}

TEST_F(Shell, DocumentsFoldersAndAddressesGoToTheDesktopsHandler) {
  put("some notes.txt", "text");
  put("letter.odt", "everything may be executed on a foreign disk", fs::perms(0777));
  put("link.desktop", "[Desktop Entry]\nType=Link\nURL=ftp://c.d\n");
  const std::pair<std::string, std::string> cases[] = {{"~/some notes.txt", home / "some notes.txt"},
                                                       {"~", home},
                                                       {"https://a.b/?c&d", "https://a.b/?c&d"},
                                                       {"link.desktop", "ftp://c.d"}};
  EXPECT_EQ(open("letter.odt"), 31) << "where nothing is set up to open it";
  put_handler("gio");
  EXPECT_EQ(open("letter.odt"), success);
  EXPECT_EQ(reported("argument"), (Lines{"gio", "open", home / "letter.odt"}));
  put_handler("xdg-open");
  for (const auto& [text, handed_over] : cases) {
    fs::remove(report);
    EXPECT_EQ(open(text), success) << text;
    EXPECT_EQ(reported("argument"), (Lines{"xdg-open", handed_over})) << text;
  }
}

TEST_F(Shell, AnEntryStartsWhatItDescribes) {
  const std::string head =
      "[Desktop Entry]\nType=Application\nPath=/usr\nExec=guest \"" + report.string() + "\" %U x\n";
  put("plain.desktop", head);
  EXPECT_EQ(open("~/plain.desktop"), success);
  EXPECT_EQ(reported("argument"), Lines{"x"});
  EXPECT_EQ(reported("directory"), Lines{"/usr"});
  put("terminal.desktop", head + "Terminal=true\n");
  EXPECT_EQ(open("~/terminal.desktop"), 2) << "without a terminal";
  fs::remove(report);
  put_handler("x-terminal-emulator");
  EXPECT_EQ(open("~/terminal.desktop"), success);
  EXPECT_EQ(reported("argument"), (Lines{"x-terminal-emulator", "-e", "guest", report, "x"}));
  put("damaged.desktop", "[Desktop Entry]\n");
  EXPECT_EQ(open("~/damaged.desktop"), 11);
}

TEST_F(Shell, WhatCannotBeOpenedSaysWhy) {
  put("no_interpreter", "#!/no/such/interpreter\n", fs::perms(0755));
  put("truncated", "\177ELF", fs::perms(0755));
  ASSERT_EQ(mkfifo((home / "pipe").c_str(), 0600), 0);
  for (const auto& [text, code] : {std::pair("", 2),
                                   {"/no/such/file", 2},
                                   {"no_such_command x", 2},
                                   {"~/pipe", 2},
                                   {"no_interpreter", 2},
                                   {"~/truncated", 11}})
    EXPECT_EQ(open(text), code) << text;
}

}  // namespace
