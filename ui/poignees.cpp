#include "ui/poignees.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "platform/number.h"
#include "ui/marques.h"
#include "ui/vue_liste.h"

namespace ui {

namespace {

constexpr int left_button = 1;
constexpr int right_button = 2;

// The handles' places, twips. The limits are what the handle is put to when it has passed the test value.
constexpr float repos_x = 2405;
constexpr float repos_y = 1860;
struct Limites {
  float low, low_place, high, high_place;
};
constexpr Limites limites_x{50, 51, 4760, 4759};
constexpr Limites limites_y{270, 260, 3200, 3209};

// The list is scrolled only when it has more patrons than this.
constexpr int vignettes_en_vue = 6;
constexpr int icones_en_vue = 12;
constexpr int lignes_en_vue = 13;

constexpr float aimant_pixels = 20;
constexpr float marge_bas = 510;  // room for a task bar, twips

std::int16_t short_of(float value) {
  using Limits = std::numeric_limits<std::int16_t>;
  return static_cast<std::int16_t>(
      std::clamp<std::int32_t>(platform::round_half_even(value), Limits::min(), Limits::max()));
}

void limiter(platform::Property<float>& place, const Limites& limites) {
  if (place < limites.low) {
    place = limites.low_place;
  } else if (place > limites.high) {
    place = limites.high_place;
  }
}

float aimante(float place, float extent, float origin, float screen, float aimant, float marge) {
  const float inside = place - origin;
  if (std::abs(inside) < aimant) return origin;
  if (std::abs(extent + inside - screen) < aimant) return origin + screen - extent - marge;
  return place;
}

}  // namespace

Coin place_tiree(Coin from, float width, float height, Coin depart, float X, float Y, const platform::Screen& screen) {
  const auto moved = [](float corner, float pressed, float now) {
    return static_cast<float>(platform::round_half_even(static_cast<double>(corner) - (pressed - now)));
  };
  const float aimant = screen.TwipsPerPixelX * aimant_pixels;
  return {aimante(moved(from.Left, depart.Left, X), width, screen.Left, screen.Width, aimant, 0),
          aimante(moved(from.Top, depart.Top, Y), height, screen.Top, screen.Height, aimant, marge_bas)};
}

void Poignees::connect() {
  sk_.ScrollX.MouseMove = [this](const platform::MouseEvent& event) { ScrollX_MouseMove(event); };
  sk_.ScrollY.MouseMove = [this](const platform::MouseEvent& event) { ScrollY_MouseMove(event); };
  sk_.ScrollX.MouseUp = [this](const platform::MouseEvent&) { sk_.ScrollX.Left = repos_x; };
  sk_.ScrollY.MouseUp = [this](const platform::MouseEvent&) { sk_.ScrollY.Top = repos_y; };
  for (platform::Control* surface :
       std::initializer_list<platform::Control*>{&sk_.lblcaption, &sk_.lblinfo, &sk_.lblNmodel, &sk_.lblRes}) {
    tirer_par(*surface, [] {});
  }
  tirer_par(sk_.lblpatron, [this] {
    sk_.lblinfo.Caption = "Nombre total de patrons enregistrés.\r\n(Double Clic pour enregistrement sur fichier)";
  });
  tirer_par(sk_.PicRes, [this] {
    effacer_marques(sk_, 0, 3);
    sk_.Bouton(6).ForeColor = theme_.couleur_theme;
    sk_.Bouton(7).ForeColor = theme_.couleur_theme;
  });
  tirer_par(sk_.Pictitre, [this] { effacer_marques(sk_, 4, 5); });
  for (const auto& commande : sk_.lblCom) {
    commande->MouseDown = [this, index = commande->Index](const platform::MouseEvent& event) {
      sk_.Shape(index).BorderStyle = platform::border_dotted;
      depart_ = {event.X, event.Y};
    };
  }
}

void Poignees::tirer_par(platform::Control& surface, std::function<void()> survol) {
  surface.MouseDown = [this](const platform::MouseEvent& event) { depart_ = {event.X, event.Y}; };
  surface.MouseMove = [this, survol = std::move(survol)](const platform::MouseEvent& event) {
    survol();
    if (event.Button == left_button) deplacer_fenetre(event.X, event.Y);
  };
}

void Poignees::deplacer_fenetre(float X, float Y) {
  const Coin place = place_tiree({sk_.Left, sk_.Top}, sk_.Width, sk_.Height, depart_, X, Y, windows_.Screen(sk_));
  sk_.Left = place.Left;
  sk_.Top = place.Top;
}

void Poignees::suivre_curseur(platform::Control& handle, int Button, float X, float Y) {
  switch (Button) {
    case left_button:
      deplacer_curseur(handle, X, Y);
      break;
    case right_button:
      break;
    default:
      ancre_x_ = short_of(X);
      ancre_y_ = short_of(Y);
      break;
  }
}

// X and Y count from the handle, which moves with the pointer: their distance from the anchor is the displacement since
// the last event.
void Poignees::deplacer_curseur(platform::Control& handle, float X, float Y) const {
  const auto ancre_x = static_cast<float>(ancre_x_);
  const auto ancre_y = static_cast<float>(ancre_y_);
  if (X == ancre_x && Y == ancre_y) return;
  handle.Left = handle.Left + (X - ancre_x);
  handle.Top = handle.Top + (Y - ancre_y);
  handle.form().Refresh();
}

// The step is the number of patrons, whatever the distance: the longer the list, the faster it runs. Compared for any
// button: with none held the anchor has just been set to X, and nothing scrolls.
void Poignees::ScrollX_MouseMove(const platform::MouseEvent& event) {
  suivre_curseur(sk_.ScrollX, event.Button, event.X, 0);
  limiter(sk_.ScrollX.Left, limites_x);
  // A pointer between two units stands where its anchor was set.
  const float ancre = short_of(event.X) == ancre_x_ && event.Button == 0 ? event.X : static_cast<float>(ancre_x_);
  const int patrons = table_.nb_patrons;
  if (event.X == ancre || patrons <= (vue_.vue_vignettes ? vignettes_en_vue : icones_en_vue)) return;
  ListViewScroll(windows_, sk_.LV, event.X < ancre ? -patrons : patrons, 0);
}

void Poignees::ScrollY_MouseMove(const platform::MouseEvent& event) {
  suivre_curseur(sk_.ScrollY, event.Button, 0, event.Y);
  limiter(sk_.ScrollY.Top, limites_y);
  const float ancre = short_of(event.Y) == ancre_y_ && event.Button == 0 ? event.Y : static_cast<float>(ancre_y_);
  const int patrons = table_.nb_patrons;
  if (event.Y == ancre || vue_.vue_vignettes || patrons <= lignes_en_vue) return;
  ListViewScroll(windows_, sk_.LV, 0, event.Y < ancre ? -patrons : patrons);
}

}  // namespace ui
