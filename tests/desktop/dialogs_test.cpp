// Boxes that ask: their answers, their texts, and that nothing of ours hides them.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "tests/desktop/stage.h"

namespace {

using namespace platform;

// Shows a box from a posted task and lets a user act on it once it has the keyboard.
class DialogsTest : public testing::Test {
 protected:
  DialogsTest() : timer(form, "timer", 5, true) {
    form.Left = 300 * 15.0F;
    stage.show(form);
    stage.services().windows.SetWindowPos(form.hWnd, HWND_TOPMOST, 0, 0, 0, 0, 0x53);
  }

  // The box on the screen, 0 while there is none: the active window that is not the form.
  Window box() const {
    const Window root = DefaultRootWindow(stage.display);
    const auto active = stage.property(root, "_NET_ACTIVE_WINDOW");
    const auto there = stage.property(root, "_NET_CLIENT_LIST");  // the last window stays active when it has gone
    if (active.empty() || active.front() == form.hWnd) return 0;
    return std::find(there.begin(), there.end(), active.front()) == there.end() ? 0 : active.front();
  }
  template <class Result>
  Result ask(const std::function<Result()>& question, const std::function<void(Window)>& act) {
    Result answer{};
    bool acted = false;
    bool answered = false;
    timer.Elapsed = [&] {
      if (acted || box() == 0) return;
      acted = true;
      act(box());
    };
    stage.services().events.post([&] {
      answer = question();
      answered = true;
    });
    EXPECT_TRUE(stage.until([&] { return answered; }));
    EXPECT_TRUE(stage.until([&] { return box() == 0; }));
    return answer;
  }
  int message(int style, const std::function<void(Window)>& act) {
    return ask<int>([&, style] { return stage.services().dialogs.MsgBox("Êtes-vous sûr?", style, "Essai"); }, act);
  }
  std::function<void(Window)> keys(const std::vector<unsigned long>& all) {
    return [this, all](Window) {
      for (const unsigned long key : all) stage.user->type(key);
    };
  }
  std::function<void(Window)> close() {
    return [this](Window window) { stage.send(DefaultRootWindow(stage.display), window, "_NET_CLOSE_WINDOW", {}); };
  }

  Stage stage;
  TestForm form;
  Timer timer;
};

TEST_F(DialogsTest, EveryWayOutHasItsAnswer) {
  const struct {
    int style;
    int answer;
    std::vector<unsigned long> keys;  // none: the box is closed by the window manager
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
    SCOPED_TRACE(testing::Message() << "style " << one.style << ", " << one.keys.size() << " keys");
    EXPECT_EQ(message(one.style, one.keys.empty() ? close() : keys(one.keys)), one.answer);
  }
}

TEST_F(DialogsTest, ABoxStandsInFrontAndKeepsTheFormFromTheUser) {
  int presses = 0;
  int ticks = 0;
  form.MouseDown = [&](const MouseEvent&) { ++presses; };
  Timer other(form, "other", 1, false);
  stage.services().windows.unload(form);
  stage.show(form);
  stage.services().windows.SetWindowPos(form.hWnd, HWND_TOPMOST, 0, 0, 0, 0, 0x53);
  other.Elapsed = [&] { ++ticks; };
  message(vbYesNo, [&](Window window) {
    EXPECT_TRUE(test_support::eventually([&] { return stage.has_state(window, "_NET_WM_STATE_ABOVE"); }));
    EXPECT_EQ(stage.property(window, "WM_TRANSIENT_FOR"), std::vector<unsigned long>{form.hWnd});
    const auto stacking = stage.property(DefaultRootWindow(stage.display), "_NET_CLIENT_LIST_STACKING");
    EXPECT_EQ(stacking.back(), window);
    other.Enabled = true;
    stage.user->move_to(305, 60);
    stage.user->click(1);
    EXPECT_TRUE(stage.until([&] { return ticks > 3; })) << "the rest of the program goes on";
    other.Enabled = false;
    EXPECT_EQ(presses, 0);
    stage.user->type(XK_Escape);
  });
}

TEST_F(DialogsTest, TheFormMayGoWhileItsBoxIsOpen) {
  EXPECT_EQ(message(vbYesNo, [&](Window) { stage.services().windows.unload(form); }), vbNo);
}

TEST_F(DialogsTest, ATextIsAskedFor) {
  const auto input = [&](const std::function<void(Window)>& act) {
    return ask<std::string>([&] { return stage.services().dialogs.InputBox("Nom du patron:", "Essai", "Départ"); },
                            act);
  };
  EXPECT_EQ(input(keys({XK_Return})), "Départ");
  EXPECT_EQ(input(keys({XK_a, XK_b, XK_Return})), "ab") << "what is offered is replaced by typing";
  EXPECT_EQ(input(keys({XK_End, XK_s, XK_Return})), "Départs");
  EXPECT_EQ(input(keys({XK_a, XK_Escape})), "");
  EXPECT_EQ(input(close()), "");
}

}  // namespace
