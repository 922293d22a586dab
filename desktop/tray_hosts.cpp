#include "desktop/tray_hosts.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusServiceWatcher>
#include <QDBusVariant>

namespace desktop {

// Service and interface have one name.
static constexpr QLatin1String watcher("org.kde.StatusNotifierWatcher");
static constexpr QLatin1String watcher_path("/StatusNotifierWatcher");

TrayHosts::TrayHosts(const X11& x11, std::function<void()> changed) : x11_(x11), changed_(std::move(changed)) {
  embedder_event_ = x11.watch_embedding();
  qApp->installNativeEventFilter(this);

  QDBusConnection bus = QDBusConnection::sessionBus();
  if (!bus.isConnected()) return;
  doubt_.setSingleShot(true);
  doubt_.setInterval(0);
  connect(&doubt_, &QTimer::timeout, this, [this] { ask_notifier(false); });
  auto* services = new QDBusServiceWatcher(watcher, bus, QDBusServiceWatcher::WatchForOwnerChange, this);
  connect(services, &QDBusServiceWatcher::serviceOwnerChanged, this, [this] { doubt_.start(); });
  for (const char* news : {"StatusNotifierHostRegistered", "StatusNotifierHostUnregistered"}) {
    bus.connect(watcher, watcher_path, watcher, QLatin1String(news), &doubt_, SLOT(start()));
  }
  ask_notifier(true);
}

TrayHosts::~TrayHosts() {
  qApp->removeNativeEventFilter(this);
}

void TrayHosts::ask_notifier(bool wait) {
  constexpr int longest_wait = 500;  // milliseconds
  QDBusMessage question = QDBusMessage::createMethodCall(
      watcher, watcher_path, QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"));
  question << QString(watcher) << QStringLiteral("IsStatusNotifierHostRegistered");
  question.setAutoStartService(false);
  const QDBusPendingCall call = QDBusConnection::sessionBus().asyncCall(question, longest_wait);
  // An error is an answer: there is nobody to ask.
  const auto verdict = [](const QDBusPendingReply<QDBusVariant>& reply) {
    return !reply.isError() && reply.value().variant().toBool();
  };
  if (wait) {
    QDBusPendingReply<QDBusVariant> reply = call;
    reply.waitForFinished();
    notifier_host_ = verdict(reply);
    return;
  }
  auto* pending = new QDBusPendingCallWatcher(call, this);
  connect(pending, &QDBusPendingCallWatcher::finished, this, [this, verdict](QDBusPendingCallWatcher* answered) {
    learn(verdict(*answered));
    answered->deleteLater();
  });
}

void TrayHosts::learn(bool notifier_host) {
  if (notifier_host_ == notifier_host) return;
  notifier_host_ = notifier_host;
  changed_();
}

bool TrayHosts::nativeEventFilter(const QByteArray& type, void* message, qintptr* /*result*/) {
  constexpr int event_mask = 0x7F;  // the top bit says that it was sent by a program
  // Of other selections the toolkit hears too: one question too many does no harm.
  if (type == "xcb_generic_event_t" &&
      (static_cast<const xcb_generic_event_t*>(message)->response_type & event_mask) == embedder_event_) {
    changed_();
  }
  return false;
}

}  // namespace desktop
