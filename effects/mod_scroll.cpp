#include "effects/mod_scroll.h"

#include "platform/number.h"
#include "platform/text.h"

namespace {

constexpr int pause_ms = 10;
constexpr std::int32_t intervalle_ms = 30;  // a step comes when more than this has passed
constexpr std::int32_t sous_le_bord = 10;   // pixels by which the text starts below the panel

std::int32_t whole(float pixels) {
  return platform::round_half_even(pixels);
}

}  // namespace

void Mod_Scroll::preparer(const std::string& texte) {
  const std::int32_t width = whole(Pictxt_.ScaleWidth());
  const std::int32_t height = whole(Pictxt_.ScaleHeight());
  platform::SetRect(rect_defilement_, 1, 1, width, height);
  platform::SetRect(rect_texte_, 1, height, width,
                    height + whole(platform::TextHeight(services_.fonts, Pictxt_)) + sous_le_bord);
  lignes_aide.clear();
  constexpr std::string_view fin_de_ligne = "\r\n";
  for (std::size_t start = 0;;) {
    const std::size_t end = texte.find(fin_de_ligne, start);
    lignes_aide.push_back(texte.substr(start, end == std::string::npos ? end : end - start));
    if (end == std::string::npos) break;
    start = end + fin_de_ligne.size();
  }
}

void Mod_Scroll::defiler_aide() {
  std::string ligne;
  do {
    services_.clock.Sleep(pause_ms);
    if (ligne_courante >= static_cast<std::int32_t>(lignes_aide.size())) ligne_courante = 0;
    const std::int32_t tick = services_.clock.GetTickCount();
    // The counter wraps in 32 bits; a wrap delays or hastens one step.
    const auto since =
        static_cast<std::int32_t>(static_cast<std::uint32_t>(tick) - static_cast<std::uint32_t>(dernier_tick_));
    if (since > intervalle_ms) {
      dernier_tick_ = services_.clock.GetTickCount();
      avancer(ligne);
    }
    services_.events.DoEvents();
    // Closed and set going again within one yield, without a text to roll, it ends too.
  } while (defilement_actif && !lignes_aide.empty() && !services_.events.ended());
}

// One step: the line is drawn anew at each, and what is drawn moves up with its rectangle.
void Mod_Scroll::avancer(std::string& ligne) {
  const platform::PictureBox::Hold at_once(Pictxt_);
  if (Pictxt_.ScaleHeight() > static_cast<float>(rect_texte_.bottom)) {
    platform::OffsetRect(rect_texte_, 0, whole(platform::TextHeight(services_.fonts, Pictxt_)));
    ligne = platform::trimmed(lignes_aide.at(static_cast<std::size_t>(ligne_courante)));
    ++ligne_courante;
  }
  platform::DrawTextA(services_.fonts, Pictxt_, ligne, rect_texte_, platform::DT_CENTER);
  platform::OffsetRect(rect_texte_, 0, -1);
  platform::ScrollDC(Pictxt_, 0, -1, rect_defilement_);
  const double bas = Pictxt_.ScaleHeight() - 1.0;
  Pictxt_.Box(0, bas, Pictxt_.ScaleWidth(), bas, Pictxt_.BackColor);
}
