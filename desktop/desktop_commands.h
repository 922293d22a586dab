// The desktop's own commands, as the program asks for them.
#pragma once

#include "desktop/session_dialogs.h"
#include "desktop/window_arranger.h"

namespace desktop {

// What lasts from one command to the next is with those that are given here.
class DesktopCommands final : public platform::ShellObject {
 public:
  DesktopCommands(WindowArranger& arranger, SessionDialogs& dialogs) : arranger_(arranger), dialogs_(dialogs) {}

  void CascadeWindows() override { arranger_.cascade(); }
  void TileHorizontally() override { arranger_.tile_horizontally(); }
  void TileVertically() override { arranger_.tile_vertically(); }
  void MinimizeAll() override { arranger_.minimise_all(); }
  void UndoMinimizeALL() override { arranger_.bring_back(); }
  void ShutdownWindows() override { dialogs_.end_session(); }
  void FileRun() override { dialogs_.run_command(); }

 private:
  WindowArranger& arranger_;
  SessionDialogs& dialogs_;
};

}  // namespace desktop
