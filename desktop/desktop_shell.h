// What the program asks of the desktop's shell.
#pragma once

#include "desktop/session_dialogs.h"
#include "desktop/tray.h"
#include "desktop/window_arranger.h"

namespace desktop {

class DesktopShell final : public platform::Shell {
 public:
  DesktopShell(const X11& x11, Tray& tray) : arranger_(x11), session_(x11), tray_(tray) {}

  int ShellExecuteA(platform::Handle owner, std::string_view verb, std::string_view file, std::string_view parameters,
                    std::string_view directory, int show) override;
  bool tray_present() override;
  // The object must not outlive this one.
  std::unique_ptr<platform::ShellObject> create_object() override;
  bool Shell_NotifyIconA(std::uint32_t message, const platform::NOTIFYICONDATA& record) override;

 private:
  WindowArranger arranger_;
  SessionDialogs session_;
  Tray& tray_;
};

}  // namespace desktop
