#include "ui/fenetre.h"

#include <utility>

namespace ui {

namespace {

constexpr int bouton_terminer = 4;

// Takes the hover marks off, and the information line: a verdict stands only until the pointer crosses the bare form.
void Form_MouseMove(SK& sk) {
  for (int index = 0; index <= 5; ++index) sk.Shape3(index).BackStyle = platform::transparent;
  sk.Shape(0).Visible = false;
  sk.Shape(2).Visible = false;
  sk.lblinfo.Caption = "";
}

}  // namespace

void connect_fenetre(SK& sk, std::function<void()> terminer) {
  sk.MouseMove = [&sk](const platform::MouseEvent&) { Form_MouseMove(sk); };
  sk.Bouton(bouton_terminer).Click = std::move(terminer);
}

}  // namespace ui
