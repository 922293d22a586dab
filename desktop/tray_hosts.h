// The trays of a desktop. A panel takes icons in one of two ways: it draws them from what the program publishes on the
// session bus (a notifier host), or it embeds their windows (an embedder). Either may come and go at any time.
#pragma once

#include <QAbstractNativeEventFilter>
#include <QObject>
#include <QTimer>
#include <functional>

#include "desktop/x11.h"

namespace desktop {

class TrayHosts final : public QObject, private QAbstractNativeEventFilter {
 public:
  // `changed` is called when a tray has come or gone, from within the reading of events. Asks the session bus and waits
  // for the answer, half a second at most.
  TrayHosts(const X11& x11, std::function<void()> changed);
  ~TrayHosts() override;

  bool notifier_host() const { return notifier_host_; }
  bool embedder() const { return x11_.embeds_icons(); }

 private:
  bool nativeEventFilter(const QByteArray& type, void* message, qintptr* result) override;
  void ask_notifier(bool wait);
  void learn(bool notifier_host);

  const X11& x11_;
  const std::function<void()> changed_;
  QTimer doubt_;  // fires when something has been said about notifier hosts
  std::uint8_t embedder_event_ = 0;
  bool notifier_host_ = false;
};

}  // namespace desktop
