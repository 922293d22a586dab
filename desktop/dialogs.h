// Boxes that ask the user something.
#pragma once

#include "desktop/windows.h"

namespace desktop {

class DesktopDialogs final : public platform::Dialogs {
 public:
  DesktopDialogs(const DesktopEvents& events, const DesktopWindows& windows) : events_(events), windows_(windows) {}
  int MsgBox(std::string_view text, int style, std::string_view title) override;
  std::string InputBox(std::string_view prompt, std::string_view title, std::string_view fallback) override;
  void ShowColor(platform::ColourDialog& dialog) override;
  void PopupMenu(const std::vector<platform::MenuItem*>& entries) override;

 private:
  const DesktopEvents& events_;
  const DesktopWindows& windows_;
};

}  // namespace desktop
