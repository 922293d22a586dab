// The two wrappers of the profile services.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/services.h"

class Mod_ini {
 public:
  // `file`: bare name of the profile.
  Mod_ini(platform::Profile& profile, std::string file) : profile_(profile), file_(std::move(file)) {}

  static constexpr std::size_t tampon = 50000;  // characters: no value and no list of sections can be longer

  // The value of a key; empty where there is none. An unset section asks for the names of all sections, each followed
  // by a NUL, an unset key for those of the section's keys.
  std::string lire_ini(std::optional<std::string_view> section, std::optional<std::string_view> key);
  void ecrire_ini(std::string_view section, std::string_view key, std::string_view value);

  bool exists() { return profile_.Dir(file_); }
  // Drops every section; like what is written afterwards, on the disk at `flush`.
  void kill() { profile_.Kill(file_); }
  // One replacement of the file; false leaves the old one.
  bool flush() { return profile_.flush(file_); }
  // What the file holds was not taken in whole: a copy is kept before it is next replaced.
  void preserve() { profile_.preserve(file_); }

 private:
  platform::Profile& profile_;
  std::string file_;
};
