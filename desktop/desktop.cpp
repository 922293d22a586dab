#include "desktop/desktop.h"

#include <xcb/xcb.h>

#include <QApplication>
#include <array>
#include <climits>
#include <cstdlib>
#include <iostream>
#include <string>
#include <string_view>

#include <unistd.h>

#include "desktop/accessible.h"
#include "desktop/clock.h"
#include "desktop/desktop_shell.h"
#include "desktop/dialogs.h"
#include "desktop/events.h"
#include "desktop/fonts.h"
#include "desktop/french.h"
#include "desktop/hook_loader.h"
#include "desktop/icons.h"
#include "desktop/input.h"
#include "desktop/profile.h"
#include "desktop/session_bus.h"
#include "desktop/signals.h"
#include "desktop/tray.h"
#include "desktop/windows.h"
#include "desktop/x11.h"

namespace desktop {

namespace {

platform::Program running_program() {
  std::array<char, PATH_MAX> buffer{};
  const ssize_t length = readlink("/proc/self/exe", buffer.data(), buffer.size());
  const std::string path(buffer.data(), length > 0 ? static_cast<std::size_t>(length) : 0);
  const std::size_t separator = path.rfind('/');
  if (separator == std::string::npos) return {".", path};
  return {path.substr(0, separator), path.substr(separator + 1)};
}

// The toolkit's own arguments: the program's name, and the one display system that the program can work with.
class Arguments {
 public:
  explicit Arguments(char* name) : values_{name, platform_.data(), xcb_.data(), nullptr} {}
  int& count() { return count_; }
  char** values() { return values_.data(); }

 private:
  std::string platform_ = "-platform";
  std::string xcb_ = "xcb";
  std::array<char*, 4> values_;
  int count_ = 3;
};

}  // namespace

struct Desktop::Parts {
  explicit Parts(char* name, std::function<void()> asked_to_go)
      : arguments(name),
        application(arguments.count(), arguments.values()),
        windows(events, x11),
        tray(events, windows, x11),
        shell(x11, tray),
        dialogs(events, windows),
        hooks(program.Path),
        termination(std::move(asked_to_go)) {
    // Hiding the last window leaves the program in the tray.
    QApplication::setQuitOnLastWindowClosed(false);
    QApplication::setApplicationName(QStringLiteral("Strokemind"));
    QApplication::setWindowIcon(icon_of({1, "on"}));  // of boxes that belong to no window
    QGuiApplication::setDesktopFileName(QStringLiteral("org.strokemind.strokemind"));
    QCoreApplication::installTranslator(&french);
    install_accessibility();
  }

  Arguments arguments;
  FrenchTexts french;
  QApplication application;
  const platform::Program program = running_program();
  X11 x11;
  DesktopClock clock;
  DesktopEvents events;
  DesktopWindows windows;
  Tray tray;
  DesktopInput input;
  DesktopShell shell;
  DesktopProfile profile;
  DesktopDialogs dialogs;
  DesktopFonts fonts;
  DesktopHookLoader hooks;
  TerminationSignals termination;
  platform::Services services{clock, events, windows, input, shell, profile, dialogs, fonts, hooks, program};
};

bool Desktop::available() {
  const auto variable = [](const char* name) {
    const char* value = std::getenv(name);
    return std::string_view(value != nullptr ? value : "");
  };
  xcb_connection_t* connection = xcb_connect(nullptr, nullptr);
  const bool connected = xcb_connection_has_error(connection) == 0;
  xcb_disconnect(connection);
  if (!connected) {
    std::cerr << "Strokemind: no X display can be reached (DISPLAY is \"" << variable("DISPLAY") << "\").\n";
    return false;
  }
  if (!variable("WAYLAND_DISPLAY").empty() || variable("XDG_SESSION_TYPE") == "wayland") {
    std::cerr << "Strokemind: in a Wayland session strokes are seen only over windows of X11 programs.\n";
  }
  return true;
}

Desktop::Desktop(int /*argc*/, char** argv) {
  const NoBusStarted guard;
  parts_ = std::make_unique<Parts>(argv[0], [this] {
    // Not inside a service that the program believes to be one call.
    parts_->events.post([this] {
      if (on_terminate) {
        on_terminate();
      } else {
        parts_->events.End(0);
      }
    });
  });
}

Desktop::~Desktop() = default;

platform::Services& Desktop::services() {
  return parts_->services;
}

int Desktop::run() {
  if (!parts_->events.ended()) QApplication::exec();
  return parts_->events.status();
}

}  // namespace desktop
