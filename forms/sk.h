// The main window: its controls with the places, colours and texts of the design, nothing else.
#pragma once

#include "platform/controls.h"

// Colours of the design.
inline constexpr std::int32_t vert = 0x0000FF00;
inline constexpr std::int32_t vert_fonce = 0x0006220C;  // the dark green behind the miniature and the handles
inline constexpr std::int32_t rouge = 0x000000FF;

// Numbers of the images of ImageList132.
inline constexpr int image_marche = 1;  // the hook runs
inline constexpr int image_arret = 2;   // the hook is stopped
// Numbers of pictures that stand in no list.
inline constexpr int image_apropos = 3;
inline constexpr int image_pointeur = 4;

class SK : public platform::Form {
 public:
  SK();

  // Behind everything: the frame and the rules.
  platform::Shape Contour;
  platform::ControlArray<platform::Line> Line1;  // 0, 4

  platform::PictureBox Pictitre;
  platform::PictureBox PicRes;
  platform::ListView LV;
  platform::PictureBox ScrollX;
  platform::PictureBox ScrollY;
  platform::PictureBox Pictxt;
  platform::ControlArray<platform::PictureBox> PicSplash;  // 0, 1
  platform::PictureBox PicIco;

  platform::ControlArray<platform::Shape> Shape3;  // 0 to 7
  platform::ControlArray<platform::Label> Bouton;  // 0 to 7
  platform::Label lblcaption;
  platform::Label lblRes;
  platform::Label lblNmodel;
  platform::Label lblpatron;
  platform::ControlArray<platform::Shape> Shape;   // 0, 2
  platform::ControlArray<platform::Label> lblCom;  // 0, 2
  platform::Label lblinfo;

  // Out of sight: work surfaces and stores.
  platform::PictureBox PicRef;
  platform::PictureBox PicScr;
  platform::PictureBox PicTmp;
  platform::CheckBox Check1;
  platform::TextBox Text1;
  platform::TextBox Texte;
  platform::ColourDialog CommonDialog1;
  platform::Timer TimerInfo;
  platform::Timer TmrPic;
  platform::ImageList ImLst_Vig;
  platform::ImageList ImageList132;
  platform::ImageList ImageList;
};
