#include "tests/desktop/stage.h"

#include <stdexcept>

using stage::eventually;

Stage::Stage(const With& with) : Screen(with) {
  static char name[] = "desktop_test";
  static char* arguments[] = {name, nullptr};
  desktop.emplace(1, arguments);
}

bool Stage::until(const std::function<bool()>& condition) {
  return eventually([&] { return services().events.DoEvents(), condition(); });
}

void Stage::settle(platform::Form& form) {
  // A report comes behind all input that the server has sent before it.
  bool seen = false;
  const auto handler = form.KeyDown;
  form.KeyDown = [&](int& code, int& shift) {
    seen |= code == -1;
    if (code != -1 && handler) handler(code, shift);
  };
  send(form.hWnd, form.hWnd, hook_report_atom, {hook_key_down, -1});
  if (!until([&] { return seen; })) throw std::runtime_error("events are not served");
  form.KeyDown = handler;
}

void Stage::show(platform::Form& form) {
  if (!services().windows.load(form)) throw std::runtime_error("no window");
  services().windows.Show(form);
  // A window manager goes on placing a window for a while; giving it the keyboard is the last thing it does.
  const bool managed = window_manager.running();
  const bool done = !managed || until([&] { return active() == form.hWnd; });
  if (!done) throw std::runtime_error("the window does not become active");
  settle(form);
}
