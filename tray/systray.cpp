#include "tray/systray.h"

#include <algorithm>
#include <cassert>

#include "platform/text.h"

void Cls_Systray::CreateIcon(platform::Form& frmgeneral, const std::string& title) {
  constexpr std::uint32_t message_icon_and_tip = 7;
  record_.cbSize = sizeof record_;
  record_.hWnd = frmgeneral.hWnd;
  record_.uId = 1;
  record_.uFlags = message_icon_and_tip;
  record_.uCallbackMessage = platform::WM_MOUSEMOVE;
  record_.hIcon = frmgeneral.Icon.get().handle;
  title_ = title;
  fill_tip(title);
  send(platform::NIM_ADD);
  send(platform::NIM_MODIFY);
}

void Cls_Systray::DeleteIcon() {
  send(platform::NIM_DELETE);
}

void Cls_Systray::Icon(platform::Form& frm) {
  record_.hIcon = frm.Icon.get().handle;
  send(platform::NIM_MODIFY);
}

void Cls_Systray::titre(const std::string& newtitre) {
  fill_tip(newtitre);
  send(platform::NIM_MODIFY);
}

void Cls_Systray::fill_tip(const std::string& text) {
  const std::string tip = platform::to_cp1252(text) + '\0';
  record_.szTip.fill(' ');
  std::copy_n(tip.begin(), std::min(tip.size(), record_.szTip.size()), record_.szTip.begin());
}

void changer_icone(SK& sk, Cls_Systray& systray, int n) {
  const platform::ListImage* const image = sk.ImageList132(n);
  assert(image != nullptr);
  sk.Icon = image->picture;
  systray.Icon(sk);
}
