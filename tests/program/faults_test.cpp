#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdint>
#include <filesystem>
#include <fstream>

#include "tests/program/desk.h"

using stage::eventually;
using stage::Process;

namespace {

namespace fs = std::filesystem;

const Path corner = {{200, 300}, {200, 500}, {420, 500}};

TEST(Fault, WithoutADisplayOneSentenceAndStatus1) {
  const std::string out = fs::temp_directory_path() / ("strokemind-no-display-" + std::to_string(getpid()));
  Process program({"sh", "-c", "exec '" PROGRAM_FOLDER "/Strokemind' 2>" + out}, {"DISPLAY=", "WAYLAND_DISPLAY="});
  const int status = program.wait();
  EXPECT_TRUE(WIFEXITED(status));
  EXPECT_EQ(WEXITSTATUS(status), 1);
  const std::string said = contents(out);
  EXPECT_EQ(std::count(said.begin(), said.end(), '\n'), 1) << said;
  fs::remove(out);
}

TEST(Fault, WithoutItsLibraryItSaysSoAndEnds) {
  for (const bool broken : {false, true}) {
    Desk desk("");
    // The program alone in a folder, with its font.
    fs::create_directories(desk.path("bin"));
    for (const char* file : {"Strokemind", "OCRAEXT.TTF"}) {
      fs::copy_file(fs::path(PROGRAM_FOLDER) / file, fs::path(desk.path("bin")) / file);
    }
    if (broken) std::ofstream(desk.path("bin/Strokemind.so")) << "no library";
    desk.program = Process({desk.path("bin/Strokemind")}, desk.environment());
    Watcher screen(desk.server);
    ASSERT_TRUE(eventually([&] { return !screen.managed().empty(); })) << "a box names the file";
    desk.screenshot(broken ? "broken" : "missing");
    // The box has the keyboard: Enter presses its one button.
    ASSERT_TRUE(eventually([&] {
      desk.user.type(0xFF0D);
      return !desk.program.running();
    }));
    EXPECT_EQ(WEXITSTATUS(desk.program.wait()), 1);
    EXPECT_FALSE(fs::exists(desk.profile_path()));
  }
}

// Whatever lies where the profile should: the program starts, and a copy of what it could not take in is kept.
TEST(Fault, DamagedProfilesAreKept) {
  struct Case {
    const char* what;
    void (*damage)(const std::string& file);
    bool kept;
  };
  const auto write = [](const std::string& file, const std::string& bytes) {
    std::ofstream(file, std::ios::binary) << bytes;
  };
  static const auto write_bytes = write;
  for (const Case& c : {Case{"rubbish", [](const std::string& file) { write_bytes(file, "\xFF\x01[\x02=\n]["); }, true},
                        Case{"a directory", [](const std::string& file) { fs::create_directory(file); }, true},
                        Case{"1 GB",
                             [](const std::string& file) {
                               write_bytes(file, "[A]\r\n");
                               fs::resize_file(file, std::uintmax_t{1} << 30);
                             },
                             true},
                        Case{"a pipe", [](const std::string& file) { ASSERT_EQ(mkfifo(file.c_str(), 0600), 0); }, true},
                        Case{"a link to nowhere",
                             [](const std::string& file) { fs::create_symlink(file + ".elsewhere", file); }, false}}) {
    Desk desk("");
    c.damage(desk.profile_path());
    desk.program = Process({std::string(PROGRAM_FOLDER) + "/Strokemind"}, desk.environment());
    Watcher screen(desk.server);
    ASSERT_TRUE(eventually([&] { return !screen.managed().empty(); })) << c.what;
    desk.program.signal(SIGTERM);
    EXPECT_EQ(desk.program.wait(), 0) << c.what;
    EXPECT_EQ(contents(desk.profile_path()).substr(0, 7), "[Pos]\r\n") << c.what;
    EXPECT_EQ(fs::exists(desk.profile_path() + ".ancien"), c.kept) << c.what;
    EXPECT_EQ(fs::is_symlink(desk.profile_path()), !c.kept) << c.what;
  }
}

}  // namespace
