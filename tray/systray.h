// The program's icon in the tray, which shows whether the hook runs.
#pragma once

#include <string>

#include "forms/sk.h"
#include "platform/services.h"

// Keeps one icon and its tip in step with a form. It knows no menu and no click: what the mouse does on the icon comes
// to the form as mouse moves.
class Cls_Systray {
 public:
  explicit Cls_Systray(platform::Shell& shell) : shell_(shell) {}
  Cls_Systray(const Cls_Systray&) = delete;
  Cls_Systray& operator=(const Cls_Systray&) = delete;
  virtual ~Cls_Systray() = default;

  // Puts the form's icon into the tray with `title` as its tip. The form hears of the mouse from then on.
  virtual void CreateIcon(platform::Form& frmgeneral, const std::string& title);
  virtual void DeleteIcon();
  // Takes over the present icon of a form.
  virtual void Icon(platform::Form& frm);
  // The title given to CreateIcon.
  virtual std::string titre() const { return title_; }
  // Shows another tip.
  virtual void titre(const std::string& newtitre);

 private:
  // The record's tip is `text` in code page 1252 and one NUL, filled up with blanks; what is longer is cut.
  void fill_tip(const std::string& text);
  void send(std::uint32_t message) { shell_.Shell_NotifyIconA(message, record_); }

  platform::Shell& shell_;
  std::string title_;
  platform::NOTIFYICONDATA record_{};
};

// Gives the main form image `n` of ImageList132: image_marche for a running hook, image_arret for a stopped one. The
// tray follows the form.
void changer_icone(SK& sk, Cls_Systray& systray, int n);
