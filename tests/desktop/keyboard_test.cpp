// The user's keyboard: keys that the window hears, text that boxes take in, and what handlers make of both.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/desktop/stage.h"

namespace {

using platform::TextBox;
using testing::ElementsAre;

class KeyboardTest : public testing::Test {
 protected:
  void note_keys() {
    form.KeyDown = note("down");
    form.KeyUp = note("up");
  }
  platform::KeyHandler note(const char* what) {
    return [this, what](int& code, int& shift) {
      heard.push_back(std::string(what) + " " + std::to_string(code) +
                      (shift != 0 ? " shift " + std::to_string(shift) : ""));
    };
  }
  std::vector<std::string> news() {
    stage.settle(form);
    return std::exchange(heard, {});
  }

  // Without a window manager, which could hold keys back until it has looked at them.
  Stage stage{{.window_manager = false}};
  TestForm form;
  std::vector<std::string> heard;
};

TEST_F(KeyboardTest, TheWindowHearsEveryKeyByItsCode) {
  note_keys();
  stage.show(form);
  news();
  const struct {
    unsigned long keysym;
    int code;
  } keys[] = {{XK_c, 67},      {XK_5, 53},     {XK_Return, 13}, {XK_Escape, 27},   {XK_F4, 115},   {XK_Left, 37},
              {XK_Delete, 46}, {XK_space, 32}, {XK_Tab, 9},     {XK_BackSpace, 8}, {XK_Prior, 33}, {XK_KP_Add, 107}};
  for (const auto& key : keys) {
    stage.user->type(key.keysym);
    EXPECT_THAT(news(), ElementsAre("down " + std::to_string(key.code), "up " + std::to_string(key.code)));
  }
  stage.user->key_down(XK_Control_L);
  stage.user->type(XK_c);
  stage.user->key_up(XK_Control_L);
  EXPECT_THAT(news(), ElementsAre("down 17 shift 2", "down 67 shift 2", "up 67 shift 2", "up 17"));
  stage.user->type(XK_Shift_L);
  EXPECT_THAT(news(), ElementsAre("down 16 shift 1", "up 16"));
}

TEST_F(KeyboardTest, ATypedTextIsTheBoxesTextAndSelection) {
  TextBox line(form, "line", twips(10, 10, 150, 20));
  TextBox lines(form, "lines", twips(10, 40, 150, 60));
  lines.MultiLine = true;
  lines.Text = "déjà\r\nlà";
  lines.Visible = false;
  std::vector<int> typed;
  lines.KeyPress = [&](int& key) { typed.push_back(key); };
  note_keys();
  stage.show(form);
  line.SetFocus();
  for (const unsigned long key : {XK_a, XK_b, XK_Return}) stage.user->type(key);
  EXPECT_TRUE(stage.until([&] { return line.Text.get() == "ab" && line.SelStart == 2; }));
  EXPECT_THAT(news(), testing::SizeIs(6)) << "the window hears of keys that go to a box";

  lines.Visible = true;
  lines.SelStart = 1;
  lines.SelLength = 5;  // a line end is two characters
  lines.SetFocus();
  for (const unsigned long key : {XK_x, XK_Return, XK_y}) stage.user->type(key);
  EXPECT_TRUE(stage.until([&] { return lines.Text.get() == "dx\r\nylà"; })) << lines.Text.get();
  EXPECT_EQ(lines.SelStart, 5);
  EXPECT_THAT(typed, ElementsAre('x', 13, 'y'));

  lines.Text = "à neuf";
  EXPECT_EQ(lines.SelStart, 0);
  stage.user->key_down(XK_Shift_L);
  stage.user->type(XK_End);
  stage.user->key_up(XK_Shift_L);
  EXPECT_TRUE(stage.until([&] { return lines.SelLength == 6; })) << lines.SelLength;
  EXPECT_EQ(lines.Text.get(), "à neuf");
}

TEST_F(KeyboardTest, AHandlerSwallowsAKeyOrMakesAnotherOfIt) {
  TextBox line(form, "line", twips(10, 10, 150, 20));
  line.KeyPress = [](int& key) {
    if (key == 'a') key = 0;
    if (key == 'b') key = 'B';
  };
  form.KeyDown = [](int& code, int&) {
    if (code == 'C') code = 0;
  };
  int form_presses = 0;
  form.KeyPress = [&](int&) { ++form_presses; };
  stage.show(form);
  line.SetFocus();
  for (const unsigned long key : {XK_a, XK_b, XK_c, XK_d}) stage.user->type(key);
  EXPECT_TRUE(stage.until([&] { return line.Text.get().find('d') != std::string::npos; }));
  EXPECT_EQ(line.Text.get(), "Bd");
  EXPECT_EQ(form_presses, 0) << "a box with the keyboard has its keys to itself";
}

TEST_F(KeyboardTest, AFormWithoutBoxesHearsWhatIsTypedAndMayGoAtIt) {
  stage.show(form);
  std::vector<int> typed;
  form.KeyPress = [&](int& key) {
    typed.push_back(key);
    if (key == 27) stage.services().windows.unload(form);
  };
  for (const unsigned long key : {XK_a, XK_Shift_L, XK_Escape, XK_b}) stage.user->type(key);
  EXPECT_TRUE(stage.until([&] { return form.hWnd == 0; }));
  for (int i = 0; i < 3; ++i) stage.services().events.DoEvents();
  EXPECT_THAT(typed, ElementsAre('a', 27));
}

TEST_F(KeyboardTest, ABoxOutOfSightHoldsItsTextWithoutAWindow) {
  TextBox store(form, "store", twips(1000, 10, 150, 20));
  store.Text = "un magasin";
  TextBox box(form, "box", twips(10, 10, 150, 20));
  stage.show(form);
  stage.user->type(XK_Tab);
  stage.user->type(XK_Tab);
  stage.user->type(XK_z);
  EXPECT_TRUE(stage.until([&] { return box.Text.get() == "z"; })) << "Tab finds nothing else";
  EXPECT_EQ(store.Text.get(), "un magasin");
  store.Left = 10 * 15.0F;
  store.Top = 50 * 15.0F;
  store.SetFocus();
  stage.user->type(XK_End);
  stage.user->type(XK_s);
  EXPECT_TRUE(stage.until([&] { return store.Text.get() == "un magasins"; })) << store.Text.get();
}

}  // namespace
