// What the user answers to the boxes of the program, and what goes on while they wait.
#include "fuzz/user.h"

int User::MsgBox(std::string_view text, int style, std::string_view /*title*/) {
  note("box: " + std::string(text.substr(0, 70)));
  ++boxes_;
  event_behind_box();
  --boxes_;
  const int kind = style & 7;
  const bool agreed = !desktop_.ended() && chances_.once_in(2);
  const auto name_in = [&](std::string_view before, std::string_view behind) -> std::string {
    if (!text.starts_with(before) || !text.ends_with(behind)) return {};
    return std::string(text.substr(before.size(), text.size() - before.size() - behind.size()));
  };
  if (agreed) {
    const std::string deleted = name_in("Voulez-vous supprimer le Patron: ", "");
    const std::string redrawn = name_in("Le patron ", " existe déjà. Voulez-vous le remplacer ?");
    const std::string cleared = name_in("Etes-vous sûr de vouloir supprimer l'Action du patron: ", "");
    if (!deleted.empty()) ledger_.deletes(deleted);
    if (!redrawn.empty()) ledger_.redraws(redrawn);
    // Behind the box another row may have been chosen: then nothing is cleared.
    if (!cleared.empty() && cleared == chosen()) ledger_.binds(cleared, "");
  }
  if (kind == platform::vbYesNo) return agreed ? platform::vbYes : platform::vbNo;
  if (kind == platform::vbOKCancel) return agreed ? platform::vbOK : platform::vbCancel;
  return platform::vbOK;
}

std::string User::InputBox(std::string_view /*prompt*/, std::string_view /*title*/, std::string_view /*fallback*/) {
  ++boxes_;
  event_behind_box();
  --boxes_;
  std::string name = desktop_.ended() ? std::string() : some_name();
  note("name: " + name.substr(0, 60));
  if (!name.empty()) ledger_.names(name);
  return name;
}

void User::ShowColor(platform::ColourDialog& dialog) {
  ++boxes_;
  event_behind_box();
  --boxes_;
  if (desktop_.ended()) return;
  ledger_.miniatures();
  if (chances_.once_in(3)) return;
  dialog.Color = chances_.one_of({0, 0xFF, 0xFFFFFF, 0x7F7F7F, 0x010203, 0xFF0000});
}

void User::PopupMenu(const std::vector<platform::MenuItem*>& entries) {
  ++boxes_;
  if (chances_.once_in(4)) wait();
  if (chances_.once_in(200)) programme_.quit();
  --boxes_;
  if (desktop_.ended() || chances_.once_in(4)) return;
  const platform::MenuItem& entry = *chances_.among(entries);
  if (entry.Caption == "Exit" && !chances_.once_in(10)) return;
  note("menu: " + entry.Caption);
  fire(entry.Click);
}
