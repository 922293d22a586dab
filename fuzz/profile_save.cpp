// What a save has written, the next load takes in as it is: the save after that writes the same bytes. What the first
// load could not take in is set aside. No value, whatever is in it, breaks out of its line.
#include <algorithm>
#include <vector>

#include "forms/sk.h"
#include "fuzz/input.h"
#include "platform/profile_text.h"
#include "platform/text.h"
#include "simulation/profile_files.h"
#include "store/profil.h"

namespace {

constexpr const char* name = "Strokemind.AI";

struct Visit {
  Mod_dessin::Table loaded;
  std::string file;   // what lies there afterwards
  bool kept = false;  // what lay there before has been set aside
};

// One run of the program over a file.
Visit visited(const std::string& file) {
  simulation::Journal journal;
  simulation::ProfileFiles files(journal);
  files.files[name] = file;
  platform::ProfileService service(files);
  Mod_ini ini(service, name);
  static SK sk;
  sk.Left = 0;
  sk.Top = 0;
  Mod_dessin::Table table;
  Mod_dessin::Profil profil(ini, sk, table);
  profil.lire_position();
  profil.charger_patrons();
  Visit visit{table, {}, false};
  promise(profil.ecrire_patrons());
  const auto copy = files.files.find("Strokemind.AI.ancien");
  visit.kept = copy != files.files.end();
  promise(!visit.kept || copy->second == file);
  visit.file = files.files[name];
  return visit;
}

// Whether every value of a section that holds something stands in a section of another file.
bool all_there(const platform::ProfileText& before, const std::string& section, const platform::ProfileText& after,
               const std::string& now) {
  const std::vector<std::string> keys = before.keys(section);
  return std::all_of(keys.begin(), keys.end(), [&](const std::string& key) {
    const std::string& value = *before.value(section, key);
    const std::string* const written = after.value(now, key);
    return value.empty() || (written != nullptr && *written == value);  // an empty value holds nothing to be lost
  });
}

// The same for all its sections, each under its own name; the position alone may have come under another one.
bool all_there(const std::string& file, const std::string& other) {
  const auto before = platform::ProfileText::parse(file);
  const auto after = platform::ProfileText::parse(other);
  const std::vector<std::string> written = after.sections();
  int elsewhere = 0;
  for (const std::string& section : before.sections()) {
    const bool there = std::any_of(written.begin(), written.end(),
                                   [&](const auto& now) { return platform::equal_ignoring_case(now, section); });
    if (!there) ++elsewhere;
    if (!all_there(before, section, after, there ? section : "Pos")) return false;
  }
  return elsewhere <= 1;
}

// The table that a file takes in whole: names of one section, which a file may spell in several ways, have one patron.
Mod_dessin::Table packed(const Mod_dessin::Table& table) {
  Mod_dessin::Table result;
  for (const Mod_dessin::Patron& patron : table.patrons) {
    const auto end = result.patrons.begin() + result.nb_patrons;
    const bool known = std::any_of(result.patrons.begin(), end, [&](const Mod_dessin::Patron& other) {
      return platform::equal_ignoring_case(other.Nom, patron.Nom);
    });
    if (!patron.Nom.empty() && !known) result.patrons[result.nb_patrons++] = patron;
  }
  return result;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string file = Input(data, size).text(size);
  platform::ProfileText text;
  text.set("A", "X", file);
  promise(platform::ProfileText::parse(text.bytes()).keys("A").size() == 1);
  const Visit once = visited(file);
  promise(once.kept || all_there(file, once.file));
  const Visit twice = visited(once.file);
  promise(twice.file == once.file && twice.loaded == packed(once.loaded));
  return 0;
}
