#include "actions/mod_fsk.h"

#include <cstdint>

namespace Mod_FSK {

namespace {

// Virtual key codes of the lock keys, which are also their places in the keyboard state.
constexpr std::uint8_t num = 0x90;
constexpr std::uint8_t maj = 0x14;
constexpr std::uint8_t defil = 0x91;

constexpr std::uint8_t scan = 0x45;  // sent for all three keys

bool etat(platform::Input& input, std::uint8_t key) {
  return input.GetKeyboardState()[key] != 0;
}

void bascule(platform::Input& input, std::uint8_t key) {
  const int family = input.platform_id();
  platform::KeyboardState state = input.GetKeyboardState();
  if (family == platform::platform_9x) {
    state[key] = static_cast<std::uint8_t>(~state[key]);
    input.SetKeyboardState(state);
  } else if (family == platform::platform_nt) {
    input.keybd_event(key, scan, platform::KEYEVENTF_EXTENDEDKEY, 0);
    input.keybd_event(key, scan, platform::KEYEVENTF_EXTENDEDKEY | platform::KEYEVENTF_KEYUP, 0);
  }
}

}  // namespace

bool etat_num(platform::Input& input) {
  return etat(input, num);
}
bool etat_maj(platform::Input& input) {
  return etat(input, maj);
}
bool etat_defil(platform::Input& input) {
  return etat(input, defil);
}

void bascule_num(platform::Input& input) {
  bascule(input, num);
}
void bascule_maj(platform::Input& input) {
  bascule(input, maj);
}
void bascule_defil(platform::Input& input) {
  bascule(input, defil);
}

void force_send_keys(platform::Input& input, std::string_view text, bool wait) {
  const bool num_avant = etat_num(input);
  const bool maj_avant = etat_maj(input);
  const bool defil_avant = etat_defil(input);
  input.SendKeys(text, wait);
  if (etat_num(input) != num_avant) bascule_num(input);
  if (etat_maj(input) != maj_avant) bascule_maj(input);
  if (etat_defil(input) != defil_avant) bascule_defil(input);
}

}  // namespace Mod_FSK
