// How long a save of a full table takes: the text of the file, and the whole save on a real disk with its syncs.
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <random>
#include <string>
#include <vector>

#include "desktop/profile.h"
#include "forms/sk.h"
#include "store/profil.h"

namespace {

constexpr std::size_t patrons = 99;
constexpr std::size_t points = 500;
constexpr int rounds = 31;

// Counts and swallows the replacements.
class Nowhere : public platform::FileStore {
 public:
  platform::ReadOutcome read(std::string_view, std::string&) override { return platform::ReadOutcome::missing; }
  bool replace(std::string_view, std::string_view bytes) override {
    ++replacements;
    size = bytes.size();
    return true;
  }
  bool set_aside(std::string_view) override { return true; }
  int replacements = 0;
  std::size_t size = 0;
};

void fill(Mod_dessin::Table& table) {
  std::mt19937 random(5);
  std::uniform_real_distribution<float> uniform(0, 64);
  for (std::size_t s = 0; s < patrons; ++s) {
    Mod_dessin::Patron& patron = table.patrons[s];
    patron = {"PATRON" + std::to_string(s), {}, {}, points, "C:Copier"};
    for (std::size_t k = 0; k < points; ++k) {
      patron.X.values.push_back(uniform(random));
      patron.Y.values.push_back(uniform(random));
    }
  }
  table.nb_patrons = patrons;
}

double median_save(platform::FileStore& files, Mod_dessin::Table& table) {
  SK sk;
  platform::ProfileService service(files);
  Mod_ini ini(service, "Strokemind.AI");
  Mod_dessin::Profil profil(ini, sk, table);
  std::vector<double> times;
  for (int n = 0; n < rounds; ++n) {
    const auto start = std::chrono::steady_clock::now();
    if (!profil.ecrire_patrons()) return -1;
    times.push_back(std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count());
  }
  std::nth_element(times.begin(), times.begin() + rounds / 2, times.end());
  return times[rounds / 2];
}

}  // namespace

int main() {
  Mod_dessin::Table table;
  fill(table);
  Nowhere nowhere;
  const double text = median_save(nowhere, table);
  const std::string folder = std::filesystem::temp_directory_path() / "strokemind-save-bench";
  desktop::ProfileFolder disk(folder);
  const double whole = median_save(disk, table);
  std::filesystem::remove_all(folder);
  std::printf(
      "save of %zu patrons of %zu points, %zu bytes: %.2f ms besides the disk, %.2f ms with it and its syncs; "
      "%d replacements in %d saves\n",
      patrons, points, nowhere.size, text, whole, nowhere.replacements, rounds);
  return 0;
}
