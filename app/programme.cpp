#include "app/programme.h"

#include <string>

#include "effects/coloriser.h"
#include "forms/mod_fenetre.h"
#include "store/liste.h"

namespace {

constexpr const char* hook_library = "Strokemind.so";
constexpr float largeur = 5000;  // twips: the rest of the form is out of sight, whatever was stored

}  // namespace

Programme::Programme(platform::Services& services)
    : services_(services),
      menu_(services.windows),
      actions_(services.windows),
      ini_(services.profile, services.program.EXEName + ".AI"),
      profil_(ini_, sk_, table_),
      dispatch_(services, sk_, table_),
      recherche_(sk_, dessin_, table_, vue_, theme_, dispatch_),
      systray_(services.shell),
      editeur_(services, actions_, {sk_, table_, theme_, systray_}),
      menu_icone_(services, sk_, menu_, table_, theme_, systray_, [this] { quit(); }),
      fenetre_(services, sk_, menu_icone_),
      vue_liste_(services.windows, sk_, table_, vue_, dessin_, [this] { editeur_.ouvrir(); }),
      panneaux_(services, sk_, table_, vue_, theme_),
      boutons_(services.windows, sk_, theme_, gestes()),
      poignees_(services.windows, sk_, table_, vue_, theme_) {}

ui::Gestes Programme::gestes() {
  return {.terminer = [this] { quit(); },
          .basculer = [this](int index) { panneaux_.basculer(index); },
          .relacher_aide = [this] { panneaux_.relacher_aide(); },
          .supprimer =
              [this](const std::string& nom) {
                enregistrement_->supprimer_patron(nom);
                Mod_dessin::rebatir_vignettes(sk_, table_);
              },
          .enregistrer = [this] { enregistrement_->enregistrer_patron(); },
          .ecrire = [this] { profil_.ecrire_patrons(); }};
}

Programme::~Programme() {
  Form_Terminate();
}

void Programme::start() {
  if (!services_.windows.load(sk_)) return services_.events.End(1);
  Form_Load();
}

void Programme::Form_Load() {
  Mod_dessin::charger_police(services_, sk_);
  if (unloading_) return;  // asked to go while a box was open
  if (!load_hook()) return services_.events.End(status_);
  connect();
  systray_.CreateIcon(sk_, "Strokemind");

  theme_.couleur_theme = couleur_depart;
  coloriser(sk_, theme_, theme_.couleur_theme);
  profil_.lire_position();
  sk_.Width = largeur;
  std::int16_t duree = Mod_dessin::duree_depart_ms;
  Mod_dessin::montrer_fenetre(services_.windows, sk_, duree);
  Mod_dessin::cacher_fenetre(services_.windows, sk_);
  Mod_dessin::charger_police(services_, sk_);
  if (unloading_) return;

  profil_.charger_patrons();
  patrons_loaded_ = true;
  sk_.lblNmodel.Caption = std::to_string(table_.nb_patrons);
  sk_.lblRes.Caption = "";
  Mod_dessin::rebatir_vignettes(sk_, table_);
  vue_.vue_vignettes = true;

  // Hidden from here on, unless nothing could bring the window back or a newcomer would see nothing at all.
  if (!services_.shell.tray_present() || table_.nb_patrons == 0) {
    std::int16_t defaut = 0;
    Mod_dessin::montrer_fenetre(services_.windows, sk_, defaut);
  }
}

bool Programme::load_hook() {
  std::string error;
  hook_ = services_.hooks.load(hook_library, error);
  if (hook_ == nullptr) {
    status_ = 1;
    services_.dialogs.MsgBox(
        "La bibliothèque " + services_.program.Path + "/" + hook_library + " ne peut pas être chargée:\r\n" + error,
        platform::vbSystemModal | platform::vbCritical, "Strokemind");
    return false;
  }
  capture_.emplace(services_, Capture::Forms{sk_, menu_, actions_}, *hook_, dessin_, theme_, recherche_, systray_);
  enregistrement_.emplace(services_.dialogs, sk_, table_, vue_, dessin_, profil_, *capture_);
  editeur_.prendre(*hook_);
  menu_icone_.prendre(*hook_);
  return true;
}

void Programme::connect() {
  sk_.KeyDown = [this](int& code, int& shift) { capture_->Form_KeyDown(code, shift); };
  sk_.KeyUp = [this](int& code, int& shift) { capture_->Form_KeyUp(code, shift); };
  sk_.TimerInfo.Elapsed = [this] { recherche_.TimerInfo_Timer(); };
  sk_.CloseRequest = [this] { quit(); };
  vue_liste_.connect();
  panneaux_.connect();
  boutons_.connect();
  poignees_.connect();
  fenetre_.connect();
  hook_->InitHook(sk_.hWnd);
}

void Programme::quit() {
  if (unloading_) return;
  unloading_ = true;
  actions_.unload();
  Form_Unload();
}

void Programme::Form_Unload() {
  Mod_dessin::cacher_fenetre(services_.windows, sk_);
  if (patrons_loaded_) profil_.ecrire_patrons();
  systray_.DeleteIcon();
  actions_.unload();
  menu_.unload();
  Form_Terminate();
  services_.events.End(status_);
}

void Programme::Form_Terminate() {
  if (hook_ != nullptr) hook_->EndHook();
  hook_.reset();
}
