// The main program's side of a stroke: what a report of the hook library does.
#pragma once

#include <cstdint>

#include "forms/actions.h"
#include "forms/instance.h"
#include "forms/menu.h"
#include "forms/sk.h"
#include "model/dessin.h"
#include "model/theme.h"
#include "platform/services.h"
#include "recognition/recherche.h"
#include "tray/systray.h"

class Capture {
 public:
  struct Forms {
    SK& sk;
    FormInstance<Menu>& menu;
    FormInstance<Actions>& actions;
  };
  Capture(platform::Services& services, Forms forms, platform::HookLibrary& hook, Mod_dessin::Dessin& dessin,
          const Theme& theme, Mod_dessin::Recherche& recherche, Cls_Systray& systray)
      : services_(services),
        forms_(forms),
        hook_(hook),
        dessin_(dessin),
        theme_(theme),
        recherche_(recherche),
        systray_(systray) {}

  // The reports: stroke finished (67), Ctrl (17) and Shift (16) going down; Ctrl coming up. Other keys, and any key
  // while the pause entry is ticked, do nothing. A key pressed on the focused main window is the same event.
  void Form_KeyDown(int& KeyCode, int& Shift);
  void Form_KeyUp(int& KeyCode, int& Shift);

  // Fetches the last finished stroke into the buffers, in screen pixels, and plots it unscaled on PicIco.
  void lire_info_dll();

 private:
  bool paused();
  void stroke_finished();
  // Tells the library, changes the icons, and lets the screen follow.
  void stop(bool stopped);

  platform::Services& services_;
  Forms forms_;
  platform::HookLibrary& hook_;
  Mod_dessin::Dessin& dessin_;
  const Theme& theme_;
  Mod_dessin::Recherche& recherche_;
  Cls_Systray& systray_;
  std::int32_t dernier_rapport_ = 0;  // tick of the last stroke report, ms
};
