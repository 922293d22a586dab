// The action editor's window: its controls with the places, colours and texts of the design, nothing else.
#pragma once

#include "platform/controls.h"

inline constexpr std::int32_t vert_sombre = 16384;  // dark green, the colour of whatever is not highlighted
inline constexpr int nb_commandes = 17;

class Actions : public platform::Form {
 public:
  Actions();

  platform::Shape Contour;
  platform::PictureBox Pictitre;
  platform::ControlArray<platform::Shape> Shape3;  // 4
  platform::Label lblpatron;
  platform::ControlArray<platform::Label> Bouton;  // 4
  platform::ControlArray<platform::Label> lblCom;  // 0 to 3
  platform::Line Line1;
  platform::ControlArray<platform::Label> lblComC;  // 0 to 16
  platform::TextBox Texte;
  platform::PictureBox Prog;
  platform::Label lblinfo;
  platform::TextBox TextProg;
  platform::Shape Shape1;
  platform::ControlArray<platform::Line> Line2;  // 0, 1
  platform::Label Raz;
  platform::Image Ico;
};
