#include "desktop/desktop_shell.h"

#include "desktop/desktop_commands.h"
#include "desktop/shell.h"

namespace desktop {

int DesktopShell::ShellExecuteA(platform::Handle /*owner*/, std::string_view verb, std::string_view file,
                                std::string_view parameters, std::string_view directory, int /*show*/) {
  return shell_open(verb, file, parameters, directory);
}

bool DesktopShell::tray_present() {
  return tray_.present();
}

std::unique_ptr<platform::ShellObject> DesktopShell::create_object() {
  return std::make_unique<DesktopCommands>(arranger_, session_);
}

bool DesktopShell::Shell_NotifyIconA(std::uint32_t message, const platform::NOTIFYICONDATA& record) {
  return tray_.notify(message, record);
}

}  // namespace desktop
