#include "store/profil.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <limits>
#include <vector>

#include "platform/number.h"
#include "platform/text.h"
#include "store/liste.h"

namespace Mod_dessin {

namespace {

constexpr const char* section_pos = "Pos";
constexpr const char* cle_action = "Actionassocié";

std::vector<std::string> split_at_nul(const std::string& list) {
  std::vector<std::string> names;
  for (std::size_t start = 0; start < list.size();) {
    const std::size_t end = std::min(list.find('\0', start), list.size());
    names.push_back(list.substr(start, end - start));
    start = end + 1;
  }
  return names;
}

std::optional<int> whole_number(std::string_view text) {
  int value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc{} || end != text.data() + text.size()) return std::nullopt;
  return value;
}

// A profile value is one line: line ends of a text become the word that types one.
std::string one_line(const std::string& action) {
  std::string line;
  for (std::size_t i = 0; i < action.size(); ++i) {
    if (action[i] == '\r' || action[i] == '\n') {
      line += "{ENTER}";
      if (action[i] == '\r' && i + 1 < action.size() && action[i + 1] == '\n') ++i;
    } else {
      line.push_back(action[i]);
    }
  }
  return line;
}

}  // namespace

int Profil::decouper(std::string texte, char separateur, int debut) {
  if (texte.empty()) return 0;
  std::replace(texte.begin(), texte.end(), separateur, ' ');
  std::size_t kept = 0;
  for (int n = 0; n < debut && kept < texte.size(); ++n) platform::next_code_point(texte, kept);
  texte.erase(0, kept);
  int n = 0;
  std::string token;
  const auto store = [&] {
    if (n < nb_morceaux) morceaux_[static_cast<std::size_t>(n++)] = token;
    token.clear();
  };
  for (const char c : texte) {
    if (c == ' ') {
      store();
    } else {
      token.push_back(c);
    }
  }
  if (!token.empty()) store();
  return n;
}

void Profil::charger_patrons() {
  const std::string sections = ini_.lire_ini(std::nullopt, "X");
  const std::string position = section_position();
  const int found = decouper(sections, '\0', 0);
  int i = 0;
  for (int m = 0; m < found; ++m) {
    // Where a name with a blank has fallen apart, tabs may stand at an end, which the file drops.
    const std::string nom(platform::trimmed(*morceaux_[static_cast<std::size_t>(m)]));
    if (nom == section_pos) break;
    // A position under another spelling is no patron, wherever it stands.
    if (nom == position) continue;
    // To the file a patron of this name and the position are one section: each would overwrite the other.
    const bool homonym = platform::equal_ignoring_case(nom, section_pos);
    // Such a slot would count as live and be taken for free: the table would get a gap, and what stands behind a gap
    // is not written.
    const bool unusable = nom.empty() || nom == nom_efface || homonym;
    // The table has no room for more.
    if (i == table_capacity || unusable) ini_.preserve();
    if (i == table_capacity) break;
    if (unusable) continue;
    table_.patrons[static_cast<std::size_t>(i)].Nom = nom;
    ++i;
    sk_.lblNmodel.Caption = std::to_string(i);
    table_.nb_patrons = static_cast<std::uint8_t>(i);
  }
  // A name with a blank has fallen apart, and what stands behind the position is not read.
  const std::vector<std::string> names = split_at_nul(sections);
  if (std::any_of(names.begin(), names.end(), [](const auto& name) { return name.find(' ') != std::string::npos; }) ||
      static_cast<int>(names.size()) > i + 1 || !keys_among(position, {"X", "Y"})) {
    ini_.preserve();
  }
  for (int slot = 0; slot < i; ++slot) lire_patron(table_.patrons[static_cast<std::size_t>(slot)]);
}

void Profil::lire_patron(Patron& patron) {
  const std::string& section = patron.Nom;
  const std::string ind = ini_.lire_ini(section, "Ind");
  const bool whole_x = lire_liste(section, "X", patron.X);
  const bool whole_y = lire_liste(section, "Y", patron.Y);
  patron.Action = ini_.lire_ini(section, cle_action);

  const int present = static_cast<int>(
      std::min({patron.X.values.size(), patron.Y.values.size(), static_cast<std::size_t>(dessin_slots)}));
  const std::optional<int> stated = whole_number(ind);
  // Without a count there are no points; one that cannot be right means all that are there.
  const int points = ind.empty() ? 0 : stated && *stated >= 0 ? std::min(*stated, present) : present;
  patron.Ind = static_cast<std::int16_t>(points);
  // "02" is 2, but would be written otherwise.
  bool whole = whole_x && whole_y && ind == std::to_string(patron.Ind);
  for (Coordinates* list : {&patron.X, &patron.Y}) {
    const auto count = static_cast<std::size_t>(patron.Ind);
    if (list->values.size() == count) continue;
    // The numbers beyond the count are not kept, so the list cannot be written back as it was.
    whole = false;
    std::size_t end = 0;  // the mark before the first number that goes
    for (std::size_t n = 0; n < count; ++n) end = list->text.find('.', end + 1);
    list->text.resize(end);
    list->values.resize(count);
  }
  if (!whole || !keys_among(section, {"Ind", "X", "Y", cle_action})) ini_.preserve();
}

// Whether a section holds no other keys than these, the ones that are written back.
bool Profil::keys_among(const std::string& section, std::initializer_list<const char*> known) {
  const std::vector<std::string> keys = split_at_nul(ini_.lire_ini(section, std::nullopt));
  return std::all_of(keys.begin(), keys.end(), [&](const std::string& key) {
    return std::any_of(known.begin(), known.end(),
                       [&](const char* name) { return platform::equal_ignoring_case(key, name); });
  });
}

// Reads one axis. False where something of it is lost: a token that is no number counts as 0 but keeps its text, unless
// it has none, which at the end of a list would not be found again.
bool Profil::lire_liste(const std::string& section, const char* key, Coordinates& list) {
  const std::string text = ini_.lire_ini(section, key);
  const int count = decouper(text, '.', 1);
  bool whole = true;
  list.values.clear();
  list.text.clear();
  for (int n = 0; n < count; ++n) {
    // Tabs at the end of the list would not be found again either.
    const std::string_view token = platform::trimmed(*morceaux_[static_cast<std::size_t>(n)]);
    const std::optional<double> value = platform::number_value(token);
    whole = whole && value.has_value();
    list.values.push_back(value.value_or(0));
    list.text.append(".").append(token.empty() ? "0" : token);
  }
  return whole && list.text == text;
}

bool Profil::looks_like_position(const std::string& section) {
  const std::vector<std::string> keys = split_at_nul(ini_.lire_ini(section, std::nullopt));
  const auto plain = [&](const char* key) { return platform::number_value(ini_.lire_ini(section, key)).has_value(); };
  return keys.size() == 2 && plain("X") && plain("Y");
}

// The section that holds the window's place: "Pos", under whatever case; failing that, one that looks like it.
std::string Profil::section_position() {
  const std::vector<std::string> names = split_at_nul(ini_.lire_ini(std::nullopt, "X"));
  if (std::find(names.begin(), names.end(), section_pos) != names.end()) return section_pos;
  for (const std::string& name : names) {
    if (platform::equal_ignoring_case(name, section_pos) && looks_like_position(name)) return name;
  }
  for (const std::string& name : names) {
    if (looks_like_position(name)) return name;
  }
  return section_pos;
}

void Profil::lire_position() {
  const std::string section = section_position();
  lire_axe(section, "X", sk_.Left, gauche_);
  lire_axe(section, "Y", sk_.Top, haut_);
}

void Profil::lire_axe(const std::string& section, const char* key, platform::Property<float>& axis, Place& place) {
  const std::string text = ini_.lire_ini(section, key);
  if (text.empty()) return;
  const std::optional<double> value = platform::number_value(text);
  // Beyond this no desktop has a pixel.
  constexpr double farthest = 1E+07;  // twips
  if (!value || std::abs(*value) > farthest) return ini_.preserve();
  axis = static_cast<float>(*value);
  place = {text, axis};
}

std::string Profil::texte_axe(float now, const Place& place) {
  return !place.texte.empty() && now == place.pose ? place.texte : platform::float_text(now);
}

bool Profil::ecrire_patrons() {
  if (ini_.exists()) ini_.kill();
  reprendre_actions(sk_, table_);
  // The slot behind them is never filled.
  for (std::size_t slot = 0; slot < table_capacity; ++slot) {
    const Patron& patron = table_.patrons[slot];
    if (patron.Nom.empty()) break;
    if (patron.Nom == nom_efface) continue;
    ini_.ecrire_ini(patron.Nom, "Ind", std::to_string(patron.Ind));
    ini_.ecrire_ini(patron.Nom, "X", liste_texte(patron.X, patron.Ind));
    ini_.ecrire_ini(patron.Nom, "Y", liste_texte(patron.Y, patron.Ind));
    ini_.ecrire_ini(patron.Nom, cle_action, one_line(patron.Action));
  }
  ini_.ecrire_ini(section_pos, "X", texte_axe(sk_.Left, gauche_));
  ini_.ecrire_ini(section_pos, "Y", texte_axe(sk_.Top, haut_));
  return ini_.flush();
}

std::string Profil::liste_texte(const Coordinates& list, int count) {
  if (!list.text.empty()) return list.text;
  std::string text;
  for (int n = 0; n < count; ++n) {
    text += "." + platform::float_text(static_cast<float>(list.values[static_cast<std::size_t>(n)]));
  }
  return text;
}

}  // namespace Mod_dessin
