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

TEST_F(MouseTest, TheForemostLabelIsHitAndReportsInItsScale) {
  Label back(form, "back", twips(10, 10, 50, 50));
  Label front(form, "front", twips(40, 40, 50, 50));
  platform::Shape shape(form, "shape", twips(10, 10, 180, 130));
  platform::Line line(form, "line", {0, 0, 200 * 15, 150 * 15});
  PictureBox box(form, "box", twips(80, 80, 40, 40));
  Label inner(box, "inner", twips(20, 20, 10, 10));
  Label hidden(form, "hidden", twips(10, 10, 20, 20));
  hidden.Visible = false;
  for (platform::Control* control :
       std::initializer_list<platform::Control*>{&back, &front, &shape, &line, &box, &inner, &hidden}) {
    listen(*control);
  }
  form.MouseMove = note("form move");
  start();
  const auto over = [&](int x, int y) {
    move(x, y);
    return news();
  };
  EXPECT_THAT(over(15, 15), ElementsAre("back move 0 75,75"));
  EXPECT_THAT(over(45, 45), ElementsAre("front move 0 75,75"));
  EXPECT_THAT(over(150, 100), ElementsAre("form move 0 2250,1500")) << "shapes and lines are not hit";
  EXPECT_THAT(over(85, 85), ElementsAre("box move 0 75,75")) << "a box is in front of labels";
  EXPECT_THAT(over(105, 105), ElementsAre("inner move 0 75,75"));
  front.Visible = false;
  EXPECT_THAT(over(45, 45), ElementsAre("back move 0 525,525"));
  box.ScaleMode = platform::scale_pixels;
  form.ScaleMode = platform::scale_pixels;
  EXPECT_THAT(over(85, 90), ElementsAre("box move 0 5,10"));
  EXPECT_THAT(over(105, 104), ElementsAre("inner move 0 75,60")) << "a label has no scale of its own";
  EXPECT_THAT(over(150, 100), ElementsAre("form move 0 150,100"));
}

TEST_F(MouseTest, WhatIsPressedHearsOfTheMouseUntilTheRelease) {
  Label label(form, "label", twips(10, 10, 20, 20));
  PictureBox box(form, "box", twips(50, 10, 40, 40));
  listen(label);
  listen(box);
  start();
  move(15, 15);
  EXPECT_THAT(news(), ElementsAre("label move 0 75,75"));
  stage.user->click(1);
  EXPECT_THAT(news(), ElementsAre("label down 1 75,75", "label up 1 75,75", "label click"));
  stage.user->click(2);
  EXPECT_THAT(news(), ElementsAre("label down 4 75,75", "label up 4 75,75")) << "only the left button clicks";
  stage.user->press(3);
  stage.user->press(1);
  move(60, 20);
  EXPECT_THAT(news(), ElementsAre("label down 2 75,75", "label down 1 75,75", "label move 3 750,150"));
  stage.user->release(3);
  stage.user->release(1);
  EXPECT_THAT(news(), ElementsAre("label up 2 750,150", "label up 1 750,150", "box move 0 150,150"))
      << "no click beside what was pressed, and what lies under the pointer hears of it";
  stage.user->key_down(XK_Shift_L);
  stage.user->key_down(XK_Control_L);
  move(61, 20);
  stage.user->key_up(XK_Control_L);
  stage.user->key_up(XK_Shift_L);
  EXPECT_THAT(news(), ElementsAre("box move 0 165,150 shift 3"));
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
  bool stopped = false;
  bool returned = false;
  roll.Click = [&] {
    move(55, 15);
    stage.user->click(1);
    returned = stage.until([&] { return stopped; });
  };
  start();
  stop.MouseMove = note("stop move");
  stop.Click = [&] { stopped = true; };
  move(15, 15);
  stage.user->click(1);
  ASSERT_TRUE(stage.until([&] { return returned; }));
  EXPECT_THAT(news(), ElementsAre("stop move 0 75,75")) << "nothing of the first press sticks";
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
  EXPECT_THAT(news(), ElementsAre("label move 0 75,75", "label down 1 75,75")) << "no click behind the end of the form";
}

// The window follows the pointer by as much as the pointer has moved on it since the last event; the user does not wait
// for the window to get there.
TEST_F(MouseTest, AWindowDraggedByTheProgramStaysUnderThePointer) {
  Label bar(form, "bar", twips(0, 0, 200, 20));
  MouseEvent pressed{};
  int moves = 0;
  bar.MouseDown = [&](const MouseEvent& event) { pressed = event; };
  bar.MouseMove = [&](const MouseEvent& event) {
    if (event.Button != 1) return;
    ++moves;
    if (moves < 20) move(30 + 30 * (moves + 1), 10 + 10 * (moves + 1));
    const float left = form.Left - (pressed.X - event.X);
    const float top = form.Top - (pressed.Y - event.Y);
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
  EXPECT_EQ(stage.place(form.hWnd), std::pair(TestForm::left + 600, TestForm::top + 200));
}

}  // namespace
