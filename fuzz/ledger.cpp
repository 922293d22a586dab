#include "fuzz/ledger.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <optional>

#include "capture/miniature.h"
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

// The name that an answer stands for; none where the file cannot hold it.
std::optional<std::string> name_of(const std::string& answer) {
  std::string name = platform::upper_case(answer);
  const auto control = [](char c) { return (c >= 0 && c < ' ') || c == '\x7F'; };
  const bool nothing = name.find_first_not_of(' ') == std::string::npos;
  const bool reserved = name == nom_efface || name == "POS" || name.find_first_of("[]=;") != std::string::npos;
  const bool lost = !platform::fits_cp1252(name) || platform::from_cp1252(platform::to_cp1252(name)) != name;
  if (nothing || reserved || lost || std::any_of(name.begin(), name.end(), control)) return std::nullopt;
  std::replace(name.begin(), name.end(), ' ', '_');
  return name;
}

// The stroke in the units of the miniature's box.
Mod_dessin::Dessin normalised(const std::vector<point_hook>& stroke) {
  static SK boxes;
  Mod_dessin::Dessin drawing;
  for (std::size_t n = 0; n < stroke.size(); ++n) {
    drawing.dessin_x[n] = static_cast<float>(stroke[n].x);
    drawing.dessin_y[n] = static_cast<float>(stroke[n].y);
  }
  drawing.dessin_nb = static_cast<std::int16_t>(stroke.size());
  Mod_dessin::dessiner_miniature(drawing, boxes.PicIco, boxes.PicRef);
  return drawing;
}

bool holds(const Patron& patron, const Mod_dessin::Dessin& drawing) {
  const auto same = [&](const auto& values, const auto& drawn) {
    return std::equal(drawn.begin(), drawn.begin() + drawing.dessin_nb, values.begin(),
                      [](float a, double b) { return static_cast<double>(a) == b; });
  };
  return patron.Ind == drawing.dessin_nb && same(patron.X.values, drawing.dessin_x) &&
         same(patron.Y.values, drawing.dessin_y);
}

bool same_points(const Patron& a, const Patron& b) {
  return a.Ind == b.Ind && same_numbers(a.X, b.X, a.Ind) && same_numbers(a.Y, b.Y, a.Ind);
}

}  // namespace

void Ledger::expect(bool kept, const std::string& promise) {
  if (!kept) throw Broken(promise);
}

void Ledger::open() {
  if (desktop_.ended()) return;  // in the middle of its start
  for (const Patron& patron : programme_.table().patrons) {
    if (live(patron)) patrons_[patron.Nom] = patron;
  }
  rows_.miniatures();
  const bool readable = desktop_.files.files.contains(profile_name) && !desktop_.files.unreadable;
  if (readable) check_file();
}

void Ledger::begin() {
  written_before_ = desktop_.files.written;
  saves_before_ = saves_tried();
  saves_due_ = 0;
  named_.clear();
  addable_.clear();
  deleted_.clear();
  strokes_.clear();
  bindings_.clear();
  bound_behind_.clear();
  actions_.clear();
  for (const auto& [name, patron] : patrons_) actions_.insert(patron.Action);
}

void Ledger::names(const std::string& answer) {
  const std::optional<std::string> name = name_of(answer);
  if (!name) return;
  std::size_t length = name->size();
  for (const Patron& patron : programme_.table().patrons) {
    length += patron.Nom.size();
    if (!live(patron) || !platform::equal_ignoring_case(patron.Nom, *name)) continue;
    named_.insert(patron.Nom);  // asks whether to replace it
    return;
  }
  addable_.insert(*name);
  rows_.saves(*name);
  strokes_[*name] = desktop_.hook.state.stroke;
  // All names together must go through one buffer. Where they nearly fill it, either may happen.
  if (length > Mod_ini::tampon - 1000) return;
  named_.insert(*name);
  saves();
}

void Ledger::deletes(const std::string& name) {
  rows_.miniatures(name);
  deleted_.insert(name);
  addable_.erase(name);
  named_.erase(name);
  strokes_.erase(name);
  bindings_.erase(name);
  saves();
}

void Ledger::redraws(const std::string& name) {
  strokes_[name] = desktop_.hook.state.stroke;
  saves();
}

void Ledger::binds(const std::string& name, const std::string& action) {
  bindings_[name] = action;
  actions_.insert(action);
  bound_behind_[name] = desktop_.files.written;
}

void Ledger::changed_by_hand(const std::string& bytes) {
  removed_by_hand();
  keeps(bytes);
  desktop_.files.files[profile_name] = bytes;
}

void Ledger::removed_by_hand() {
  const auto file = desktop_.files.files.find(profile_name);
  if (file == desktop_.files.files.end()) return;
  std::erase(by_hand_, file->second);
  desktop_.files.files.erase(file);
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

void Ledger::check() {
  const bool changed = check_patrons();
  if (!desktop_.ended()) {
    const std::string fault = rows_.fault();
    expect(fault.empty(), fault);
  }
  const int tried = saves_tried();
  expect(!changed || tried > saves_before_, "a change goes to the file at once");
  expect(tried >= saves_due_, "what was asked for goes to the file");
  check_hands();
  if (desktop_.files.written > written_before_ && !desktop_.files.stale) check_saved();
}

void Ledger::check_hands() const {
  const auto& files = desktop_.files.files;
  for (const std::string& bytes : by_hand_) {
    expect(std::any_of(files.begin(), files.end(), [&](const auto& entry) { return entry.second == bytes; }),
           "what a hand has written is set aside");
  }
}

void Ledger::check_saved() const {
  // A hand may have come behind the save, within the same event.
  const auto file = desktop_.files.files.find(profile_name);
  if (file == desktop_.files.files.end()) return;
  if (std::find(by_hand_.begin(), by_hand_.end(), file->second) == by_hand_.end()) check_file();
}

// Gives whether there are other patrons or other drawings than before the event.
bool Ledger::check_patrons() {
  const Mod_dessin::Table& table = programme_.table();
  const std::map<std::string, std::string> actions = present_actions();
  bool changed = false;
  std::size_t count = 0;
  for (const Patron& patron : table.patrons) {
    if (!live(patron)) continue;
    ++count;
    const auto [before, fresh] = patrons_.try_emplace(patron.Nom, patron);
    if (fresh) {
      expect(addable_.contains(patron.Nom), "no patron comes by itself: " + patron.Nom);
      before->second.Action.clear();
    }
    changed = check_changes(patron, actions.at(patron.Nom), before->second) || fresh || changed;
    const auto stroke = strokes_.find(patron.Nom);
    expect(stroke == strokes_.end() || holds(patron, normalised(stroke->second)),
           "a patron is the stroke that it was saved from: " + patron.Nom);
  }
  expect(count == actions.size(), "no two patrons have one name");
  changed = std::erase_if(patrons_,
                          [&](const auto& before) {
                            if (actions.contains(before.first)) return false;
                            expect(deleted_.contains(before.first), "no patron goes by itself: " + before.first);
                            return true;
                          }) != 0 ||
            changed;
  check_agreed(actions);
  expect(count == table.nb_patrons, "the number of patrons is that of the live slots");
  // A program that was ended while it started had no time for it.
  expect(desktop_.ended() || programme_.sk().lblNmodel.Caption.get() == std::to_string(count),
         "the label tells the number of patrons");
  return changed;
}

// Gives whether the drawing is another one.
bool Ledger::check_changes(const Patron& now, const std::string& action, Patron& before) {
  const bool redrawn = !same_points(now, before);
  const bool replaced = deleted_.contains(now.Nom) && addable_.contains(now.Nom);
  if (redrawn) expect(strokes_.contains(now.Nom), "no drawing changes by itself: " + now.Nom);
  if (replaced) before.Action.clear();
  const auto bound = bindings_.find(now.Nom);
  const std::string& due = bound != bindings_.end() ? bound->second : before.Action;
  expect(action == due, "the action is what was bound last: " + now.Nom + ": " + due + " -> " + action);
  before = now;
  before.Action = action;
  return redrawn;
}

void Ledger::check_agreed(const std::map<std::string, std::string>& actions) const {
  for (const std::string& name : named_) expect(actions.contains(name), "what was saved is there: " + name);
  for (const std::string& name : deleted_) {
    expect(!actions.contains(name) || addable_.contains(name), "what was deleted is gone: " + name);
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
