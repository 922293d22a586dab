// The user's mouse and keyboard: which control hears of them, what it is told, and what handlers make of it.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QApplication>
#include <QDropEvent>
#include <QLineEdit>
#include <QMimeData>
#include <QUrl>
#include <filesystem>
#include <fstream>

#include "tests/desktop/stage.h"

namespace {

namespace fs = std::filesystem;
using namespace platform;
using testing::ElementsAre;
using Told = std::vector<std::string>;

// Notes what controls hear: "name down 1 15,30", the button or the sum of those held, and the place; then Shift if any.
class MouseTest : public FormTest {
 protected:
  MouseHandler note(const std::string& what) {
    return [this, what](const MouseEvent& event) {
      heard.push_back(what + " " + std::to_string(event.Button) + " " + std::to_string(std::lround(event.X)) + "," +
                      std::to_string(std::lround(event.Y)) +
                      (event.Shift != 0 ? "^" + std::to_string(event.Shift) : ""));
    };
  }
  void listen(const std::vector<Control*>& controls) {
    for (Control* control : controls) {
      control->MouseDown = note(control->Name + " down");
      control->MouseUp = note(control->Name + " up");
      control->MouseMove = note(control->Name);
      control->Click = [this, control] { heard.push_back(control->Name + " click"); };
    }
  }
  Told over(const std::vector<std::pair<int, int>>& points) {
    for (const auto& [x, y] : points) move(x, y), settle(form);
    return news();
  }
  Told clicking(int button, int times = 1) {
    for (int n = 0; n < times; ++n) user->click(button);
    return news();
  }
};

TEST_F(MouseTest, TheForemostLabelIsHitAndReportsInItsScale) {
  Label back(form, "back", twips(10, 10, 50, 50)), front(form, "front", twips(40, 40, 50, 50));
  Shape shape(form, "shape", twips(10, 10, 180, 130));
  Line line(form, "line", {0, 0, 200 * 15, 150 * 15});
  PictureBox box(form, "box", twips(80, 80, 40, 40));
  Label inner(box, "inner", twips(20, 20, 10, 10)), hidden(form, "hidden", twips(10, 10, 20, 20));
  hidden.Visible = false;
  listen({&back, &front, &shape, &line, &box, &inner, &hidden});
  form.MouseMove = note("form");
  show(form);
  // Shapes and lines are not hit; a box is in front of labels.
  EXPECT_EQ(over({{15, 15}, {45, 45}, {150, 100}, {85, 85}, {105, 105}}),
            Told({"back 0 75,75", "front 0 75,75", "form 0 2250,1500", "box 0 75,75", "inner 0 75,75"}));
  front.Visible = false;
  box.ScaleMode = scale_pixels;
  form.ScaleMode = scale_pixels;
  // A label has no scale of its own.
  EXPECT_EQ(over({{45, 45}, {85, 90}, {105, 104}, {150, 100}}),
            Told({"back 0 525,525", "box 0 5,10", "inner 0 75,60", "form 0 150,100"}));
}

TEST_F(MouseTest, WhatIsPressedHearsOfTheMouseUntilTheRelease) {
  Label label(form, "label", twips(10, 10, 20, 20));
  PictureBox box(form, "box", twips(50, 10, 40, 40));
  listen({&label, &box});
  show(form);
  over({{15, 15}});
  EXPECT_EQ(clicking(2), Told({"label down 4 75,75", "label up 4 75,75"})) << "only the left button clicks";
  user->press(3);
  user->press(1);
  EXPECT_EQ(over({{60, 20}}), Told({"label down 2 75,75", "label down 1 75,75", "label 3 750,150"}));
  user->release(3);
  user->release(1);
  EXPECT_EQ(news(), Told({"label up 2 750,150", "label up 1 750,150", "box 0 150,150"}))
      << "no click beside what was pressed, and what lies under the pointer hears of it";
  for (const auto key : {XK_Shift_L, XK_Control_L}) user->key_down(key);
  EXPECT_EQ(over({{61, 20}}), Told{"box 0 165,150^3"});
  for (const auto key : {XK_Shift_L, XK_Control_L}) user->key_up(key);

  over({{15, 15}});
  const std::string down = "label down 1 75,75", up = "label up 1 75,75", click = "label click";
  EXPECT_EQ(clicking(1, 2), Told({down, up, click, down, up, click}));
  over({{16, 15}, {15, 15}});
  label.DblClick = [&] { heard.emplace_back("double"); };
  EXPECT_EQ(clicking(1, 2), Told({down, up, click, "double", up})) << "where one is asked for";
}

// A help text that rolls does so inside the click that started it, and lives on further clicks.
TEST_F(MouseTest, AClickThatYieldsLetsOtherClicksInAndAHandlerMayUnloadItsForm) {
  Label roll(form, "roll", twips(10, 10, 20, 20)), stop(form, "stop", twips(50, 10, 20, 20));
  bool stopped = false, returned = false;
  roll.Click = [&] {
    move(55, 15);
    user->click(1);
    returned = until([&] { return stopped; });
  };
  show(form);
  stop.MouseMove = note("stop");
  stop.Click = [&] { stopped = true; };
  move(15, 15);
  user->click(1);
  ASSERT_TRUE(until([&] { return returned; }));
  EXPECT_EQ(news(), Told{"stop 0 75,75"}) << "nothing of the first press sticks";

  std::optional<TestForm> other(std::in_place);
  std::optional<Label> label(std::in_place, *other, "label", twips(10, 100, 20, 20));
  listen({&*label});
  label->MouseUp = [&](const MouseEvent&) {
    windows.unload(*other);
    label.reset();
    other.reset();
  };
  show(*other);
  move(15, 105);
  user->click(1);
  ASSERT_TRUE(until([&] { return !other; }));
  EXPECT_EQ(news(), Told({"label 0 75,75", "label down 1 75,75"})) << "no click behind the end of the form";
}

using KeyboardTest = FormTest;

TEST_F(KeyboardTest, TheWindowHearsEveryKeyByItsCode) {
  const auto note = [this](const std::string& what) {
    return [this, what](int& code, int& shift) {
      heard.push_back(what + std::to_string(code) + (shift != 0 ? "^" + std::to_string(shift) : ""));
    };
  };
  form.KeyDown = note("down ");
  form.KeyUp = note("up ");
  show(form);
  news();
  const std::pair<unsigned long, int> keys[] = {{XK_c, 67},      {XK_5, 53},        {XK_Return, 13}, {XK_Escape, 27},
                                                {XK_F4, 115},    {XK_Left, 37},     {XK_Tab, 9},     {XK_space, 32},
                                                {XK_Delete, 46}, {XK_BackSpace, 8}, {XK_Prior, 33},  {XK_KP_Add, 107}};
  for (const auto& [key, code] : keys) {
    type({key});
    EXPECT_EQ(news(), Told({"down " + std::to_string(code), "up " + std::to_string(code)}));
  }
  user->key_down(XK_Control_L);
  type({XK_c});
  user->key_up(XK_Control_L);
  EXPECT_EQ(news(), Told({"down 17^2", "down 67^2", "up 67^2", "up 17"}));
}

TEST_F(KeyboardTest, ATypedTextIsTheBoxesTextAndSelection) {
  TextBox line(form, "line", twips(10, 10, 150, 20)), lines(form, "lines", twips(10, 40, 150, 60));
  lines.MultiLine = true;
  lines.Text = "déjà\r\nlà";
  lines.Visible = false;
  std::vector<int> typed;
  lines.KeyPress = [&](int& key) { typed.push_back(key); };
  show(form);
  const auto typing = [&](TextBox& box, const std::vector<unsigned long>& keys) {
    box.SetFocus();
    type(keys);
    settle(form);
    return box.Text.get() + " " + std::to_string(box.SelStart);
  };
  EXPECT_EQ(typing(line, {XK_a, XK_b, XK_Return}), "ab 2");
  lines.Visible = true;
  lines.SelStart = 1;
  lines.SelLength = 5;  // a line end is two characters
  EXPECT_EQ(typing(lines, {XK_x, XK_Return, XK_y}), "dx\r\nylà 5");
  EXPECT_THAT(typed, ElementsAre('x', 13, 'y'));
  lines.Text = "à neuf";
  EXPECT_EQ(lines.SelStart, 0);
  lines.SelStart = 2;
  lines.SelLength = 3;
  EXPECT_EQ(lines.SelText(), "neu");
  lines.SelText("l'œu");
  EXPECT_EQ(typing(lines, {XK_x}), "à l'œuxf 7") << "the caret stands behind it";
}

TEST_F(KeyboardTest, AHandlerMakesOfAKeyWhatItWantsAndMayEndItsForm) {
  TextBox line(form, "line", twips(10, 10, 150, 20));
  line.KeyPress = [](int& key) { key = key == 'a' ? 0 : key == 'b' ? 'B' : key; };
  form.KeyDown = [](int& code, int&) { code = code == 'C' ? 0 : code; };
  std::vector<int> typed;
  form.KeyPress = [&](int& key) {
    typed.push_back(key);
    if (key == 27) windows.unload(form);
  };
  show(form);
  line.SetFocus();
  type({XK_a, XK_b, XK_c, XK_d});
  settle(form);
  EXPECT_EQ(line.Text.get(), "Bd");
  EXPECT_THAT(typed, ElementsAre()) << "a box with the keyboard has its keys to itself";

  line.Left = 1000 * 15.0F;  // out of sight, and out of the keyboard's way
  windows.unload(form);
  show(form);
  type({XK_Tab, XK_x, XK_Escape, XK_y});
  EXPECT_TRUE(until([&] { return form.hWnd == 0; }));
  EXPECT_THAT(typed, ElementsAre(9, 'x', 27));
  EXPECT_EQ(line.Text.get(), "Bd");
}

// Boxes that take file names: completion while typing, and files dropped.
class FilesTest : public FormTest {
 protected:
  FilesTest() {
    fs::create_directories(home / "mes images");
    setenv("HOME", home.c_str(), 1);
    for (const char* name : {"abc", "mes images/lac.png", "mes images/loup.png"}) std::ofstream(home / name) << name;
    box.takes_files = true;
    box.KeyPress = [this](int& key) { pressed.push_back(key); };
    show(form);
    box.SetFocus();
  }
  ~FilesTest() override { fs::remove_all(home); }
  // What the program hears of keys.
  std::vector<int> pressing(const std::vector<unsigned long>& keys) {
    type(keys);
    settle(form);
    return std::exchange(pressed, {});
  }

  const fs::path home = fs::temp_directory_path() / ("files-" + std::to_string(getpid()));
  TextBox box{form, "box", twips(10, 10, 180, 20)};
  std::vector<int> pressed;
};

TEST_F(FilesTest, ATypedPathIsCompletedAndTheListsKeysAreItsOwn) {
  box.Text = "x ~/";
  box.SelStart = 4;
  EXPECT_THAT(pressing({XK_a, XK_Return}), ElementsAre('a', 13)) << "what is offered stands in nobody's way";
  EXPECT_EQ(box.Text.get(), "x ~/a");
  EXPECT_THAT(pressing({XK_BackSpace, XK_a, XK_Tab}), ElementsAre(8, 'a')) << "takes the first";
  EXPECT_EQ(box.Text.get(), "x ~/abc");
  EXPECT_THAT(pressing({XK_Return}), ElementsAre(13)) << "nothing is offered any more";
  EXPECT_THAT(pressing({XK_BackSpace, XK_Escape}), ElementsAre(8)) << "closes the list";
  EXPECT_THAT(pressing({XK_Escape}), ElementsAre(27));
  EXPECT_EQ(box.Text.get(), "x ~/ab");

  box.Text = "~/";
  box.SelStart = 2;
  pressing({XK_m, XK_Tab});
  const std::string folder = "\"" + home.string() + "/mes images/";
  EXPECT_EQ(box.Text.get(), folder + "\"") << "a quoted ~ would not be the home folder";
  EXPECT_THAT(pressing({XK_l, XK_Down, XK_Down, XK_Return}), ElementsAre('l'));
  EXPECT_EQ(box.Text.get(), folder + "loup.png\"");
  user->key_down(XK_Control_L);
  EXPECT_THAT(pressing({XK_z}), ElementsAre(26));
  user->key_up(XK_Control_L);
  EXPECT_EQ(box.Text.get(), folder + "l\"") << "as any typing it can be undone";
}

TEST_F(FilesTest, ADroppedFileReplacesTheText) {
  auto* line = QWidget::find(form.hWnd)->findChild<QLineEdit*>();
  for (const auto& [file, quote] : {std::pair("abc", ""), std::pair("mes images/lac.png", "\"")}) {
    const std::string path = home / file;
    QMimeData dragged;
    dragged.setUrls({QUrl("https://example.org/x"), QUrl::fromLocalFile(QString::fromStdString(path))});
    QDragEnterEvent enter(QPoint(5, 5), Qt::CopyAction | Qt::MoveAction, &dragged, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(line, &enter);
    QDropEvent drop(QPointF(5, 5), Qt::CopyAction | Qt::MoveAction, &dragged, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(line, &drop);
    EXPECT_EQ(box.Text.get(), quote + path + quote);
    EXPECT_EQ(drop.dropAction(), Qt::CopyAction) << "the file stays where it is";
  }
}

}  // namespace
