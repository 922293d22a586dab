#include <unistd.h>

#include "tests/reliability/store.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAreArray;

// The file, or those that were set aside.
std::string file_in(platform::FileStore& files, const std::string& name = profile_name) {
  std::string bytes;
  return files.read(name, bytes) == platform::ReadOutcome::read ? bytes : "none";
}

std::vector<std::string> copies_in(platform::FileStore& files) {
  std::vector<std::string> found;
  for (std::string name = "Strokemind.AI.ancien"; file_in(files, name) != "none";) {
    found.push_back(file_in(files, name));
    name = "Strokemind.AI.ancien-" + std::to_string(found.size() + 1);
  }
  return found;
}

// Two programs that write in turn, and a hand.
void write_in_turn(platform::FileStore& files, platform::FileStore& files_of_two) {
  Store one(files);
  Store two(files_of_two);
  one.fill(1, 2);
  two.fill(2, 2);
  ASSERT_TRUE(one.save("T:un"));
  const std::string of_one = file_in(files);
  EXPECT_THAT(copies_in(files), IsEmpty());
  ASSERT_TRUE(two.save("T:deux"));
  const std::string of_two = file_in(files);
  EXPECT_NE(of_two, of_one);
  EXPECT_THAT(copies_in(files), ElementsAre(of_one));
  ASSERT_TRUE(one.save("T:trois"));
  EXPECT_THAT(copies_in(files), ElementsAre(of_one, of_two));
  // Its own file is nothing to be kept, nor what has been kept already.
  ASSERT_TRUE(one.save("T:quatre"));
  files.replace(profile_name, of_two);
  ASSERT_TRUE(one.save("T:cinq"));
  EXPECT_THAT(copies_in(files), ElementsAre(of_one, of_two));
  files.replace(profile_name, "; by hand");
  ASSERT_TRUE(one.save("T:six"));
  EXPECT_THAT(copies_in(files), ElementsAre(of_one, of_two, "; by hand"));
  // What is about to be written anyway is not lost.
  const std::string six = file_in(files);
  ASSERT_TRUE(one.save("T:sept"));
  files.replace(profile_name, six);
  ASSERT_TRUE(one.save("T:six"));
  EXPECT_EQ(copies_in(files).size(), 3U);
}

TEST(TwoWriters, KeepEachOthersWork) {
  Folder root;
  desktop::ProfileFolder one(root.path);
  desktop::ProfileFolder two(root.path);
  write_in_turn(one, two);
  simulation::Journal journal;
  simulation::ProfileFiles memory(journal);
  write_in_turn(memory, memory);
}

// The temporary file of a process that lives is left to it, be it on another machine, and so is whatever else is hidden
// there.
TEST(TwoWriters, LeaveTheirTemporaryFilesAlone) {
  Folder root;
  const std::string dead = ".nouveau-999999999-5";  // beyond the largest number that Linux gives
  const std::string own = ".nouveau-" + std::to_string(::getpid()) + "-4294967295";
  for (const std::string& name : {dead, own, ".ancien-2" + dead, ".ancien" + own}) {
    write(root.path / (".Strokemind.AI" + name), "to go");
  }
  std::vector<std::string> strangers{".nouveau-1-5",
                                     ".nouveau-x-5",
                                     ".nouveau-1.5",
                                     ".nouveau-999999999",
                                     ".nouveau-999999999-",
                                     ".nouveau-999999999-5x",
                                     ".nouveau-999999999-4294967296",
                                     ".nouveau--999999999-5",
                                     ".nouveau-",
                                     ".nouveau",
                                     ".autre" + dead,
                                     ".nouveau-9999999999999999999-5"};
  for (const std::string& name : strangers) write(root.path / (".Strokemind.AI" + name), name);
  grow_old(root.path);
  for (const std::string& fresh : {dead + "0", own.substr(0, own.size() - 1)}) {
    strangers.push_back(fresh);
    write(root.path / (".Strokemind.AI" + fresh), fresh);
  }
  desktop::ProfileFolder profile(root.path);
  ASSERT_TRUE(Store(profile).save(""));
  EXPECT_THAT(files_of(root.path, "."), UnorderedElementsAreArray(strangers));
}

}  // namespace
