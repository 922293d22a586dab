#include "actions/mod_shell.h"

namespace Mod_Shell {

namespace {

void call(platform::Shell& shell, void (platform::ShellObject::*member)()) {
  if (const auto object = shell.create_object()) (object.get()->*member)();
}

}  // namespace

void fenetres_cascade(platform::Shell& shell) {
  call(shell, &platform::ShellObject::CascadeWindows);
}

void fenetres_mosaique(platform::Shell& shell, std::string_view sens) {
  const bool rows = sens.empty() || sens == "H" || sens == "h";
  call(shell, rows ? &platform::ShellObject::TileHorizontally : &platform::ShellObject::TileVertically);
}

void bureau_basculer(platform::Shell& shell, bool reduit) {
  call(shell, reduit ? &platform::ShellObject::UndoMinimizeALL : &platform::ShellObject::MinimizeAll);
}

void boite_arret(platform::Shell& shell) {
  call(shell, &platform::ShellObject::ShutdownWindows);
}

void boite_executer(platform::Shell& shell) {
  call(shell, &platform::ShellObject::FileRun);
}

}  // namespace Mod_Shell
