#include "actions/commandes.h"

#include <cstdint>
#include <initializer_list>
#include <string_view>
#include <vector>

#include "actions/mod_shell.h"
#include "forms/mod_fenetre.h"

namespace {

// Virtual key codes.
constexpr std::uint8_t VK_CONTROL = 0x11;
constexpr std::uint8_t VK_MENU = 0x12;
constexpr std::uint8_t VK_F4 = 0x73;
constexpr std::uint8_t VK_LWIN = 0x5B;
constexpr std::uint8_t VK_BROWSER_BACK = 0xA6;
constexpr std::uint8_t VK_BROWSER_FORWARD = 0xA7;

constexpr std::uint32_t down = 0;
constexpr std::uint32_t up = platform::KEYEVENTF_KEYUP;
constexpr std::uint32_t extended = platform::KEYEVENTF_EXTENDEDKEY;

struct Touche {
  std::uint8_t key;
  std::uint32_t flags;
};

// The commands that are nothing but keys. Of "Fermer" Alt is sent as an extended key and F4 is not.
struct Sequence {
  std::string_view label;
  std::vector<Touche> touches;
};

std::vector<Touche> with_control(char letter) {
  const auto key = static_cast<std::uint8_t>(letter);
  return {{VK_CONTROL, down}, {key, down}, {key, up}, {VK_CONTROL, up}};
}

const std::vector<Sequence>& sequences() {
  static const std::vector<Sequence> all = {
      {"Couper", with_control('X')},
      {"Tout", with_control('A')},
      {"Copier", with_control('C')},
      {"Coller", with_control('V')},
      {"Fermer", {{VK_MENU, extended}, {VK_F4, down}, {VK_F4, up}, {VK_MENU, extended | up}}},
      {"Précédent", {{VK_BROWSER_BACK, extended}, {VK_BROWSER_BACK, extended | up}}},
      {"Suivant", {{VK_BROWSER_FORWARD, extended}, {VK_BROWSER_FORWARD, extended | up}}},
      {"Session", {{VK_LWIN, extended}, {'L', extended}, {'L', extended | up}, {VK_LWIN, extended | up}}},
  };
  return all;
}

}  // namespace

// The labels differ from one another, so that the order of the comparisons makes no difference.
void Commandes::executer(const std::string& label, platform::Handle cible) {
  for (const Sequence& sequence : sequences()) {
    if (sequence.label != label) continue;
    for (const Touche& touche : sequence.touches) services_.input.keybd_event(touche.key, 0, touche.flags, 0);
    return;
  }
  platform::Shell& shell = services_.shell;
  if (label == "Bureau") {
    bureau();
  } else if (label == "Cascade") {
    Mod_Shell::fenetres_cascade(shell);
  } else if (label == "Horizontal") {
    Mod_Shell::fenetres_mosaique(shell, "H");
  } else if (label == "Vertical") {
    Mod_Shell::fenetres_mosaique(shell, "V");
  } else if (label == "Fin") {
    Mod_Shell::boite_arret(shell);
  } else if (label == "Exécuter") {
    Mod_Shell::boite_executer(shell);
  } else if (label == "Agrandir") {
    agrandir(cible);
  } else if (label == "Diminuer") {
    services_.windows.ShowWindow(cible, platform::SW_SHOWMINIMIZED);
  } else if (label == "Stroke-Mind") {
    std::int16_t defaut = 0;
    Mod_dessin::montrer_fenetre(services_.windows, sk_, defaut);
  }
}

void Commandes::bureau() {
  Mod_Shell::bureau_basculer(services_.shell, bureau_reduit_);
  bureau_reduit_ = !bureau_reduit_;
}

void Commandes::agrandir(platform::Handle cible) {
  switch (services_.windows.GetWindowPlacement(cible)) {
    case platform::SW_SHOWNORMAL:
      services_.windows.ShowWindow(cible, platform::SW_SHOWMAXIMIZED);
      break;
    case platform::SW_SHOWMAXIMIZED:
      services_.windows.ShowWindow(cible, platform::SW_SHOWNORMAL);
      break;
    default:
      break;
  }
}
