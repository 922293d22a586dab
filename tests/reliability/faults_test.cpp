#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <functional>

#include "tests/reliability/store.h"

namespace {

using testing::AnyOf;
using testing::IsEmpty;

namespace fs = std::filesystem;

struct Ground {
  const char* what;
  bool there = false;       // a file is there before
  bool linked = false;      // a symbolic link leads to it
  bool read_only = false;   // nothing can be changed in its folder
  bool foreign = false;     // a hand changes it between the load and the save
  bool linkless = false;    // the file system knows no hard links
  bool unreadable = false;  // the file may not be read, from the save on
};

constexpr Ground grounds[] = {
    {.what = "a new file"},
    {.what = "a file", .there = true},
    {.what = "a symbolic link", .there = true, .linked = true},
    {.what = "a read-only folder", .there = true, .read_only = true},
    {.what = "a file changed by hand", .there = true, .foreign = true},
    {.what = "a linked file changed by hand", .there = true, .linked = true, .foreign = true},
    {.what = "a file changed by hand, no hard links", .there = true, .foreign = true, .linkless = true},
    {.what = "a linked file, no hard links", .there = true, .linked = true, .foreign = true, .linkless = true},
    {.what = "an unreadable file", .there = true, .foreign = true, .unreadable = true},
    {.what = "an unreadable file, no hard links",
     .there = true,
     .foreign = true,
     .linkless = true,
     .unreadable = true}};
constexpr const char* by_hand = "; my own notes\r\n";
constexpr const char* kept_before = "; what an earlier save has set aside\r\n";
const fs::perms mode = fs::perms::owner_read | fs::perms::owner_write | fs::perms::group_read;

std::string first_table() {
  simulation::Journal journal;
  simulation::ProfileFiles files(journal);
  Store store(files);
  store.fill(3, 32);
  store.save("T:vieux");
  return files.files[profile_name];
}

std::string with_action(std::string file, const std::string& action) {
  return file.replace(file.find("T:vieux"), std::strlen("T:vieux"), action);
}

// One save on a ground of its own, with a fault or without.
class Try {
 public:
  Try(const Ground& ground, const std::optional<simulation::Fault>& fault) : ground_(ground), first_(first_table()) {
    const fs::path target = ground.linked ? root_.path / "elsewhere" / "mine.ini" : file_;
    fs::create_directories(target.parent_path());
    if (ground.there) {
      if (ground.linked) fs::create_directories(folder_);
      write(target, first_);
      fs::permissions(target, mode);
      if (ground.linked) fs::create_symlink("../../elsewhere/mine.ini", file_);
    } else {
      fs::remove_all(folder_.parent_path());
    }
    store_.emplace(profile_);
    if (!ground.there) store_->fill(3, 32);
    if (ground.foreign) write(folder_ / "Strokemind.AI.ancien", kept_before);
    if (ground.foreign) write(file_, by_hand);
    before_ = bytes_of(file_);
    if (ground.read_only) files_.read_only = folder_;
    files_.linkless = ground.linkless;
    if (ground.unreadable) files_.unreadable = file_;
    files_.calls.clear();
    files_.fault = fault;
    const Mod_dessin::Table whole = changed("T:neuf");
    saved_ = store_->save("T:neuf");
    calls_ = files_.calls;
    EXPECT_EQ(store_->table, whole);
  }

  // What must hold whatever failed, now and after a save to which nothing happens.
  void check() {
    const std::string after = bytes_of(file_);
    // What can only be moved away, and then neither replaced nor moved back, stays where it was moved.
    const bool moved = ground_.there && !fs::exists(file_);
    if (moved) {
      EXPECT_TRUE(ground_.unreadable && ground_.linkless && files_.fault->lasting);
      EXPECT_EQ(calls_.at(files_.fault->call), "rename");
    } else {
      EXPECT_THAT(after, AnyOf(before_, with_action(first_, "T:neuf")));
    }
    EXPECT_TRUE(!saved_ || after != before_);
    EXPECT_TRUE(foreign_kept());
    files_.fault.reset();
    files_.read_only.clear();
    files_.unreadable.clear();
    EXPECT_TRUE(store_->save("T:encore"));
    EXPECT_EQ(bytes_of(file_), with_action(first_, "T:encore"));
    EXPECT_EQ(Store(profile_).table.patrons[0].Action, "T:encore");
    EXPECT_TRUE(foreign_kept());
    EXPECT_THAT(files_of(folder_, "."), IsEmpty());
    if (ground_.linked) {
      EXPECT_TRUE(fs::is_symlink(file_));
      EXPECT_THAT(files_of(root_.path / "elsewhere", "."), IsEmpty());
    }
    EXPECT_EQ(fs::status(file_).permissions(),
              ground_.there && !moved ? mode : fs::perms::owner_read | fs::perms::owner_write);
  }

  bool saved() const { return saved_; }
  const std::vector<std::string_view>& calls() const { return calls_; }

 private:
  bool foreign_kept() const {
    if (!ground_.foreign) return true;
    const std::vector<std::string> kept = files_of(folder_, profile_name);
    const auto holds = [&](const char* bytes) { return std::find(kept.begin(), kept.end(), bytes) != kept.end(); };
    return holds(by_hand) && holds(kept_before);
  }
  Mod_dessin::Table changed(const std::string& action) const {
    Mod_dessin::Table table = store_->table;
    table.patrons[0].Action = action;
    return table;
  }

  const Ground& ground_;
  const std::string first_;
  Folder root_;
  fs::path folder_ = root_.path / "config" / "strokemind";
  fs::path file_ = folder_ / profile_name;
  Unsynced system_;
  simulation::FaultyFiles files_{system_};
  desktop::ProfileFolder profile_{folder_, files_};
  std::optional<Store> store_;
  std::string before_;
  bool saved_ = false;
  std::vector<std::string_view> calls_;
};

// Each call of a save fails in each of its ways, once and for good.
TEST(Faults, EachCallOfASaveMayFail) {
  int cases = 0;
  for (const Ground& ground : grounds) {
    Try plain(ground, std::nullopt);
    EXPECT_EQ(plain.saved(), !ground.read_only) << ground.what;
    plain.check();
    for (std::size_t call = 0; call < plain.calls().size(); ++call) {
      for (const int error : simulation::errors_of(plain.calls()[call])) {
        for (const bool lasting : {false, true}) {
          if (lasting && error == EINTR) continue;  // no signal comes for ever
          SCOPED_TRACE(std::string(ground.what) + ", call " + std::to_string(call) + " (" +
                       std::string(plain.calls()[call]) + "): " + std::strerror(error) + (lasting ? ", lasting" : ""));
          Try attempt(ground, simulation::Fault{call, error, lasting});
          const bool harmless = error == EINTR || error == 0;
          EXPECT_TRUE(!harmless || attempt.saved() == plain.saved());
          attempt.check();
          ++cases;
        }
      }
    }
  }
  std::printf("fault cases: %d\n", cases);
  EXPECT_GE(cases, 5000);
}

// What stands in the way of a load is no reason to lose it at the next save.
TEST(Faults, WhatCannotBeReadIsKept) {
  for (const char* call : {"open", "fstat", "read"}) {
    Folder root;
    write(root.path / profile_name, first_table());
    Unsynced system;
    simulation::FaultyFiles files(system);
    desktop::ProfileFolder profile(root.path, files);
    files.fault = simulation::Fault{call == std::string("open") ? 0U : call == std::string("fstat") ? 1U : 2U, EIO};
    Store store(profile);
    ASSERT_EQ(files.calls.at(files.fault->call), call);
    EXPECT_EQ(store.table.nb_patrons, 0) << call;
    EXPECT_TRUE(store.save("")) << call;
    EXPECT_EQ(bytes_of(root.path / "Strokemind.AI.ancien"), first_table()) << call;
  }
}

// What may stand where the file, its folder, its temporary file or its copy should be.
TEST(Faults, WhatStandsInTheWay) {
  struct Obstacle {
    const char* what;
    std::function<void(const fs::path& file)> put;
    bool saved, copied;
  };
  struct Predictable : Unsynced {
    std::uint32_t random() override { return 7; }
  };
  const std::string temporary = ".Strokemind.AI.nouveau-" + std::to_string(::getpid()) + "-7";
  const auto fill_names = [](const fs::path& file) {
    write(file, "; odd");
    for (int n = 1; n <= 1000; ++n) write(file.string() + ".ancien" + (n == 1 ? "" : "-" + std::to_string(n)), "x");
  };
  for (const Obstacle& obstacle : std::vector<Obstacle>{
           {"a folder", [](auto& file) { fs::create_directory(file); }, true, true},
           {"a socket", [](auto& file) { ::mknod(file.c_str(), S_IFSOCK | 0600U, 0); }, true, true},
           {"a huge file", [](auto& file) { write(file, ""), fs::resize_file(file, 1U << 26U); }, true, true},
           {"a ring of links", [](auto& file) { fs::create_symlink(file.filename(), file); }, false, false},
           {"a link from the root", [](auto& file) { fs::create_symlink(file.string() + ".x", file); }, true, false},
           {"no folder", [](auto& file) { fs::remove(file.parent_path()), write(file.parent_path(), ""); }, false,
            false},
           {"no room", [&](auto& file) { fs::create_directory(file.parent_path() / temporary); }, false, false},
           {"no name left for a copy", fill_names, false, true}}) {
    SCOPED_TRACE(obstacle.what);
    Folder root;
    const fs::path file = root.path / "strokemind" / profile_name;
    fs::create_directory(file.parent_path());
    obstacle.put(file);
    Predictable system;
    desktop::ProfileFolder profile(file.parent_path(), system);
    Store store(profile);
    store.fill(1, 2);
    const Mod_dessin::Table table = store.table;
    EXPECT_EQ(store.save(""), obstacle.saved);
    EXPECT_EQ(store.table, table);
    EXPECT_EQ(Store(profile).table.nb_patrons, obstacle.saved ? 1 : 0);
    EXPECT_EQ(fs::exists(file.string() + ".ancien"), obstacle.copied);
  }
}

// A temporary file that cannot even be removed goes with a later save, unless somebody else has removed it.
TEST(Faults, WhatCouldNotBeRemovedIsRemovedLater) {
  struct Stuck : Unsynced {
    bool renames = false, unlinks = false;
    int rename(const std::string& from, const std::string& to) override {
      return renames ? SystemFiles::rename(from, to) : -1;
    }
    int unlink(const std::string& path) override {
      if (unlinks) return SystemFiles::unlink(path);
      errno = EROFS;
      return -1;
    }
  };
  Folder root;
  Stuck system;
  desktop::ProfileFolder profile(root.path, system);
  Store store(profile);
  store.fill(1, 2);
  EXPECT_FALSE(store.save(""));
  EXPECT_FALSE(store.save(""));
  EXPECT_EQ(files_of(root.path, ".").size(), 2U);
  fs::remove(*fs::directory_iterator(root.path));
  system.renames = true;
  EXPECT_TRUE(store.save(""));
  EXPECT_EQ(files_of(root.path, ".").size(), 1U);
  system.unlinks = true;
  EXPECT_TRUE(store.save(""));
  EXPECT_THAT(files_of(root.path, "."), IsEmpty());
}

// The name to which a file is to be moved is taken by another program while the new file is written.
TEST(Faults, AMoveTakesNobodysName) {
  Folder root;
  const fs::path file = root.path / profile_name;
  const fs::path copy = root.path / "Strokemind.AI.ancien";
  Unsynced system;
  simulation::FaultyFiles files(system);
  desktop::ProfileFolder profile(root.path, files);
  Store store(profile);
  store.fill(1, 2);
  write(file, by_hand);
  files.linkless = true;
  files.unreadable = file;
  files.before = [&] {
    if (files.calls.back() == "write") write(copy, kept_before);
  };
  EXPECT_FALSE(store.save(""));
  EXPECT_EQ(bytes_of(file), by_hand);
  EXPECT_TRUE(store.save(""));
  EXPECT_EQ(bytes_of(copy), kept_before);
  EXPECT_EQ(bytes_of(copy.string() + "-2"), by_hand);
}

// A file that gets shorter between two calls is read as far as it goes.
TEST(Faults, AFileThatShrinks) {
  struct Shrinking : Unsynced {
    int fstat(int file, platform::FileState& state) override {
      const int result = SystemFiles::fstat(file, state);
      state.size += 10;
      return result;
    }
  };
  Folder root;
  write(root.path / profile_name, first_table());
  Shrinking system;
  desktop::ProfileFolder profile(root.path, system);
  EXPECT_EQ(Store(profile).table.nb_patrons, 3);
  std::vector<std::string> names;
  platform::FileState state;
  EXPECT_EQ(system.list(root.path / "none", names), -1);
  EXPECT_EQ(system.SystemFiles::fstat(-1, state), -1);
  fs::create_directory(root.path / "folder");
  EXPECT_FALSE(profile.replace("folder", "x"));
}

TEST(Faults, TheFolderIsFoundWhateverTheEnvironmentSays) {
  static passwd user{};
  static std::string home = "/known";
  user.pw_dir = home.data();
  const auto known = [](uid_t) { return &user; };
  const auto unknown = [](uid_t) -> passwd* { return nullptr; };
  for (const auto& [config, value, user_of, folder] :
       {std::tuple<const char*, const char*, passwd* (*)(uid_t), const char*>{"/c", "/h", known, "/c/strokemind"},
        {"c", "/h", known, "/h/.config/strokemind"},
        {nullptr, "h", known, "/known/.config/strokemind"},
        {nullptr, nullptr, known, "/known/.config/strokemind"},
        {nullptr, nullptr, unknown, "//.config/strokemind"}}) {
    config != nullptr ? ::setenv("XDG_CONFIG_HOME", config, 1) : ::unsetenv("XDG_CONFIG_HOME");
    value != nullptr ? ::setenv("HOME", value, 1) : ::unsetenv("HOME");
    EXPECT_EQ(desktop::profile_folder(user_of), folder);
  }
}

}  // namespace
