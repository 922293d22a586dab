#include <gtest/gtest.h>

#include "desktop/session_choice.h"

namespace {

using desktop::Opening;

TEST(SessionChoice, EveryDesktopIsAskedInItsOwnWay) {
  const std::string gnome = "org.gnome.SessionManager", kde = "org.kde.LogoutPrompt", old_kde = "org.kde.ksmserver";
  const std::string xfce = "org.xfce.SessionManager", krunner = "org.kde.krunner";
  // Names that are owned on the bus, names that can be activated, and commands; empty is a box of our own.
  const struct {
    std::string desktops, owned, startable, commands, end, launcher;
  } cases[] = {
      {"ubuntu:GNOME", gnome, krunner, "xfce4-appfinder", gnome + "Shutdown", ""},
      {"KDE", old_kde, kde + krunner, "", kde + "promptAll", krunner + "display"},
      {"KDE", old_kde, "", "", old_kde + "logout", ""},
      {"XFCE", xfce, "", "xfce4-appfinder xfce4-session-logout", xfce + "Logout", "xfce4-appfinder --collapsed"},
      {"XFCE", "", "", "xfce4-session-logout", "xfce4-session-logout", ""},
      {"LXQt", "", kde, "lxqt-leave lxqt-runner", "lxqt-leave", "lxqt-runner"},
      {"MATE", gnome, "", "mate-panel mate-session-save", gnome + "Shutdown", "mate-panel --run-dialog"},
      {"X-Cinnamon", "", "", "cinnamon-session-quit", "cinnamon-session-quit --power-off", ""},
      {"i3", gnome, kde + krunner, "lxqt-leave mate-panel", "", ""},
      {"", xfce, kde + krunner, "lxqt-runner", xfce + "Logout", ""},
  };
  for (const auto& one : cases) {
    const auto in = [](const std::string& names) {
      return [&names](const std::string& name) { return names.find(name) != std::string::npos; };
    };
    const desktop::SessionView session{one.desktops, in(one.owned), in(one.startable), in(one.commands)};
    const Opening end = choose_session_end(session), launcher = choose_launcher(session);
    EXPECT_EQ(end.target + end.method, one.end) << one.desktops;
    EXPECT_EQ(launcher.target + launcher.method, one.launcher) << one.desktops;
  }
}

}  // namespace
