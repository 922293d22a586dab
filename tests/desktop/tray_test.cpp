// The icon in a panel's tray, and the window when there is no panel.
#include <gtest/gtest.h>

#include <QApplication>
#include <QToolTip>

#include "tests/desktop/stage.h"

namespace {

using namespace platform;

class TrayTest : public FormTest {
 protected:
  TrayTest() : FormTest(With()) {
    form.Icon = Picture{7, "on"};
    form.BackColor = 0x00FF00;
    show(form);
  }
  bool notify(std::uint32_t message, std::string_view tip = "") {
    NOTIFYICONDATA record{sizeof record, form.hWnd, 1, 7, 512, form.Icon.get().handle, {}};
    std::copy(tip.begin(), tip.end(), record.szTip.begin());
    return shell.Shell_NotifyIconA(message, record);
  }
  // Whether the panel shows, in the corner, the picture of a program that watches, or the one crossed out in red.
  bool shows(bool on) {
    const auto pixels = user->pixels(0, 0, 26, 26);
    return std::ranges::count(pixels, 0x8FF58FU) > 20 && (std::ranges::count(pixels, 0xE01010U) > 20) != on;
  }
  void start_panel(bool on = true) {
    panel = stage::Process({"trayer", "--edge", "top", "--align", "left", "--SetDockType", "true"});
    EXPECT_TRUE(until([&] { return shell.tray_present() && shows(on); }));
  }
  void end_panel() {
    panel.end();
    EXPECT_TRUE(until([&] { return !shell.tray_present() && !shows(true) && !shows(false); }));
  }
  enum State { hidden, iconified, shown };
  // Whether the window comes to be in this state, to the task bar, to the program and to the eye.
  bool becomes(State state) {
    return until([&] {
      const bool listed = std::ranges::count(root_property("_NET_CLIENT_LIST"), form.hWnd) != 0;
      return listed == (state != hidden) && !has_state(form.hWnd, "_NET_WM_STATE_SKIP_TASKBAR") &&
             windows.on_screen(form) == (state == shown) && (at(9, 9) == 0x00FF00) == (state == shown);
    });
  }
  stage::Process panel;
  Shell& shell = services().shell;
};

TEST_F(TrayTest, TheIconFollowsItsRecordThroughPanelsThatComeAndGo) {
  EXPECT_FALSE(shell.tray_present());
  EXPECT_TRUE(notify(NIM_ADD, "Actif"));
  start_panel();
  form.Icon = Picture{8, "off"};
  EXPECT_TRUE(notify(NIM_MODIFY, "Arr\xEAt\xE9") && until([&] { return shows(false); }));
  user->move_to(12, 12);
  EXPECT_TRUE(until([] { return QToolTip::isVisible(); }));
  EXPECT_EQ(QToolTip::text().toStdString(), "Arrêté");
  end_panel();
  start_panel(false);
  EXPECT_TRUE(notify(NIM_DELETE) && until([&] { return !shows(false); }));
  EXPECT_FALSE(shell.Shell_NotifyIconA(NIM_ADD, {})) << "of no form";
}

TEST_F(TrayTest, TheMouseOnTheIconReachesTheForm) {
  std::vector<int> messages;
  form.MouseMove = [&](const MouseEvent& at) { messages.push_back(at.Button * static_cast<int>(at.X + at.Y)); };
  notify(NIM_ADD);
  start_panel();
  user->move_to(12, 12);
  EXPECT_TRUE(until([&] { return !messages.empty() && messages.back() == WM_MOUSEMOVE; }));
  const std::pair<int, std::vector<int>> clicks[] = {{3, {516, 517}}, {1, {513, 514}}, {1, {515, 514}}};
  for (const auto& one : clicks) {
    messages.clear();
    user->click(one.first);
    EXPECT_TRUE(until([&] { return messages == one.second; })) << one.first;
  }
  // Answered with a menu, which stays the only one; the form may be gone afterwards.
  int menus = 0;
  MenuItem entry("Quitter");
  entry.Click = [&] { windows.unload(form); };
  form.MouseMove = [&](const MouseEvent&) { ++menus == 1 ? services().dialogs.PopupMenu({&entry}) : void(); };
  when([] { return QApplication::activePopupWidget() != nullptr; },
       [&] {
         for (int i = 0; i < 3; ++i) user->move_to(12, 212), user->move_to(12 + i, 12);
         type({XK_Down, XK_Return});
       });
  user->click(3);
  EXPECT_TRUE(until([&] { return form.hWnd == 0; }));
  EXPECT_EQ(menus, 1);
}

TEST_F(TrayTest, WithoutAPanelAHiddenWindowStaysInTheTaskBar) {
  windows.unload(form), windows.load(form);
  notify(NIM_ADD);
  EXPECT_TRUE(becomes(hidden)) << "what was never shown need not be reached";
  form.Left = form.Left + 5 * twips_per_pixel;
  // As the program starts: what it does last stands.
  windows.Hide(form);
  for (const std::uint32_t flags : {AW_ACTIVATE, AW_HIDE}) windows.AnimateWindow(form.hWnd, 10, flags | AW_BLEND);
  EXPECT_TRUE(becomes(iconified));
  windows.Show(form);
  EXPECT_TRUE(becomes(shown) && place(form.hWnd).first == TestForm::left + 5);
  windows.Hide(form);
  tell_manager(form.hWnd, "_NET_ACTIVE_WINDOW", {2});
  EXPECT_TRUE(becomes(shown)) << "brought back by the user";
  start_panel();
  windows.AnimateWindow(form.hWnd, 10, AW_HIDE);
  EXPECT_TRUE(becomes(hidden)) << "the icon is enough";
  end_panel();
  EXPECT_TRUE(becomes(iconified));
  for (const std::uint32_t flags : {AW_ACTIVATE, AW_HIDE}) windows.AnimateWindow(form.hWnd, 10, flags);
  notify(NIM_DELETE);
  EXPECT_TRUE(becomes(hidden)) << "nothing is left at the end";
}

}  // namespace
