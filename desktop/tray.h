// The program's icon in the tray.
#pragma once

#include <QPoint>
#include <QSystemTrayIcon>
#include <memory>
#include <optional>

#include "desktop/tray_hosts.h"
#include "desktop/windows.h"

namespace desktop {

// Shows the icon for as long as the program wants it, whenever there is a tray, and sees to it that the window of the
// form to which it belongs can be reached while there is none.
class Tray final : public QObject {
 public:
  Tray(DesktopEvents& events, DesktopWindows& windows, const X11& x11);

  // As Shell::Shell_NotifyIconA. False for a record that names no form, and for a message that does not fit what is
  // shown: an icon is added once, and changed or removed only while there is one.
  bool notify(std::uint32_t message, const platform::NOTIFYICONDATA& record);
  // Whether there is a tray now that the icon is shown in, or would be.
  bool present() const;

 protected:
  // Movements and releases of the mouse over an icon that is a window of ours.
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void update();
  void make_icon();
  void take(const platform::NOTIFYICONDATA& record, const platform::Form& form);
  void report(int message);

  DesktopEvents& events_;
  DesktopWindows& windows_;
  std::optional<platform::NOTIFYICONDATA> record_;  // while the program wants an icon
  QIcon picture_;
  QString tip_;
  std::unique_ptr<QSystemTrayIcon> icon_;  // once there has been a tray
  QPoint last_;                            // where the pointer was last seen by the icon
  bool published_ = false;                 // the icon is for notifier hosts, not for embedders
  TrayHosts hosts_;
};

}  // namespace desktop
