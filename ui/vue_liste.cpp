#include "ui/vue_liste.h"

#include "platform/number.h"
#include "ui/apercu.h"
#include "ui/marques.h"

namespace ui {

namespace {

constexpr int key_enter = 13;
constexpr int left_button = 1;
constexpr int view_small_icon = 1;  // never set here, and not to be scrolled

// A list with fewer patrons than this is not scrolled.
constexpr int least_thumbnails = 5;
constexpr int least_icons = 12;
constexpr int least_lines = 13;
// By how much a move scrolls, pixels or, in list view, columns: a fixed step, whatever the speed of the pointer.
constexpr int step_pixels = 10;
constexpr int step_columns = 1;

}  // namespace

void ListViewScroll(platform::Windows& windows, const platform::ListView& lvw, std::int32_t dx, std::int32_t dy) {
  windows.PostMessageA(lvw.hWnd, platform::LVM_SCROLL, dx, dy);
}

void VueListe::connect() {
  sk_.LV.ItemClick = [this](int) { LV_ItemClick(); };
  sk_.LV.DblClick = [this] { ouvrir_(); };
  sk_.LV.KeyPress = [this](int& KeyAscii) {
    if (KeyAscii == key_enter) ouvrir_();
  };
  sk_.LV.MouseMove = [this](const platform::MouseEvent& event) { LV_MouseMove(event); };
}

void VueListe::LV_ItemClick() {
  if (sk_.LV.SelectedItem() == nullptr) return;
  vue_.ligne_choisie = static_cast<std::int16_t>(sk_.LV.selected_row());
  Mod_dessin::montrer_patron(sk_, table_, dessin_);
}

void VueListe::LV_MouseMove(const platform::MouseEvent& event) {
  sk_.lblinfo.Caption = "";
  if (event.Button == left_button) {
    if (sk_.LV.View == view_small_icon) return;
    const bool moved = event.X != static_cast<float>(dernier_x_) || event.Y != static_cast<float>(dernier_y_);
    if (moved && !suivre(event)) return;
    dernier_x_ = platform::round_half_even(event.X);
    dernier_y_ = platform::round_half_even(event.Y);
  }
  effacer_marques(sk_, 0, 5);
}

// Sideways the list goes the way of the pointer; in report view the rows follow it.
bool VueListe::suivre(const platform::MouseEvent& event) {
  const auto way = [](float now, std::int32_t last) {
    return now < static_cast<float>(last) ? -1 : now > static_cast<float>(last) ? 1 : 0;
  };
  const int across = way(event.X, dernier_x_);
  const int down = way(event.Y, dernier_y_);
  const int patrons = table_.nb_patrons;
  int dx = 0;
  int dy = 0;
  switch (sk_.LV.View) {
    case platform::view_icon:
      if (patrons < (vue_.vue_vignettes ? least_thumbnails : least_icons)) return false;
      dx = across * step_pixels;
      break;
    case platform::view_list:
      if (patrons < least_icons) return false;
      dx = across * step_columns;
      break;
    case platform::view_report:
      if (patrons < least_lines) return false;
      dy = -down * step_pixels;
      break;
    default:
      break;
  }
  if (dx != 0 || dy != 0) ListViewScroll(windows_, sk_.LV, dx, dy);
  return true;
}

}  // namespace ui
