#include "actions/dispatch.h"

#include "actions/mod_fsk.h"
#include "platform/number.h"

namespace {

constexpr int normal_window = 1;

// Whole numbers of the patron's first point, (0, 0) for a patron without points.
platform::Point first_point(const Mod_dessin::Patron& patron) {
  if (patron.X.values.empty()) return {0, 0};
  return {platform::round_half_even(patron.X.values.front()), platform::round_half_even(patron.Y.values.front())};
}

}  // namespace

void Dispatch::executer_action(const std::string& action, std::int16_t index) {
  platform::Windows& windows = services_.windows;
  const auto slot = static_cast<std::size_t>(index);
  const platform::Handle stroke_window = windows.WindowFromPoint(first_point(table_.patrons.at(slot)));
  trace("fenetreDLL:", std::to_string(stroke_window), true);
  trace("SK:", std::to_string(sk_.hWnd));
  trace("PPdc:", std::to_string(windows.WindowFromDC(0)));
  trace("PPfp:", std::to_string(windows.WindowFromPoint(windows.GetCursorPos())));

  const platform::Handle target = top_level(windows.WindowFromPoint(windows.GetCursorPos()));
  if (target == sk_.hWnd) return;
  trace("fenetre parent:", std::to_string(top_level(stroke_window)));

  // Both characters of a prefix are plain ASCII, so bytes do.
  const std::string prefix = action.substr(0, 2);
  if (prefix == "P:") {
    services_.shell.ShellExecuteA(sk_.hWnd, "open", action.substr(2), "", "", normal_window);
  } else if (prefix == "T:") {
    Mod_FSK::force_send_keys(services_.input, action.substr(2), false);
  } else if (prefix == "C:") {
    commandes_.executer(action.substr(2), target);
  }
}

platform::Handle Dispatch::top_level(platform::Handle window) const {
  while (const platform::Handle parent = services_.windows.GetParent(window)) window = parent;
  return window;
}

void Dispatch::trace(const std::string& name, const std::string& value, bool anew) {
  sk_.Text1.Text = (anew ? std::string() : sk_.Text1.Text.get()) + name + value + "\r\n";
}
