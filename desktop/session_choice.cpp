#include "desktop/session_choice.h"

#include <algorithm>
#include <span>

namespace desktop {

namespace {

struct Row {
  std::vector<std::string_view> desktops;
  Opening opening;
};

Opening bus(const char* name, const char* path, const char* interface, const char* method,
            std::vector<std::variant<bool, int>> arguments = {}) {
  return {Opening::Kind::bus, name, path, interface, method, std::move(arguments)};
}

Opening command(const char* line) {
  return {Opening::Kind::command, line, {}, {}, {}, {}};
}

bool names(std::string_view desktops, const std::vector<std::string_view>& wanted) {
  while (!desktops.empty()) {
    const std::size_t end = std::min(desktops.find(':'), desktops.size());
    if (std::find(wanted.begin(), wanted.end(), desktops.substr(0, end)) != wanted.end()) return true;
    desktops.remove_prefix(std::min(end + 1, desktops.size()));
  }
  return false;
}

bool answers(const Row& row, const SessionView& session) {
  const Opening& opening = row.opening;
  if (opening.kind == Opening::Kind::command) {
    return names(session.desktops, row.desktops) &&
           session.has_command(opening.target.substr(0, opening.target.find(' ')));
  }
  if (session.desktops.empty()) return session.has_owner(opening.target);
  return names(session.desktops, row.desktops) &&
         (session.has_owner(opening.target) || session.can_be_activated(opening.target));
}

Opening first_that_answers(const std::vector<Row>& rows, const SessionView& session) {
  const auto found = std::find_if(rows.begin(), rows.end(), [&](const Row& row) { return answers(row, session); });
  return found == rows.end() ? Opening() : found->opening;
}

}  // namespace

Opening choose_session_end(const SessionView& session) {
  // Of several rows of a desktop the first: older releases have only the later ones.
  static const std::vector<Row> rows{
      {{"KDE"}, bus("org.kde.LogoutPrompt", "/LogoutPrompt", "org.kde.LogoutPrompt", "promptAll")},
      // To be confirmed; what is to be done, and how, as the user has set it up.
      {{"KDE"}, bus("org.kde.ksmserver", "/KSMServer", "org.kde.KSMServerInterface", "logout", {1, -1, -1})},
      // To be asked; what is open may be saved.
      {{"XFCE"},
       bus("org.xfce.SessionManager", "/org/xfce/SessionManager", "org.xfce.Session.Manager", "Logout", {true, true})},
      {{"XFCE"}, command("xfce4-session-logout")},
      {{"LXQt"}, command("lxqt-leave")},
      {{"GNOME", "GNOME-Classic", "GNOME-Flashback", "Unity", "Budgie", "MATE", "X-Cinnamon", "Cinnamon"},
       bus("org.gnome.SessionManager", "/org/gnome/SessionManager", "org.gnome.SessionManager", "Shutdown")},
      {{"MATE"}, command("mate-session-save --shutdown-dialog")},
      {{"X-Cinnamon", "Cinnamon"}, command("cinnamon-session-quit --power-off")},
  };
  return first_that_answers(rows, session);
}

Opening choose_launcher(const SessionView& session) {
  static const std::vector<Row> rows{
      {{"KDE"}, bus("org.kde.krunner", "/App", "org.kde.krunner.App", "display")},
      {{"XFCE"}, command("xfce4-appfinder --collapsed")},
      {{"MATE"}, command("mate-panel --run-dialog")},
      {{"LXQt"}, command("lxqt-runner")},
  };
  return first_that_answers(rows, session);
}

}  // namespace desktop
