// Boxes that ask: their answers, and that nothing of ours hides them.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "tests/desktop/stage.h"

namespace {

using namespace platform;

using Act = std::function<void(Window)>;

// Opens a box from a posted task and lets a user act on it once it has the keyboard.
class DialogsTest : public testing::Test {
 protected:
  DialogsTest() {
    stage.show(form);
    stage.services().windows.SetWindowPos(form.hWnd, HWND_TOPMOST, 0, 0, 0, 0, 0x53);
  }

  // The box on the screen, 0 while there is none: the active window that is not the form.
  Window box() const {
    const auto active = stage.active();
    const auto there = stage.property(DefaultRootWindow(stage.display), "_NET_CLIENT_LIST");
    if (active.empty() || active.front() == form.hWnd) return 0;
    // The last window stays active when it has gone.
    return std::find(there.begin(), there.end(), active.front()) == there.end() ? 0 : active.front();
  }
  void ask(const std::function<void()>& question, const Act& act) {
    bool answered = false;
    timer.Elapsed = [&] {
      if (box() == 0) return;
      timer.Enabled = false;
      act(box());
    };
    timer.Enabled = true;
    stage.services().events.post([&] {
      question();
      answered = true;
    });
    EXPECT_TRUE(stage.until([&] { return answered && box() == 0; }));
  }
  int message(int style, const Act& act) {
    int answer = 0;
    ask([&] { answer = stage.services().dialogs.MsgBox("Êtes-vous sûr?", style, "Essai"); }, act);
    return answer;
  }
  // Types keys; without any, has the window manager close the box.
  Act user(const std::vector<unsigned long>& keys) {
    return [this, keys](Window window) {
      for (const unsigned long key : keys) stage.user->type(key);
      if (keys.empty()) stage.tell_manager(window, "_NET_CLOSE_WINDOW");
    };
  }

  Stage stage;
  TestForm form;
  Timer timer{form, "timer", 5, false};
};

TEST_F(DialogsTest, EveryWayOutHasItsAnswer) {
  const struct {
    int style;
    int answer;
    std::vector<unsigned long> keys;
  } cases[] = {
      {vbYesNo | vbInformation, vbYes, {XK_Return}},
      {vbYesNo, vbNo, {XK_Tab, XK_space}},
      {vbYesNo, vbNo, {XK_Escape}},
      {vbYesNo | vbInformation | vbSystemModal, vbNo, {}},
      {vbOKCancel, vbOK, {XK_Return}},
      {vbOKCancel, vbCancel, {XK_Escape}},
      {vbOKCancel | vbCritical, vbCancel, {}},
      {vbCritical | vbSystemModal, vbOK, {XK_space}},
      {vbInformation, vbOK, {}},
  };
  for (const auto& one : cases) {
    EXPECT_EQ(message(one.style, user(one.keys)), one.answer) << one.style << " " << one.keys.size();
  }
}

TEST_F(DialogsTest, ABoxStandsInFrontAndKeepsTheFormFromTheUser) {
  form.MouseDown = [](const MouseEvent&) { ADD_FAILURE(); };
  int keys = 0;
  form.KeyDown = [&](int&, int&) { ++keys; };
  message(vbYesNo, [&](Window window) {
    EXPECT_TRUE(test_support::eventually([&] { return stage.has_state(window, "_NET_WM_STATE_ABOVE"); }));
    EXPECT_EQ(stage.property(window, "WM_TRANSIENT_FOR"), std::vector<unsigned long>{form.hWnd});
    EXPECT_EQ(stage.property(DefaultRootWindow(stage.display), "_NET_CLIENT_LIST_STACKING").back(), window);
    stage.user->move_to(TestForm::left + 5, TestForm::top + 5);
    stage.user->click(1);
    stage.send(form.hWnd, form.hWnd, hook_report_atom, {hook_key_down, key_stroke});
    EXPECT_TRUE(stage.until([&] { return keys == 1; })) << "the rest of the program goes on";
    stage.user->type(XK_Escape);
  });
}

TEST_F(DialogsTest, TheFormMayGoWhileItsBoxIsOpen) {
  EXPECT_EQ(message(vbYesNo, [&](Window) { stage.services().windows.unload(form); }), vbNo);
}

TEST_F(DialogsTest, ATextIsAskedFor) {
  const auto input = [&](const std::vector<unsigned long>& keys) {
    std::string answer;
    ask([&] { answer = stage.services().dialogs.InputBox("Nom du patron:", "Essai", "Départ"); }, user(keys));
    return answer;
  };
  EXPECT_EQ(input({XK_Return}), "Départ");
  EXPECT_EQ(input({XK_a, XK_b, XK_Return}), "ab") << "what is offered is replaced by typing";
  EXPECT_EQ(input({XK_a, XK_Escape}), "");
  EXPECT_EQ(input({}), "");
}

}  // namespace
