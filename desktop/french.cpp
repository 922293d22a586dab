#include "desktop/french.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

namespace desktop {

QString FrenchTexts::translate(const char* /*context*/, const char* text, const char* /*disambiguation*/,
                               int /*n*/) const {
  static constexpr std::array<std::pair<std::string_view, const char*>, 30> texts = {{
      {"&Undo", "&Annuler"},
      {"&Redo", "&Rétablir"},
      {"Cu&t", "Co&uper"},
      {"&Copy", "&Copier"},
      {"&Paste", "C&oller"},
      {"Delete", "Supprimer"},
      {"Select All", "Tout sélectionner"},
      {"&Select All", "&Tout sélectionner"},
      {"&Step up", "&Augmenter"},
      {"Step &down", "&Diminuer"},
      {"OK", "OK"},
      {"&OK", "&OK"},
      {"Cancel", "Annuler"},
      {"&Cancel", "&Annuler"},
      {"&Yes", "&Oui"},
      {"&No", "&Non"},
      {"Close", "Fermer"},
      {"Select Color", "Choisir une couleur"},
      {"&Basic colors", "Couleurs de &base"},
      {"&Custom colors", "Couleurs &personnalisées"},
      {"&Add to Custom Colors", "&Ajouter aux couleurs personnalisées"},
      {"&Pick Screen Color", "Choisir à l'&écran"},
      {"Cursor at %1, %2\nPress ESC to cancel", "Pointeur en %1, %2\nÉchap pour annuler"},
      {"Hu&e:", "T&einte :"},
      {"&Sat:", "&Saturation :"},
      {"&Val:", "&Valeur :"},
      {"&Red:", "&Rouge :"},
      {"&Green:", "&Vert :"},
      {"Bl&ue:", "Ble&u :"},
      {"&HTML:", "&HTML :"},
  }};
  const auto* found = std::find_if(texts.begin(), texts.end(), [&](const auto& entry) { return entry.first == text; });
  return found == texts.end() ? QString() : QString::fromUtf8(found->second);
}

}  // namespace desktop
