#include "fuzz/witness.h"

#include <algorithm>
#include <initializer_list>
#include <map>
#include <sstream>
#include <string_view>

#include "fuzz/ledger.h"

namespace {

using Bound = std::set<std::string>;

bool any_of(const Bound& actions, std::initializer_list<const char*> candidates) {
  return std::any_of(candidates.begin(), candidates.end(), [&](const char* one) { return actions.contains(one); });
}

// Whether one of the actions asks for that call of the desktop's own commands.
bool asks_for_shell(const Bound& actions, std::string_view call) {
  static const std::map<std::string, std::string, std::less<>> commands = {
      {"shell CascadeWindows", "C:Cascade"},  {"shell TileHorizontally", "C:Horizontal"},
      {"shell TileVertically", "C:Vertical"}, {"shell MinimizeAll", "C:Bureau"},
      {"shell UndoMinimizeALL", "C:Bureau"},  {"shell ShutdownWindows", "C:Fin"},
      {"shell FileRun", "C:Exécuter"}};
  const auto command = commands.find(call);
  return command != commands.end() && actions.contains(command->second);
}

// Whether one of the actions presses that key, a virtual key code.
bool asks_for_key(const Bound& actions, unsigned int key) {
  static const std::map<unsigned int, std::string> commands = {
      {'X', "C:Couper"},  {'A', "C:Tout"},       {'C', "C:Copier"},   {'V', "C:Coller"},
      {0x73, "C:Fermer"}, {0xA6, "C:Précédent"}, {0xA7, "C:Suivant"}, {'L', "C:Session"}};
  switch (key) {
    case 0x11:  // Ctrl
      return any_of(actions, {"C:Couper", "C:Tout", "C:Copier", "C:Coller"});
    case 0x12:  // Alt
      return actions.contains("C:Fermer");
    case 0x5B:  // the left Windows key
      return actions.contains("C:Session");
    default:
      break;
  }
  const auto command = commands.find(key);
  return command != commands.end() && actions.contains(command->second);
}

// The keys of one event, in the order in which they go down and come up.
class Keys {
 public:
  // False for a key that comes up without having been down, or goes down twice.
  bool take(unsigned int key, bool up) {
    if (up) return down_.erase(key) == 1;
    if (down_.empty()) ++chords;
    return down_.insert(key).second;
  }
  bool all_up() const { return down_.empty(); }

  int chords = 0;

 private:
  std::set<unsigned int> down_;
};

}  // namespace

std::string Witness::fault(const Bound& actions) const {
  if (std::string fault = fault_of_files(); !fault.empty()) return fault;
  Keys keys;
  int done = 0;
  for (const std::string& line : desktop_.journal.lines) {
    bool asked = true;
    if (line.starts_with("ShellExecuteA ")) {
      ++done;
      asked = std::any_of(actions.begin(), actions.end(), [&](const std::string& action) {
        return action.starts_with("P:") && line.ends_with(" open [" + action.substr(2) + "] [] [] 1");
      });
    } else if (line.starts_with("SendKeys ")) {
      ++done;
      asked = line.size() >= 11 && actions.contains("T:" + line.substr(10, line.size() - 11));
    } else if (line == "shell object created") {
      ++done;
    } else if (line.starts_with("shell ") && line != "shell object released") {
      asked = asks_for_shell(actions, line);
    } else if (line.starts_with("ShowWindow ")) {
      ++done;
      asked = any_of(actions, {"C:Agrandir", "C:Diminuer"});
    } else if (line.starts_with("SetKeyboardState")) {
      asked = false;  // a way of older systems
    } else if (line.starts_with("keybd_event ")) {
      std::istringstream parts(line.substr(12));
      unsigned int key = 0, scan = 0, flags = 0;
      parts >> std::hex >> key >> scan >> flags;
      asked = asks_for_key(actions, key);
      if (!keys.take(key, (flags & platform::KEYEVENTF_KEYUP) != 0)) return "keys come up as they went down: " + line;
    }
    if (!asked) return "nothing is done that no patron asks for: " + line;
  }
  if (!keys.all_up()) return "keys that went down come up";
  if (done + keys.chords > strokes_) return "a stroke does one thing, and nothing else does any";
  return {};
}

std::string Witness::fault_of_files() const {
  const std::string copy = std::string(profile_name) + ".ancien";
  for (const auto& [name, bytes] : desktop_.files.files) {
    if (name != profile_name && !name.starts_with(copy)) return "no other file is written: " + name;
  }
  return {};
}
