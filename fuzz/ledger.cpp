#include "fuzz/ledger.h"

#include <algorithm>
#include <cmath>

#include "platform/text.h"

namespace {

using Mod_dessin::nom_efface;
using Mod_dessin::Patron;

bool live(const Patron& patron) {
  return !patron.Nom.empty() && patron.Nom != nom_efface;
}

// An action as a profile keeps it: one line without NULs and without blanks around it, in the file's own characters.
std::string kept(const std::string& action) {
  std::string line;
  for (std::size_t i = 0; i < action.size(); ++i) {
    const bool end = action[i] == '\r' || action[i] == '\n';
    if (action[i] == '\r' && i + 1 < action.size() && action[i + 1] == '\n') ++i;
    line += end ? "{ENTER}" : std::string(1, action[i] == '\0' ? ' ' : action[i]);
  }
  return platform::from_cp1252(platform::to_cp1252(std::string(platform::trimmed(line))));
}

// The numbers that count are the same, to the seven digits that a profile keeps.
bool same_numbers(const Mod_dessin::Coordinates& a, const Mod_dessin::Coordinates& b, std::int16_t count) {
  constexpr double digit = 1E-6;
  const auto same = [](double x, double y) { return std::abs(x - y) <= digit * std::abs(x); };
  return std::equal(a.values.begin(), a.values.begin() + count, b.values.begin(), same);
}

bool same_points(const Patron& a, const Patron& b) {
  return a.Ind == b.Ind && same_numbers(a.X, b.X, a.Ind) && same_numbers(a.Y, b.Y, a.Ind);
}

}  // namespace

void Ledger::expect(bool kept, const std::string& promise) {
  if (!kept) throw Broken(promise);
}

void Ledger::open() {
  for (const Patron& patron : programme_.table().patrons) {
    if (live(patron)) patrons_[patron.Nom] = patron;
  }
}

void Ledger::changed_by_hand(const std::string& bytes) {
  std::erase(by_hand_, desktop_.files.files[profile_name]);
  by_hand_.push_back(bytes);
  desktop_.files.files[profile_name] = bytes;
}

// The list is newer than the table, as far as its rows name patrons.
std::map<std::string, std::string> Ledger::present_actions() const {
  std::map<std::string, std::string> actions;
  for (const Patron& patron : programme_.table().patrons) {
    if (live(patron)) actions[patron.Nom] = patron.Action;
  }
  platform::ListView& list = programme_.sk().LV;
  for (int row = 1; row <= list.Count(); ++row) {
    const auto found = actions.find(list.row(row).Text);
    if (found != actions.end()) found->second = list.row(row).SubItems(2);
  }
  return actions;
}

void Ledger::check(bool saved) {
  check_patrons();
  if (!desktop_.ended()) check_rows();
  if (saved) check_saved();
  bound_behind_.clear();
}

void Ledger::check_saved() const {
  // A hand may have come behind the save, within the same event.
  const std::string& file = desktop_.files.files.at(profile_name);
  if (std::find(by_hand_.begin(), by_hand_.end(), file) == by_hand_.end()) check_file();
  for (const std::string& bytes : by_hand_) {
    const auto& files = desktop_.files.files;
    expect(std::any_of(files.begin(), files.end(), [&](const auto& entry) { return entry.second == bytes; }),
           "what a hand has written is set aside");
  }
}

void Ledger::check_patrons() {
  const Mod_dessin::Table& table = programme_.table();
  const std::map<std::string, std::string> actions = present_actions();
  std::size_t count = 0;
  for (const Patron& patron : table.patrons) {
    if (!live(patron)) continue;
    ++count;
    const auto [before, fresh] = patrons_.try_emplace(patron.Nom, patron);
    if (fresh) {
      expect(addable_-- > 0, "no patron comes by itself: " + patron.Nom);
      before->second.Action = actions.at(patron.Nom);
    } else {
      check_changes(patron, actions.at(patron.Nom), before->second);
    }
  }
  expect(count == actions.size(), "no two patrons have one name");
  std::erase_if(patrons_, [&](const auto& before) {
    if (actions.contains(before.first)) return false;
    expect(deletable_.contains(before.first), "no patron goes by itself: " + before.first);
    return true;
  });
  expect(count == table.nb_patrons, "the number of patrons is that of the live slots");
  // A program that was ended while it started had no time for it.
  expect(desktop_.ended() || programme_.sk().lblNmodel.Caption.get() == std::to_string(count),
         "the label tells the number of patrons");
  deletable_.clear();
  redrawable_.clear();
  bindings_.clear();
  addable_ = 0;
}

void Ledger::check_changes(const Patron& now, const std::string& action, Patron& before) {
  if (!same_points(now, before)) {
    expect(redrawable_.contains(now.Nom) || deletable_.contains(now.Nom), "no drawing changes by itself: " + now.Nom);
    before = now;
  }
  if (action != before.Action) {
    const auto bound = bindings_.find(now.Nom);
    const bool asked = (bound != bindings_.end() && bound->second.contains(action)) || deletable_.contains(now.Nom);
    expect(asked, "no action changes by itself: " + now.Nom + ": " + before.Action + " -> " + action);
    before.Action = action;
  }
}

// With miniatures there is a row for each patron, in the order of the slots. In the plain views there may be rows of
// deleted slots, but no patron has two.
void Ledger::check_rows() const {
  SK& sk = programme_.sk();
  std::vector<std::string> rows;
  for (int row = 1; row <= sk.LV.Count(); ++row) rows.push_back(sk.LV.row(row).Text);
  std::vector<std::string> names;
  for (const Patron& patron : programme_.table().patrons) {
    if (live(patron)) names.push_back(patron.Nom);
  }
  if (sk.LV.Icons == &sk.ImLst_Vig) {
    expect(rows == names, "the miniatures are the patrons, in order");
    expect(sk.ImLst_Vig.Count() >= sk.LV.Count(), "each row has its miniature");
    return;
  }
  std::set<std::string> seen;
  for (const std::string& row : rows) {
    expect(row == nom_efface || (patrons_.contains(row) && seen.insert(row).second), "a row is a patron: " + row);
  }
}

void Ledger::check_file() const {
  simulation::Journal journal;
  simulation::ProfileFiles files(journal);
  files.files[profile_name] = desktop_.files.files.at(profile_name);
  platform::ProfileService service(files);
  Mod_ini ini(service, profile_name);
  SK sk;
  Mod_dessin::Table table;
  Mod_dessin::Profil(ini, sk, table).charger_patrons();
  expect(table.nb_patrons == patrons_.size(), "the file holds every patron");
  for (const Patron& patron : table.patrons) {
    if (patron.Nom.empty()) continue;
    const auto mine = patrons_.find(patron.Nom);
    expect(mine != patrons_.end(), "the file holds the user's patrons alone: " + patron.Nom);
    expect(same_points(patron, mine->second), "the file holds the drawing: " + patron.Nom);
    // What was bound behind the save, within the same event, the next one takes along.
    const auto behind = bound_behind_.find(patron.Nom);
    if (behind != bound_behind_.end() && behind->second == desktop_.files.written) continue;
    expect(patron.Action == kept(mine->second.Action),
           "the file holds the action: " + patron.Nom + ": " + mine->second.Action + " -> " + patron.Action);
  }
}
