// The user's mouse: which control hears of it, what it is told, and in which order.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <memory>

#include "tests/desktop/stage.h"

namespace {

using platform::Label;
using platform::MouseEvent;
using platform::PictureBox;
using testing::ElementsAre;

// Notes what controls hear: "name down 1 15,30", the button or the sum of those held, and the place; then Shift if any.
class MouseTest : public testing::Test {
 protected:
  MouseTest() {
    form.MouseDown = note("form down");
    form.MouseUp = note("form up");
    form.MouseMove = note("form move");
  }

  platform::MouseHandler note(const std::string& what) {
    return [this, what](const MouseEvent& event) {
      heard.push_back(what + " " + std::to_string(event.Button) + " " + std::to_string(std::lround(event.X)) + "," +
                      std::to_string(std::lround(event.Y)) +
                      (event.Shift != 0 ? " shift " + std::to_string(event.Shift) : ""));
    };
  }
  void listen(platform::Control& control) {
    control.MouseDown = note(control.Name + " down");
    control.MouseUp = note(control.Name + " up");
    control.MouseMove = note(control.Name + " move");
    control.Click = [this, &control] { heard.push_back(control.Name + " click"); };
  }
  // To a pixel of the form.
  void move(int x, int y) { stage.user->move_to(TestForm::left + x, TestForm::top + y); }
  // What has been heard since the last call.
  std::vector<std::string> news() {
    stage.settle(form);
    return std::exchange(heard, {});
  }
  void start() {
    stage.show(form);
    news();
  }

  // Without a window manager, which would hold clicks back until it has looked at them.
  Stage stage{{.window_manager = false}};
  TestForm form;
  std::vector<std::string> heard;
};

TEST_F(MouseTest, TheForemostLabelIsHitAndOnlyLabelsAre) {
  Label back(form, "back", twips(10, 10, 50, 50));
  Label front(form, "front", twips(40, 40, 50, 50));
  platform::Shape shape(form, "shape", twips(10, 10, 180, 130));
  platform::Line line(form, "line", {0, 0, 200 * 15, 150 * 15});
  PictureBox box(form, "box", twips(80, 80, 40, 40));
  Label inner(box, "inner", twips(20, 20, 10, 10));
  Label hidden(form, "hidden", twips(10, 10, 20, 20));
  hidden.Visible = false;
  for (platform::Control* control :
       std::initializer_list<platform::Control*>{&back, &front, &shape, &box, &inner, &hidden}) {
    listen(*control);
  }
  start();
  const auto press_at = [&](int x, int y) {
    move(x, y);
    news();
    stage.user->click(1);
    const auto all = news();
    return all.empty() ? "nothing" : all.front();
  };
  EXPECT_EQ(press_at(15, 15), "back down 1 75,75");
  EXPECT_EQ(press_at(45, 45), "front down 1 75,75");
  EXPECT_EQ(press_at(5, 20), "form down 1 75,300");
  EXPECT_EQ(press_at(150, 100), "form down 1 2250,1500") << "shapes and lines are not hit";
  EXPECT_EQ(press_at(85, 85), "box down 1 75,75") << "a box is in front of labels";
  EXPECT_EQ(press_at(105, 105), "inner down 1 75,75");
  front.Visible = false;
  EXPECT_EQ(press_at(45, 45), "back down 1 525,525");
}

TEST_F(MouseTest, PressReleaseAndClickComeInOrderWithButtonsAndShift) {
  Label label(form, "label", twips(10, 10, 50, 50));
  listen(label);
  start();
  move(20, 20);
  EXPECT_THAT(news(), ElementsAre("label move 0 150,150"));
  stage.user->click(1);
  EXPECT_THAT(news(), ElementsAre("label down 1 150,150", "label up 1 150,150", "label click"));
  stage.user->click(2);
  EXPECT_THAT(news(), ElementsAre("label down 4 150,150", "label up 4 150,150")) << "only the left button clicks";
  stage.user->press(3);
  stage.user->press(1);
  move(21, 20);
  stage.user->release(3);
  stage.user->release(1);
  EXPECT_THAT(news(), ElementsAre("label down 2 150,150", "label down 1 150,150", "label move 3 165,150",
                                  "label up 2 165,150", "label up 1 165,150", "label click"));
  stage.user->key_down(XK_Shift_L);
  stage.user->key_down(XK_Control_L);
  move(22, 20);
  stage.user->key_up(XK_Control_L);
  stage.user->key_up(XK_Shift_L);
  EXPECT_THAT(news(), ElementsAre("label move 0 180,150 shift 3"));
}

TEST_F(MouseTest, WhatIsPressedHearsOfTheMouseUntilTheRelease) {
  Label label(form, "label", twips(10, 10, 20, 20));
  PictureBox box(form, "box", twips(50, 10, 40, 40));
  listen(label);
  listen(box);
  start();
  move(15, 15);
  news();
  stage.user->press(1);
  move(60, 20);
  EXPECT_THAT(news(), ElementsAre("label down 1 75,75", "label move 1 750,150"));
  move(-5, 15);
  stage.user->release(1);
  EXPECT_THAT(news(), ElementsAre("label move 1 -225,75", "label up 1 -225,75"))
      << "and a release elsewhere is no click";
  move(60, 20);
  EXPECT_THAT(news(), ElementsAre("box move 0 150,150"));
}

TEST_F(MouseTest, WhatCanBeDrawnOnReportsInItsOwnScale) {
  PictureBox box(form, "box", twips(50, 10, 40, 40));
  Label label(box, "label", twips(20, 20, 20, 20));
  listen(box);
  listen(label);
  box.ScaleMode = platform::scale_pixels;
  start();
  move(60, 15);
  EXPECT_THAT(news(), ElementsAre("box move 0 10,5"));
  move(75, 35);
  EXPECT_THAT(news(), ElementsAre("label move 0 75,75")) << "a label has no scale of its own";
  move(10, 10);
  EXPECT_THAT(news(), ElementsAre("form move 0 150,150"));
  form.ScaleMode = platform::scale_pixels;
  move(11, 10);
  EXPECT_THAT(news(), ElementsAre("form move 0 11,10"));
}

TEST_F(MouseTest, ASecondPressSoonAfterIsADoubleClickWhereOneIsAskedFor) {
  Label with(form, "with", twips(10, 10, 20, 20));
  Label without(form, "without", twips(100, 10, 20, 20));
  listen(with);
  listen(without);
  with.DblClick = [&] { heard.emplace_back("with double"); };
  start();
  const auto twice = [&](int x, int y) {
    move(x, y);
    news();
    stage.user->click(1);
    stage.user->click(1);
    auto all = news();
    for (std::string& line : all) line.resize(std::min(line.size(), line.find_first_of("0123456789")));
    return all;
  };
  EXPECT_THAT(twice(15, 15), ElementsAre("with down ", "with up ", "with click", "with double", "with up "));
  EXPECT_THAT(twice(105, 15), ElementsAre("without down ", "without up ", "without click", "without down ",
                                          "without up ", "without click"));
}

// A help text that rolls does so inside the click that started it, and lives on further clicks.
TEST_F(MouseTest, AClickThatYieldsLetsOtherClicksIn) {
  Label roll(form, "roll", twips(10, 10, 20, 20));
  Label stop(form, "stop", twips(50, 10, 20, 20));
  PictureBox box(form, "box", twips(100, 10, 40, 40));
  listen(stop);
  listen(box);
  bool rolling = false;
  bool stopped_inside = false;
  roll.Click = [&] {
    rolling = true;
    stopped_inside = stage.until([&] { return !rolling; });
  };
  start();
  stop.Click = [&] { rolling = false; };
  // The whole tale is told from a timer, since nothing returns from the click before it is over.
  platform::Timer timer(form, "timer", 1, false);
  int step = 0;
  timer.Elapsed = [&] {
    if (!rolling) return;
    if (step == 0) move(110, 20);
    if (step == 1 && !heard.empty()) move(55, 15);
    if (step == 2 && heard.size() > 1) stage.user->click(1);
    if (step == static_cast<int>(heard.size())) ++step;
  };
  move(15, 15);
  news();
  timer.Enabled = true;
  stage.user->click(1);
  ASSERT_TRUE(stage.until([&] { return stopped_inside; }));
  timer.Enabled = false;
  EXPECT_THAT(news(), ElementsAre("box move 0 150,150", "stop move 0 75,75", "stop down 1 75,75", "stop up 1 75,75"))
      << "nothing of the first press sticks to them";
}

TEST_F(MouseTest, AHandlerMayUnloadTheFormItBelongsTo) {
  auto other = std::make_unique<TestForm>("Autre");
  other->Left = 600 * 15.0F;
  auto label = std::make_unique<Label>(*other, "label", twips(10, 10, 20, 20));
  listen(*label);
  label->MouseUp = [&](const MouseEvent&) {
    stage.services().windows.unload(*other);
    label.reset();
    other.reset();
  };
  start();
  stage.show(*other);
  stage.user->move_to(615, TestForm::top + 15);
  stage.user->click(1);
  ASSERT_TRUE(stage.until([&] { return other == nullptr; }));
  stage.user->move_to(616, TestForm::top + 15);
  stage.user->click(1);
  move(3, 3);
  EXPECT_THAT(news(), ElementsAre("label move 0 75,75", "label down 1 75,75", "form move 0 45,45"))
      << "no click behind the end of the form";
}

// The window follows the pointer by as much as the pointer has moved on it since the last event; the user does not wait
// for the window to get there.
TEST_F(MouseTest, AWindowDraggedByTheProgramStaysUnderThePointer) {
  Label bar(form, "bar", twips(0, 0, 200, 20));
  float from_x = 0;
  float from_y = 0;
  int moves = 0;
  bar.MouseDown = [&](const MouseEvent& event) {
    from_x = event.X;
    from_y = event.Y;
  };
  bar.MouseMove = [&](const MouseEvent& event) {
    if (event.Button != 1) return;
    ++moves;
    if (moves < 20) move(30 + 30 * (moves + 1), 10 + 10 * (moves + 1));
    const float left = form.Left - (from_x - event.X);
    const float top = form.Top - (from_y - event.Y);
    form.Left = left;
    form.Top = top;
  };
  start();
  move(30, 10);
  stage.user->press(1);
  move(60, 20);
  ASSERT_TRUE(stage.until([&] { return moves == 20; }));
  stage.user->release(1);
  stage.settle(form);
  EXPECT_EQ(form.Left, (TestForm::left + 600) * 15.0F);
  EXPECT_EQ(form.Top, (TestForm::top + 200) * 15.0F);
  int x = 0;
  int y = 0;
  Window child = None;
  XTranslateCoordinates(stage.display, form.hWnd, DefaultRootWindow(stage.display), 0, 0, &x, &y, &child);
  EXPECT_EQ(x, TestForm::left + 600);
  EXPECT_EQ(y, TestForm::top + 200);
}

TEST_F(MouseTest, ATextBoxTellsOfTheMouseAndUsesItToo) {
  platform::TextBox box(form, "box", twips(10, 10, 150, 20));
  box.Text = "un texte";
  listen(box);
  start();
  move(15, 20);
  stage.user->click(1);
  EXPECT_THAT(news(), ElementsAre("box move 0 75,150", "box down 1 75,150", "box up 1 75,150", "box click"));
  stage.user->type(XK_x);
  EXPECT_TRUE(stage.until([&] { return box.Text.get().find('x') != std::string::npos && box.Text.get().size() == 9; }));
}

}  // namespace
