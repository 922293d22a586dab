// Boxes that ask, and menus: their answers, and that nothing of ours hides them.
#include <gtest/gtest.h>

#include <QApplication>
#include <QWidget>
#include <QWindow>

#include "tests/desktop/stage.h"

namespace {

using namespace platform;
using Act = std::function<void(Window)>;
using Keys = std::vector<unsigned long>;

// Opens a box from a posted task and lets a user act on it once it has the keyboard.
class DialogsTest : public FormTest {
 protected:
  DialogsTest() : FormTest(With()) {
    show(form);
    windows.SetWindowPos(form.hWnd, HWND_TOPMOST, 0, 0, 0, 0, 0x53);
  }
  // The box on the screen, 0 while there is none: the active window that is not the form.
  Window box() const {
    if (active() == form.hWnd) return 0;
    // The last window stays active when it has gone.
    return std::ranges::count(root_property("_NET_CLIENT_LIST"), active()) == 0 ? 0 : active();
  }
  void ask(const std::function<void()>& question, const Act& act) {
    bool answered = false;
    const auto asking = [this] {
      const QWidget* menu = QApplication::activePopupWidget();
      return menu != nullptr && menu->windowHandle()->isExposed() ? menu->winId() : box();
    };
    when([&] { return asking() != 0; }, [&] { act(asking()); });
    services().events.post([&] { question(), answered = true; });
    EXPECT_TRUE(until([&] { return answered && (box() == 0 || services().events.ended()); }));
  }
  int message(int style, const Act& act) {
    int answer = 0;
    ask([&] { answer = services().dialogs.MsgBox("Êtes-vous sûr?", style, "Essai"); }, act);
    return answer;
  }
  // Without keys the window manager closes the box.
  Act typing(const Keys& keys) {
    return [this, keys](Window window) { keys.empty() ? tell_manager(window, "_NET_CLOSE_WINDOW") : type(keys); };
  }
};

TEST_F(DialogsTest, EveryWayOutHasItsAnswer) {
  const struct {
    int style;
    int answer;
    Act act;
  } cases[] = {{vbYesNo | vbInformation, vbYes, typing({XK_Return})},
               {vbYesNo, vbNo, typing({XK_Tab, XK_space})},
               {vbYesNo, vbNo, typing({XK_Escape})},
               {vbYesNo | vbInformation | vbSystemModal, vbNo, typing({})},
               {vbOKCancel, vbOK, typing({XK_Return})},
               {vbOKCancel, vbCancel, typing({XK_Escape})},
               {vbOKCancel | vbCritical, vbCancel, typing({})},
               {vbCritical | vbSystemModal, vbOK, typing({XK_space})},
               {vbInformation, vbOK, typing({})},
               {vbYesNo, vbNo, [&](Window) { windows.unload(form); }}};
  for (const auto& one : cases) EXPECT_EQ(message(one.style, one.act), one.answer) << &one - cases;
}

TEST_F(DialogsTest, ABoxStandsInFrontAndKeepsTheFormFromTheUser) {
  form.MouseDown = [](const MouseEvent&) { ADD_FAILURE(); };
  int keys = 0;
  form.KeyDown = [&](int&, int&) { ++keys; };
  message(vbYesNo, [&](Window window) {
    EXPECT_TRUE(stage::eventually([&] { return has_state(window, "_NET_WM_STATE_ABOVE"); }));
    EXPECT_EQ(property(window, "WM_TRANSIENT_FOR"), Keys{form.hWnd});
    EXPECT_EQ(root_property("_NET_CLIENT_LIST_STACKING").back(), window);
    move(5, 5);
    user->click(1);
    send(form.hWnd, form.hWnd, hook_report_atom, {hook_key_down, key_stroke});
    EXPECT_TRUE(until([&] { return keys == 1; })) << "the rest of the program goes on";
    type({XK_Escape});
  });
}

TEST_F(DialogsTest, ATextOrAColourIsTakenOnlyWhenItIsConfirmed) {
  const std::pair<const char*, Keys> texts[] = {{"Départ", {XK_Return}},
                                                {"ab", {XK_a, XK_b, XK_Return}},  // replaces what is offered
                                                {"", {XK_a, XK_Escape}},
                                                {"", {}}};
  for (const auto& [text, keys] : texts) {
    std::string answer;
    ask([&] { answer = services().dialogs.InputBox("Nom du patron:", "Essai", "Départ"); }, typing(keys));
    EXPECT_EQ(answer, text) << keys.size();
  }
  ColourDialog colours(form, "colours");
  const std::pair<int, Act> cases[] = {
      {0x1080F0, typing({XK_Return})},
      {0x1080F0, typing({XK_space, XK_Escape})},
      {0x000000, typing({XK_space, XK_Return})},
      {0x1080F0, [&](Window) { type({XK_space}), settle(form), services().events.End(0); }}};
  for (const auto& one : cases) {
    colours.Color = 0x1080F0;
    ask([&] { services().dialogs.ShowColor(colours); }, one.second);
    EXPECT_EQ(colours.Color, one.first) << &one - cases;
  }
}

TEST_F(DialogsTest, AMenuWorksWithNoWindowOnTheScreen) {
  MenuItem first("Voir"), line("-"), ticked("Pause"), last("Exit");
  const std::vector<MenuItem*> entries{&first, &line, &ticked, &last};
  std::string chosen;
  for (MenuItem* entry : entries) entry->Click = [&, entry] { chosen += entry->Caption; };
  ticked.Checked = true;
  windows.Hide(form);
  // A click so far from the lower right corner of the menu.
  const auto click = [&](const QPoint& distance) {
    return [&, distance](Window /*menu*/) {
      const QPoint at = QApplication::activePopupWidget()->geometry().bottomRight() + distance;
      user->move_to(at.x(), at.y()), user->click(1);
    };
  };
  const std::pair<std::string, Act> cases[] = {{"Voir", typing({XK_Down, XK_Return})},
                                               {"Pause", typing({XK_Down, XK_Down, XK_Return})},
                                               {"", typing({XK_Down, XK_Escape})},
                                               {"Exit", click({-10, -8})},
                                               {"", click({50, -50})},
                                               {"", [&](Window) { services().events.End(0); }}};
  for (const auto& one : cases) {
    chosen.clear();
    user->move_to(400, 300);
    ask([&] { services().dialogs.PopupMenu(entries); }, one.second);
    EXPECT_EQ(chosen, one.first) << &one - cases;
  }
}

}  // namespace
