#include "forms/mod_fenetre.h"

#include <string>

bool Mod_fenêtre::toujours_devant(platform::Windows& windows, platform::Handle hWnd, bool devant) {
  constexpr std::uint32_t no_size = 0x1;
  constexpr std::uint32_t no_move = 0x2;
  constexpr std::uint32_t no_activate = 0x10;
  constexpr std::uint32_t show_window = 0x40;
  return windows.SetWindowPos(hWnd, devant ? platform::HWND_TOPMOST : platform::HWND_NOTOPMOST, 0, 0, 0, 0,
                              no_size | no_move | no_activate | show_window);
}

namespace Mod_dessin {

namespace {

void fondre(platform::Windows& windows, platform::Form& form, std::int16_t& ms) {
  if (ms == 0) ms = duree_defaut_ms;
  windows.Hide(form);
  windows.SetForegroundWindow(form.hWnd);
  windows.AnimateWindow(form.hWnd, ms, platform::AW_ACTIVATE | platform::AW_BLEND);
}

}  // namespace

void montrer_fenetre(platform::Windows& windows, SK& sk, std::int16_t& ms) {
  fondre(windows, sk, ms);
  for (platform::Control* control : std::initializer_list<platform::Control*>{
           &sk.PicScr, &sk.PicTmp, &sk.Pictitre, &sk.PicRes, &sk.ScrollX, &sk.ScrollY, &sk.LV}) {
    control->Refresh();
  }
  sk.Refresh();
  sk.PicIco.Refresh();
  Mod_fenêtre::toujours_devant(windows, sk.hWnd, true);
}

void montrer_actions(platform::Windows& windows, Actions& actions, std::int16_t& ms) {
  fondre(windows, actions, ms);
  Mod_fenêtre::toujours_devant(windows, actions.hWnd, true);
}

void cacher_fenetre(platform::Windows& windows, SK& sk) {
  windows.AnimateWindow(sk.hWnd, duree_cacher_ms, platform::AW_HIDE | platform::AW_BLEND);
}

void nommer_police(platform::Property<platform::Font>& font) {
  platform::Font named = font;
  named.Name = nom_police;
  font = named;
}

void installer_police(platform::Services& services) {
  // A path always gets its separator, even behind one.
  const std::string path = services.program.Path + "/" + fichier_police;
  const auto installed = static_cast<std::int16_t>(services.fonts.AddFontResourceA(path));
  if (installed < 1) {
    services.dialogs.MsgBox("Police non charger", platform::vbSystemModal | platform::vbCritical, "SK Erreur:");
  } else {
    services.windows.PostMessageA(0, platform::WM_FONTCHANGE, 0, 0);
  }
}

void charger_police(platform::Services& services, SK& sk) {
  installer_police(services);
  for (platform::Property<platform::Font>* font :
       {&sk.Font, &sk.lblcaption.Font, &sk.PicSplash(0).Font, &sk.PicSplash(1).Font, &sk.Pictxt.Font, &sk.lblRes.Font,
        &sk.lblpatron.Font, &sk.Bouton(6).Font, &sk.Bouton(7).Font, &sk.lblCom(0).Font, &sk.lblCom(2).Font,
        &sk.lblinfo.Font, &sk.lblNmodel.Font, &sk.LV.Font}) {
    nommer_police(*font);
  }
}

}  // namespace Mod_dessin
