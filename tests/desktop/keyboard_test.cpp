// The user's keyboard: keys that the window hears, text that boxes take in, and what handlers make of both.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/desktop/stage.h"

namespace {

using platform::TextBox;
using testing::ElementsAre;

class KeyboardTest : public testing::Test {
 protected:
  void type(const std::vector<unsigned long>& keys) {
    for (const unsigned long key : keys) stage.user->type(key);
  }

  // Without a window manager, which could hold keys back until it has looked at them.
  Stage stage{{.window_manager = false}};
  TestForm form;
};

TEST_F(KeyboardTest, TheWindowHearsEveryKeyByItsCode) {
  std::vector<std::string> heard;
  const auto note = [&](const char* what) {
    return [&heard, what](int& code, int& shift) {
      heard.push_back(what + std::to_string(code) + (shift != 0 ? " shift " + std::to_string(shift) : ""));
    };
  };
  form.KeyDown = note("down ");
  form.KeyUp = note("up ");
  const auto news = [&] {
    stage.settle(form);
    return std::exchange(heard, {});
  };
  stage.show(form);
  news();
  const std::pair<unsigned long, int> keys[] = {{XK_c, 67},   {XK_5, 53},        {XK_Return, 13}, {XK_Escape, 27},
                                                {XK_F4, 115}, {XK_Left, 37},     {XK_Delete, 46}, {XK_space, 32},
                                                {XK_Tab, 9},  {XK_BackSpace, 8}, {XK_Prior, 33},  {XK_KP_Add, 107}};
  for (const auto& [key, code] : keys) {
    stage.user->type(key);
    EXPECT_THAT(news(), ElementsAre("down " + std::to_string(code), "up " + std::to_string(code)));
  }
  stage.user->key_down(XK_Control_L);
  stage.user->type(XK_c);
  stage.user->key_up(XK_Control_L);
  EXPECT_THAT(news(), ElementsAre("down 17 shift 2", "down 67 shift 2", "up 67 shift 2", "up 17"));
}

TEST_F(KeyboardTest, ATypedTextIsTheBoxesTextAndSelection) {
  TextBox line(form, "line", twips(10, 10, 150, 20));
  TextBox lines(form, "lines", twips(10, 40, 150, 60));
  lines.MultiLine = true;
  lines.Text = "déjà\r\nlà";
  lines.Visible = false;
  std::vector<int> typed;
  int keys = 0;
  lines.KeyPress = [&](int& key) { typed.push_back(key); };
  form.KeyDown = [&](int&, int&) { ++keys; };
  stage.show(form);
  keys = 0;
  line.SetFocus();
  type({XK_a, XK_b, XK_Return});
  EXPECT_TRUE(stage.until([&] { return keys == 3; })) << "the window hears of keys that go to a box";
  EXPECT_EQ(line.Text.get(), "ab");
  EXPECT_EQ(line.SelStart, 2);

  lines.Visible = true;
  lines.SelStart = 1;
  lines.SelLength = 5;  // a line end is two characters
  lines.SetFocus();
  type({XK_x, XK_Return, XK_y});
  EXPECT_TRUE(stage.until([&] { return lines.Text.get() == "dx\r\nylà"; })) << lines.Text.get();
  EXPECT_EQ(lines.SelStart, 5);
  EXPECT_THAT(typed, ElementsAre('x', 13, 'y'));
  lines.Text = "à neuf";
  EXPECT_EQ(lines.SelStart, 0);
}

TEST_F(KeyboardTest, AHandlerSwallowsAKeyOrMakesAnotherOfIt) {
  TextBox line(form, "line", twips(10, 10, 150, 20));
  line.KeyPress = [](int& key) { key = key == 'a' ? 0 : key == 'b' ? 'B' : key; };
  form.KeyDown = [](int& code, int&) { code = code == 'C' ? 0 : code; };
  int form_presses = 0;
  form.KeyPress = [&](int&) { ++form_presses; };
  stage.show(form);
  line.SetFocus();
  type({XK_a, XK_b, XK_c, XK_d});
  EXPECT_TRUE(stage.until([&] { return line.Text.get() == "Bd"; })) << line.Text.get();
  EXPECT_EQ(form_presses, 0) << "a box with the keyboard has its keys to itself";
}

TEST_F(KeyboardTest, AFormWithoutBoxesHearsWhatIsTypedAndMayGoAtIt) {
  TextBox store(form, "store", twips(1000, 10, 150, 20));  // out of sight, and out of the keyboard's way
  stage.show(form);
  std::vector<int> typed;
  form.KeyPress = [&](int& key) {
    typed.push_back(key);
    if (key == 27) stage.services().windows.unload(form);
  };
  type({XK_Tab, XK_a, XK_Escape, XK_b});
  EXPECT_TRUE(stage.until([&] { return form.hWnd == 0; }));
  EXPECT_THAT(typed, ElementsAre(9, 'a', 27));
  EXPECT_EQ(store.Text.get(), "");
}

}  // namespace
