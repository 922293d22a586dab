#include "tests/core/scene.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(Tray, TheRecordIsAsTheShellWantsIt) {
  Scene scene;
  scene.start();
  const auto& records = scene.desktop.icon_records;
  ASSERT_EQ(records.size(), 2U);
  const platform::NOTIFYICONDATA& record = records[0];
  EXPECT_EQ(record.cbSize, 88U);
  EXPECT_EQ(record.hWnd, scene.programme.sk().hWnd);
  EXPECT_EQ(record.uId, 1U);
  EXPECT_EQ(record.uFlags, 7U);
  EXPECT_EQ(record.uCallbackMessage, 512U);
  EXPECT_EQ(record.hIcon, 1U);
  EXPECT_EQ(std::string(record.szTip.begin(), record.szTip.end()),
            "Strokemind" + std::string(1, '\0') + std::string(53, ' '));

  simulation::DesktopInMemory desktop;
  Cls_Systray systray(desktop.services.shell);
  platform::Form form("F", 1, 1);
  systray.CreateIcon(form, std::string(70, 'x'));
  systray.titre("été");
  EXPECT_EQ(systray.titre(), std::string(70, 'x'));
  EXPECT_EQ(desktop.icon_records[0].szTip.back(), 'x') << "cut, without a NUL";
  EXPECT_EQ(std::string(desktop.icon_records[2].szTip.data()), "\xE9t\xE9");
}

TEST(TrayMenu, OpensOnAnyEventWhileTheWindowIsHidden) {
  Scene scene;
  scene.start();
  SK& sk = scene.programme.sk();
  scene.desktop.on_icon(sk, platform::WM_MOUSEMOVE);
  EXPECT_THAT(scene.journal("PopupMenu"), ElementsAre("PopupMenu Voir - Pause - Couleurs - Exit"));
  scene.desktop.menu_answers = {"Voir"};
  scene.desktop.on_icon(sk, platform::WM_LBUTTONDOWN);
  EXPECT_TRUE(scene.desktop.on_screen(sk));
  EXPECT_EQ(scene.journal("AnimateWindow").back(), "AnimateWindow 101 500 a0000");
  scene.desktop.on_icon(sk, platform::WM_RBUTTONUP);
  EXPECT_THAT(scene.journal("PopupMenu"), testing::SizeIs(2)) << "in sight the icon does nothing";
  scene.click(5);
  scene.desktop.menu_answers = {"Exit"};
  scene.desktop.on_icon(sk, platform::WM_MOUSEMOVE);
  EXPECT_EQ(scene.desktop.exit_status(), 0);
}

TEST(TrayMenu, WithoutATrayTheTitleBarOffersIt) {
  Scene scene;
  scene.start();
  SK& sk = scene.programme.sk();
  sk.Pictitre.MouseDown({2, 0, 1, 1});
  EXPECT_THAT(scene.journal("PopupMenu"), IsEmpty());
  scene.desktop.tray = false;
  sk.Pictitre.MouseDown({1, 0, 1, 1});
  EXPECT_THAT(scene.journal("PopupMenu"), IsEmpty());
  sk.lblcaption.MouseDown({2, 0, 1, 1});
  EXPECT_THAT(scene.journal("PopupMenu"), testing::SizeIs(1));
}

// Time passes, the pause entry is chosen, Ctrl comes up; what the hook and the icon are told, and whether the entry is
// ticked afterwards.
struct Step {
  std::string event;
  std::vector<std::string> calls;
  int image;
  bool ticked;
};

TEST(TrayMenu, PauseOutlivesItsTick) {
  const std::vector<std::string> stop{"DLL_STOP 1"};
  const std::vector<std::string> resume{"DLL_STOP 0"};
  Scene scene;
  scene.start();
  SK& sk = scene.programme.sk();
  for (const Step& step : {Step{"pause", stop, image_arret, true}, Step{"pause", resume, image_marche, false},
                           Step{"pause", stop, image_arret, true}, Step{"1800", {}, image_arret, false},
                           Step{"pause", stop, image_arret, true}, Step{"1700", {}, image_arret, true},
                           Step{"pause", resume, image_marche, false}, Step{"pause", stop, image_arret, true},
                           Step{"100", {}, image_arret, false}, Step{"ctrl-", resume, image_marche, false}}) {
    const std::size_t before = scene.journal("DLL_STOP").size();
    if (step.event == "pause") {
      scene.desktop.menu_answers = {"Pause"};
      scene.desktop.on_icon(sk, platform::WM_LBUTTONDOWN);
    } else if (step.event == "ctrl-") {
      scene.key(hook_key_up, key_control);
    } else {
      scene.desktop.advance(std::stoi(step.event));
    }
    auto calls = scene.journal("DLL_STOP");
    calls.erase(calls.begin(), calls.begin() + static_cast<std::ptrdiff_t>(before));
    EXPECT_EQ(calls, step.calls) << step.event;
    EXPECT_EQ(sk.Icon.get().handle, static_cast<std::uint32_t>(step.image)) << step.event;
    EXPECT_EQ(scene.desktop.icon_records.back().hIcon, static_cast<std::uint32_t>(step.image)) << step.event;
    FormInstance<Menu>& menu = scene.programme.menu();
    EXPECT_EQ(menu.loaded() && menu().mnuPause.Checked, step.ticked) << step.event;
  }
}

TEST(TrayMenu, ItsFormWaitsForAnOpenPopUp) {
  Scene scene;
  scene.start();
  scene.desktop.during_dialog = [&] {
    scene.desktop.advance(5000);
    EXPECT_TRUE(scene.programme.menu().loaded());
    scene.desktop.on_icon(scene.programme.sk(), platform::WM_MOUSEMOVE);
  };
  scene.desktop.on_icon(scene.programme.sk(), platform::WM_MOUSEMOVE);
  EXPECT_FALSE(scene.programme.menu().loaded());
  EXPECT_THAT(scene.journal("PopupMenu"), testing::SizeIs(1)) << "no second one over the first";
}

TEST(TrayMenu, ColoursTheWindow) {
  Scene scene;
  scene.start();
  SK& sk = scene.programme.sk();
  const auto choose = [&](std::deque<std::int32_t> colour) {
    scene.desktop.menu_answers = {"Couleurs"};
    scene.desktop.colour_answers = std::move(colour);
    scene.desktop.on_icon(sk, platform::WM_MOUSEMOVE);
  };
  choose({0x0000FF});
  EXPECT_EQ(scene.programme.theme().couleur_theme, 0x0000FF);
  EXPECT_EQ(sk.lblRes.ForeColor.get(), 0x0000FF);
  EXPECT_EQ(sk.Contour.BorderColor.get(), 0x0000FF);
  EXPECT_EQ(sk.PicSplash(0).BackColor.get(), 0x0000FF);
  EXPECT_EQ(sk.PicSplash(0).ForeColor.get(), 0);
  EXPECT_EQ(sk.Pictitre.canvas.colour_at(5, 14), 0x0000FF);
  EXPECT_EQ(sk.Pictitre.canvas.colour_at(5, 0).value_or(-1) & 0xFFFF00, 0);
  const platform::Canvas thumbnail = *sk.ImLst_Vig(1)->pixels;
  choose({});
  EXPECT_EQ(scene.journal("ShowColor").back(), "ShowColor 255") << "opens on the present colour";
  EXPECT_EQ(scene.programme.theme().couleur_theme, 0x0000FF);
  EXPECT_EQ(*sk.ImLst_Vig(1)->pixels, thumbnail);
  // White turns the theme black on the way; the texts stay white until the next choice.
  choose({0xFFFFFF});
  EXPECT_EQ(scene.programme.theme().couleur_theme, 0);
  EXPECT_EQ(sk.lblRes.ForeColor.get(), 0xFFFFFF);
  EXPECT_EQ(sk.Pictitre.canvas.colour_at(5, 14), 0xFFFFFF);
  EXPECT_EQ(sk.PicRes.canvas.colour_at(5, 14), 0);
  choose({0xFEFFFF});
  EXPECT_EQ(scene.programme.theme().couleur_theme, 0xFEFFFF);
}

}  // namespace
