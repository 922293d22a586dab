#include "desktop/session_bus.h"

#include <QDBusConnection>
#include <QFile>

namespace desktop {

static constexpr const char* address = "DBUS_SESSION_BUS_ADDRESS";

bool has_session_bus() {
  if (!qEnvironmentVariableIsEmpty(address)) return true;
  const QString folder = qEnvironmentVariable("XDG_RUNTIME_DIR");
  return !folder.isEmpty() && QFile::exists(folder + QStringLiteral("/bus"));
}

NoBusStarted::NoBusStarted() : disabled_(!has_session_bus()) {
  if (disabled_) qputenv(address, "disabled:");
}

NoBusStarted::~NoBusStarted() {
  if (!disabled_) return;
  QDBusConnection::sessionBus();  // by now at the latest
  qunsetenv(address);
}

}  // namespace desktop
