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
#include "fuzz/shown_rows.h"
#include "simulation/desktop_in_memory.h"

inline constexpr const char* profile_name = "Strokemind.AI";

// A promise that the program has not kept.
class Broken : public std::runtime_error {
  using std::runtime_error::runtime_error;
};

class Ledger {
 public:
  Ledger(simulation::DesktopInMemory& desktop, Programme& programme)
      : desktop_(desktop), programme_(programme), rows_(programme) {}

  static void expect(bool kept, const std::string& promise);

  // The state at the start is what the user has.
  void open();
  // An event begins.
  void begin();
  // What the user has just agreed to comes to pass. An answer to the question for a name takes the last stroke under
  // that name, unless the file cannot hold it or the name is in use.
  void names(const std::string& answer);
  void deletes(const std::string& name);
  void redraws(const std::string& name);
  void binds(const std::string& name, const std::string& action);
  // One of the buttons 0 to 3 has been pressed; the list goes back to miniatures.
  void views(int button) { rows_.view(button); }
  void miniatures() { rows_.miniatures(); }
  // Something has been asked for that ends with a save.
  void saves() { saves_due_ = saves_tried() + 1; }
  void saves_since_the_event_began() { saves_due_ = saves_before_ + 1; }
  // A hand has put something else in the place of the file, or taken the file away.
  void changed_by_hand(const std::string& bytes);
  void removed_by_hand();
  // These bytes, which stand in the file, are not what the program would write: they must not get lost.
  void keeps(const std::string& bytes) { by_hand_.push_back(bytes); }

  // What was bound to any patron since the event began.
  const std::set<std::string>& actions() const { return actions_; }

  // Looks at the program and its file after an event.
  void check();
  // The patrons that a fresh program finds in the file are the user's.
  void check_file() const;

 private:
  using Patrons = std::map<std::string, Mod_dessin::Patron>;
  int saves_tried() const { return desktop_.files.written + desktop_.files.refused; }
  std::map<std::string, std::string> present_actions() const;
  bool check_patrons();
  bool check_changes(const Mod_dessin::Patron& now, const std::string& action, Mod_dessin::Patron& before);
  void check_agreed(const std::map<std::string, std::string>& actions) const;
  void check_saved() const;
  void check_hands() const;

  simulation::DesktopInMemory& desktop_;
  Programme& programme_;
  ShownRows rows_;
  Patrons patrons_;  // by name; Action as the next save would write it
  // Of this event.
  std::set<std::string> named_;    // must be there
  std::set<std::string> addable_;  // may be new
  std::set<std::string> deleted_;
  std::map<std::string, std::vector<point_hook>> strokes_;  // what was taken under a name
  std::map<std::string, std::string> bindings_;
  std::set<std::string> actions_;
  std::map<std::string, int> bound_behind_;  // how often the file had been written when a patron was last bound
  int written_before_ = 0;
  int saves_before_ = 0;
  int saves_due_ = 0;

  std::vector<std::string> by_hand_;
};
