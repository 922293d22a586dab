// The store of the program over a folder of the real disk that goes with the test.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "desktop/profile.h"
#include "simulation/faulty_files.h"
#include "simulation/profile_files.h"
#include "store/profil.h"

inline constexpr const char* profile_name = "Strokemind.AI";

// In memory where the system has room there: thousands of saves on a disk take their time.
struct Folder {
  Folder() {
    const std::string memory = "/dev/shm/";
    std::string form = (::access(memory.c_str(), W_OK) == 0 ? memory : testing::TempDir()) + "strokemind-XXXXXX";
    path = ::mkdtemp(form.data());
  }
  ~Folder() { std::filesystem::remove_all(path); }
  Folder(const Folder&) = delete;
  Folder& operator=(const Folder&) = delete;
  std::filesystem::path path;
};

// The power stays on: a sync would do nothing but take its time.
struct Unsynced : desktop::SystemFiles {
  int fsync(int /*file*/) override { return 0; }
};

inline void write(const std::filesystem::path& path, const std::string& bytes) {
  std::ofstream(path, std::ios::binary | std::ios::trunc) << bytes;
}

// "none" where there is no file.
inline std::string bytes_of(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  return file ? std::string(std::istreambuf_iterator<char>(file), {}) : "none";
}

// The bytes of all files of a folder whose names begin with `start`.
inline std::vector<std::string> files_of(const std::filesystem::path& folder, const std::string& start) {
  std::vector<std::string> found;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    if (entry.path().filename().string().starts_with(start)) found.push_back(bytes_of(entry.path()));
  }
  return found;
}

// Lets the hidden files of a folder be so old that no save can still be writing them.
inline void grow_old(const std::filesystem::path& folder) {
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    if (!entry.path().filename().string().starts_with(".")) continue;
    std::filesystem::last_write_time(entry, std::filesystem::file_time_type::clock::now() - std::chrono::minutes(2));
  }
}

// What the program makes of a profile: the table that it loads and writes back.
struct Store {
  explicit Store(platform::FileStore& files) : service(files) { profil.charger_patrons(); }
  // A table of `patrons` of `points` points each, where there was none.
  void fill(std::size_t patrons, std::int16_t points) {
    for (std::size_t slot = 0; slot < patrons; ++slot) {
      Mod_dessin::Patron& patron = table.patrons[slot];
      patron = {"PATRON" + std::to_string(slot), {}, {}, points, ""};
      for (int k = 0; k < points; ++k) {
        patron.X.values.push_back(k % 64);
        patron.Y.values.push_back(static_cast<double>(slot) / 4);
      }
    }
    table.nb_patrons = static_cast<std::uint8_t>(patrons);
  }
  bool save(const std::string& action) {
    table.patrons[0].Action = action;
    return profil.ecrire_patrons();
  }

  SK sk;
  Mod_dessin::Table table;
  platform::ProfileService service;
  Mod_ini ini{service, profile_name};
  Mod_dessin::Profil profil{ini, sk, table};
};
