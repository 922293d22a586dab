// What a save has written, the next load takes in as it is: the save after that writes the same bytes. What the first
// load could not take in is set aside. No value, whatever is in it, breaks out of its line.
#include <algorithm>
#include <vector>

#include "forms/sk.h"
#include "fuzz/input.h"
#include "platform/profile_text.h"
#include "simulation/profile_files.h"
#include "store/profil.h"

namespace {

constexpr const char* name = "Strokemind.AI";

// One run of the program over a file; gives what lies there afterwards.
std::string visited(const std::string& file, bool& kept) {
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
  promise(profil.ecrire_patrons());
  const auto copy = files.files.find("Strokemind.AI.ancien");
  kept = copy != files.files.end();
  promise(!kept || copy->second == file);
  return files.files[name];
}

// Whether every value of a file that holds something stands in another one, under the same key of any section: the
// position may have come under a name of its own.
bool all_there(const std::string& file, const std::string& other) {
  const auto before = platform::ProfileText::parse(file);
  const auto after = platform::ProfileText::parse(other);
  const std::vector<std::string> sections = after.sections();
  for (const std::string& section : before.sections()) {
    for (const std::string& key : before.keys(section)) {
      const std::string& value = *before.value(section, key);
      if (value.empty()) continue;  // holds nothing that could be lost
      const bool found = std::any_of(sections.begin(), sections.end(), [&](const std::string& name) {
        const std::string* const now = after.value(name, key);
        return now != nullptr && *now == value;
      });
      if (!found) return false;
    }
  }
  return true;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string file = Input(data, size).text(size);
  platform::ProfileText text;
  text.set("A", "X", file);
  promise(platform::ProfileText::parse(text.bytes()).keys("A").size() == 1);
  bool kept = false;
  const std::string once = visited(file, kept);
  promise(kept || all_there(file, once));
  const std::string twice = visited(once, kept);
  promise(twice == once);
  return 0;
}
