#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <fstream>

#include "tests/program/desk.h"

namespace {

namespace fs = std::filesystem;

TEST(Fault, WithoutADisplayOneSentenceAndStatus1) {
  const std::string out = fs::temp_directory_path() / ("strokemind-no-display-" + std::to_string(getpid()));
  Process program({"sh", "-c", "exec '" PROGRAM_FOLDER "/Strokemind' 2>" + out}, {"DISPLAY=", "WAYLAND_DISPLAY="});
  EXPECT_EQ(program.wait(), 1 << 8) << "an end by itself, with status 1";
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
    ASSERT_TRUE(eventually([&] { return !desk.screen.managed().empty(); })) << "a box names the file";
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
  const std::pair<std::string, bool> cases[] = {{"printf '\\377\\001[\\002=\\n][' >", true},
                                                {"mkdir", true},
                                                {"truncate -s 1G", true},
                                                {"mkfifo", true},
                                                {"ln -s nowhere", false}};
  for (const auto& [damage, kept] : cases) {
    SCOPED_TRACE(damage);
    Desk desk("");
    ASSERT_EQ(Process({"sh", "-c", damage + " '" + desk.profile_path() + "'"}).wait(), 0);
    desk.program = Process({PROGRAM_FOLDER "/Strokemind"}, desk.environment());
    ASSERT_TRUE(eventually([&] { return !desk.screen.managed().empty(); }));
    desk.program.signal(SIGTERM);
    EXPECT_EQ(desk.program.wait(), 0);
    EXPECT_EQ(contents(desk.profile_path()).substr(0, 7), "[Pos]\r\n");
    EXPECT_EQ(fs::exists(desk.profile_path() + ".ancien"), kept);
    EXPECT_EQ(fs::is_symlink(desk.profile_path()), !kept);
  }
}

}  // namespace
