// What the user has a right to find: the patrons as saved, bound and deleted so far. Told of every answer and every
// binding, it looks after each event whether the program and its file still say the same.
#pragma once

#include <cstddef>
#include <map>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

#include "app/programme.h"
#include "simulation/desktop_in_memory.h"

inline constexpr const char* profile_name = "Strokemind.AI";

// A promise that the program has not kept.
class Broken : public std::runtime_error {
  using std::runtime_error::runtime_error;
};

class Ledger {
 public:
  Ledger(simulation::DesktopInMemory& desktop, Programme& programme) : desktop_(desktop), programme_(programme) {}

  // The state at the start is what the user has.
  void open();
  // What the user has just agreed to.
  void may_delete(const std::string& name) { deletable_.insert(name); }
  void may_redraw(const std::string& name) { redrawable_.insert(name); }
  void may_add() { ++addable_; }
  void may_bind(const std::string& name, const std::string& action) {
    bindings_[name].insert(action);
    bound_behind_[name] = desktop_.files.written;
  }
  // A hand has put something else in the place of the file.
  void changed_by_hand(const std::string& bytes);

  // Looks at the program after an event, and at the file where `saved` says that it has been written.
  void check(bool saved);
  // The patrons that a fresh program finds in the file are the user's.
  void check_file() const;

 private:
  using Patrons = std::map<std::string, Mod_dessin::Patron>;
  static void expect(bool kept, const std::string& promise);
  std::map<std::string, std::string> present_actions() const;
  void check_patrons();
  void check_changes(const Mod_dessin::Patron& now, const std::string& action, Mod_dessin::Patron& before);
  void check_rows() const;
  void check_saved() const;

  simulation::DesktopInMemory& desktop_;
  Programme& programme_;
  Patrons patrons_;  // by name; Action as the next save would write it
  std::set<std::string> deletable_, redrawable_;
  std::map<std::string, std::set<std::string>> bindings_;
  std::map<std::string, int> bound_behind_;  // how often the file had been written when a patron was last bound
  int addable_ = 0;
  std::vector<std::string> by_hand_;
};
