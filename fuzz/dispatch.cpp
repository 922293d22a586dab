// Any text may stand where an action is looked for, whatever windows lie under the pointer.
#include "actions/dispatch.h"
#include "fuzz/input.h"
#include "simulation/desktop_in_memory.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Input input(data, size);
  simulation::DesktopInMemory desktop;
  static SK sk;
  promise(desktop.services.windows.load(sk));
  Mod_dessin::Table table;
  Dispatch dispatch(desktop.services, sk, table);
  const auto flags = input.number<std::uint8_t>();
  desktop.family = flags & 3;
  if ((flags & 4) != 0) desktop.typing = [&](std::string_view) { desktop.keyboard[0x14] ^= 1U; };
  if ((flags & 8) != 0) desktop.services.windows.Show(sk);
  desktop.cursor = {input.number<std::int16_t>(), input.number<std::int16_t>()};
  desktop.others = {{9001, 0, 0, 0, 800, 600, flags >> 4}, {9002, 9001, 10, 10, 100, 100}};
  Mod_dessin::Patron& patron = table.patrons[0];
  patron = {"A", {{input.number<double>()}, ""}, {{input.number<double>()}, ""}, 1, ""};
  const auto slot = static_cast<std::int16_t>(flags & 1);
  // Twice: a command may go by what it did before.
  const std::string action = input.text(size);
  dispatch.executer_action(action, slot);
  dispatch.executer_action(action, slot);
  const bool ours = desktop.services.windows.WindowFromPoint(desktop.cursor) == sk.hWnd;
  const auto shell = desktop.journal.matching("ShellExecuteA");
  promise(shell.size() == (action.starts_with("P:") && !ours ? 2U : 0U));
  desktop.services.windows.unload(sk);
  return 0;
}
