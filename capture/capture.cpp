#include "capture/capture.h"

#include <algorithm>
#include <array>
#include <string>

#include "capture/miniature.h"
#include "platform/hook_contract.h"

namespace {

constexpr std::int32_t ecart_minimal_ms = 700;  // reports closer than this, or exactly this, are not recognised
constexpr std::int32_t blanc = 0xFFFFFF;

// Difference of two readings of a counter that wraps in 32 bits.
std::int32_t elapsed(std::int32_t now, std::int32_t then) {
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(now) - static_cast<std::uint32_t>(then));
}

}  // namespace

bool Capture::paused() {
  return forms_.menu().mnuPause.Checked;
}

void Capture::Form_KeyDown(int& KeyCode, int& /*Shift*/) {
  if (paused()) return;
  switch (KeyCode) {
    case key_stroke:
      stroke_finished();
      break;
    case key_control:
      if (forms_.actions.on_screen()) {
        services_.events.DoEvents();
      } else {
        stop(true);
      }
      break;
    case key_shift:
      stop(true);
      break;
    default:
      break;
  }
}

void Capture::Form_KeyUp(int& KeyCode, int& /*Shift*/) {
  if (paused()) return;
  if (KeyCode == key_control) stop(false);
}

void Capture::stroke_finished() {
  lire_info_dll();
  const std::int32_t tick = services_.clock.GetTickCount();
  const std::int32_t interval = elapsed(tick, dernier_rapport_);
  dernier_rapport_ = tick;
  if (interval <= ecart_minimal_ms) return;
  Mod_dessin::dessiner_miniature(dessin_, forms_.sk.PicIco, forms_.sk.PicRef);
  recherche_.rechercher_patron();
  Mod_dessin::effacer_tampons(dessin_);
}

void Capture::stop(bool stopped) {
  hook_.DLL_STOP(stopped ? 1 : 0);
  changer_icone(forms_.sk, systray_, stopped ? image_arret : image_marche);
  forms_.sk.Refresh();
  services_.events.DoEvents();
}

void Capture::lire_info_dll() {
  SK& sk = forms_.sk;
  sk.Cls();
  std::array<point_hook, hook_capacity> points;
  std::int32_t n = 0;
  hook_.ENVOIS_BUF_TMP(points.data(), &n);
  n = std::clamp(n, 0, hook_max_points);
  sk.PicIco.DrawWidth = 1;
  for (std::int32_t i = 0; i < n; ++i) {
    std::int32_t colour = theme_.couleur_theme;
    if (i == 0) {
      colour = blanc;
    } else if (i == n - 1) {
      colour = blanc;
      sk.PicIco.DrawWidth = 3;
    }
    const point_hook& point = points[static_cast<std::size_t>(i)];
    dessin_.dessin_x[static_cast<std::size_t>(i)] = static_cast<float>(point.x);
    dessin_.dessin_y[static_cast<std::size_t>(i)] = static_cast<float>(point.y);
    sk.PicIco.PSet(point.x, point.y, colour);
  }
  dessin_.dessin_nb = static_cast<std::int16_t>(n);
  sk.lblRes.Caption = std::to_string(n) + " Points.";
}
