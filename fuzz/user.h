// A user who does anything that a user can do, by chance: strokes, keys, clicks and drags on all that is shown, the
// tray icon, the answers to every box, and meanwhile the clock, a disk that refuses, services that fail, another
// program that writes the file or takes it away. What cannot be had may be missing from the start, and the file may be
// spoilt.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "app/programme.h"
#include "fuzz/chances.h"
#include "fuzz/ledger.h"
#include "fuzz/some_profile.h"
#include "fuzz/witness.h"
#include "simulation/desktop_in_memory.h"

class User : private platform::Dialogs {
 public:
  // The user's whole session comes from `seed`.
  explicit User(std::uint64_t seed);
  // The program starts on the files that an earlier life has left.
  using Files = decltype(simulation::ProfileFiles::files);
  User(std::uint64_t seed, Files files);

  // Starts the program; gives how many events came to pass, at most `most`, before it ended or was ended. Throws
  // Broken.
  long live(long most);
  const Files& files() const { return desktop_.files.files; }
  // What was done, for a replay.
  bool trace = false;

 private:
  void event();
  // What goes on while a modal box waits.
  void event_behind_box();
  void end();

  void stroke();
  void key();
  void wait();
  void icon();
  void list();
  void mouse_on(platform::Form& form);
  void on_control(platform::Control& control);
  void on_editor();
  void type_into(platform::TextBox& box, const std::string& prefix);
  void world();
  void hand();
  void close_help();
  void yielded();
  bool help_rolls() const;
  bool on_screen(const platform::Control& control) const;

  platform::MouseEvent anywhere(const platform::Control& control);
  std::string some_name();
  std::string some_action();
  std::string chosen() const;
  void binds(const std::string& action) { ledger_.binds(chosen(), action); }
  void begin();
  void check();
  void note(const std::string& what) const;

  // Runs a copy of a handler, which may take away the form that holds it.
  template <class Handler, class... Arguments>
  void fire(const Handler& handler, Arguments&&... arguments) {
    if (!handler || desktop_.ended()) return;
    const Handler copy = handler;
    copy(std::forward<Arguments>(arguments)...);
  }

  int MsgBox(std::string_view text, int style, std::string_view title) override;
  std::string InputBox(std::string_view prompt, std::string_view title, std::string_view fallback) override;
  void ShowColor(platform::ColourDialog& dialog) override;
  void PopupMenu(const std::vector<platform::MenuItem*>& entries) override;

  Chances chances_;
  simulation::DesktopInMemory desktop_;
  platform::Services services_;
  Programme programme_;
  Ledger ledger_;
  Witness witness_;
  std::vector<std::vector<point_hook>> drawn_;
  bool started_ = false;
  int depth_ = 0;   // of events within events
  int boxes_ = 0;   // that wait for an answer
  int yields_ = 0;  // since the last event of the user's own
};
