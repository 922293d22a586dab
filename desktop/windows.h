// The windows of the program's forms, and what the program asks about windows of others.
#pragma once

#include <QAbstractNativeEventFilter>
#include <memory>
#include <vector>

#include "desktop/form_window.h"

namespace desktop {

class DesktopWindows final : public platform::Windows, private QAbstractNativeEventFilter {
 public:
  DesktopWindows(DesktopEvents& events, const X11& x11);
  ~DesktopWindows() override;

  bool load(platform::Form& form) override;
  void unload(platform::Form& form) override;
  void Show(platform::Form& form) override;
  void Hide(platform::Form& form) override;
  bool on_screen(const platform::Form& form) const override;
  bool SetForegroundWindow(platform::Handle window) override;
  bool AnimateWindow(platform::Handle window, int milliseconds, std::uint32_t flags) override;
  bool SetWindowPos(platform::Handle window, std::int32_t place, int x, int y, int width, int height,
                    std::uint32_t flags) override;
  bool PostMessageA(platform::Handle window, std::uint32_t message, std::int32_t wParam, std::int32_t lParam) override;
  void ReleaseCapture() override;
  platform::Handle WindowFromPoint(platform::Point point) override { return x11_.window_at(point); }
  platform::Handle WindowFromDC(platform::Handle /*context*/) override { return 0; }
  platform::Handle GetParent(platform::Handle window) override { return x11_.parent(window); }
  platform::Point GetCursorPos() override { return x11_.pointer(); }
  int GetWindowPlacement(platform::Handle window) override;
  bool ShowWindow(platform::Handle window, int state) override;
  platform::Screen Screen(const platform::Form& form) override;

  // The window that a dialog belongs to: the active one, else one that is on the screen; null where there is none.
  QWidget* dialog_owner() const;
  // The window of that handle; null where it is none of a form's.
  FormWindow* find(platform::Handle window) const;
  // Chooses the one form whose window the task bar keeps when it is hidden; 0 for none. See FormWindow::keep_reachable.
  void keep_reachable(platform::Handle window);

 private:
  bool nativeEventFilter(const QByteArray& type, void* message, qintptr* result) override;
  FormWindow* find(const platform::Form& form) const;
  void blend(FormWindow& window, int milliseconds, bool in);

  DesktopEvents& events_;
  const X11& x11_;
  const xcb_atom_t report_;
  const xcb_atom_t question_;
  std::vector<std::unique_ptr<FormWindow>> windows_;
};

}  // namespace desktop
