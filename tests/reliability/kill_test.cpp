#include <sys/wait.h>
#include <unistd.h>

#include <csignal>

#include "tests/reliability/store.h"

namespace {

using testing::AnyOf;
using testing::IsEmpty;

// A process of its own saves and is killed before or after its call number `call`; at 0 calls it is not killed.
int killed_save(const std::filesystem::path& folder, std::size_t longest_write, std::size_t call, bool after) {
  const pid_t child = ::fork();
  if (child == 0) {
    Unsynced system;
    simulation::FaultyFiles files(system);
    desktop::ProfileFolder profile(folder, files);
    Store store(profile);
    files.calls.clear();
    files.longest_write = longest_write;
    (after ? files.after : files.before) = [&] {
      if (files.calls.size() == call) ::raise(SIGKILL);
    };
    ::_exit(store.save("T:neuf") ? 0 : 1);
  }
  int status = 0;
  ::waitpid(child, &status, 0);
  return status;
}

TEST(Kill, AtAnyCallLeavesTheOldFileOrTheNew) {
  struct Size {
    std::size_t patrons;
    std::int16_t points;
  };
  int kills = 0;
  for (const Size& size : {Size{1, 2}, Size{20, 32}, Size{99, 100}}) {
    Folder root;
    const std::filesystem::path file = root.path / profile_name;
    Unsynced system;
    desktop::ProfileFolder profile(root.path, system);
    Store store(profile);
    store.fill(size.patrons, size.points);
    ASSERT_TRUE(store.save("T:neuf"));
    const std::string next = bytes_of(file);
    ASSERT_TRUE(store.save("T:vieux"));
    const std::string old = bytes_of(file);
    bool more = true;
    for (std::size_t call = 1; more; ++call) {
      for (const bool after : {false, true}) {
        SCOPED_TRACE(std::to_string(size.patrons) + " patrons, call " + std::to_string(call));
        const int status = killed_save(root.path, old.size() / 3 + 1, call, after);
        EXPECT_THAT(bytes_of(file), AnyOf(old, next));
        more = WIFSIGNALED(status);
        if (more) {
          ++kills;
        } else {
          EXPECT_EQ(status, 0);
        }
        // A later save tidies up.
        grow_old(root.path);
        desktop::ProfileFolder again(root.path, system);
        EXPECT_TRUE(Store(again).save("T:vieux"));
        EXPECT_EQ(bytes_of(file), old);
        EXPECT_THAT(files_of(root.path, "."), IsEmpty());
      }
    }
  }
  std::printf("kill points: %d\n", kills);
  EXPECT_GE(kills, 140);
}

}  // namespace
