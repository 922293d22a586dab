#include "store/mod_ini.h"

std::string Mod_ini::lire_ini(std::optional<std::string_view> section, std::optional<std::string_view> key) {
  std::string value = profile_.GetPrivateProfileStringA(section, key, "", tampon, file_);
  // A full buffer means that the rest was cut off. Bytes are at least as many as characters.
  if (value.size() >= tampon - 2) preserve();
  return value;
}

void Mod_ini::ecrire_ini(std::string_view section, std::string_view key, std::string_view value) {
  profile_.WritePrivateProfileStringA(section, key, value, file_);
}
