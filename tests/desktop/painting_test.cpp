// What the screen shows of a form: places, colours, order, texts.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "tests/desktop/stage.h"

namespace {

using platform::Label;
using platform::Line;
using platform::PictureBox;
using platform::Shape;

constexpr std::int32_t red = 0x0000FF;  // red is in the low byte
constexpr std::int32_t green = 0x00FF00;
constexpr std::int32_t blue = 0xFF0000;
constexpr std::uint32_t seen_red = 0xFF0000;  // 0xRRGGBB
constexpr std::uint32_t seen_green = 0x00FF00;
constexpr std::uint32_t seen_blue = 0x0000FF;
constexpr std::uint32_t seen_black = 0;

// The box around all pixels of an area of the form that are not black.
struct Ink {
  int left = 1000, top = 1000, right = -1, bottom = -1;
  bool none() const { return right < 0; }
};

class PaintingTest : public testing::Test {
 protected:
  // A pixel of the form, in the screen's pixels from its corner.
  std::uint32_t at(Stage& stage, int x, int y, int scale = 1) const {
    return stage.pixel(TestForm::left * scale + x, TestForm::top * scale + y);
  }
  Ink ink(Stage& stage, int left, int top, int width, int height) const {
    const auto pixels = stage.user->pixels(TestForm::left + left, TestForm::top + top, width, height);
    Ink result;
    for (int i = 0; i < width * height; ++i) {
      if (pixels[static_cast<std::size_t>(i)] == 0) continue;
      result.left = std::min(result.left, i % width);
      result.right = std::max(result.right, i % width);
      result.top = std::min(result.top, i / width);
      result.bottom = std::max(result.bottom, i / width);
    }
    return result;
  }
};

// Every kind of painted thing, its edges between two pixels: the first inside and the first outside.
void check_layout(const std::string& scale_factor, int scale) {
  Stage stage({.scale = scale_factor});
  TestForm form;
  Shape frame(form, "frame", twips(0, 0, TestForm::width, TestForm::height));
  frame.BorderColor = green;
  Label panel(form, "panel", twips(20, 10, 40, 30));
  panel.BackStyle = platform::opaque;
  panel.BackColor = red;
  Shape filled(form, "filled", twips(40, 20, 40, 30));  // over the label
  filled.BackStyle = platform::opaque;
  filled.BackColor = blue;
  filled.BorderStyle = platform::border_none;
  Line rule(form, "rule", {0, 100 * 15, 200 * 15, 100 * 15});
  rule.BorderColor = red;
  PictureBox box(form, "box", twips(100, 10, 50, 40));
  box.BackColor = blue;
  box.DrawWidth = 3;
  Label inside(box, "inside", twips(40, 30, 30, 30));  // cut off by its box
  inside.BackStyle = platform::opaque;
  inside.BackColor = green;
  Label under(form, "under", twips(140, 10, 30, 10));  // made later, but a box is in front of what is painted
  under.BackStyle = platform::opaque;
  under.BackColor = red;
  Label hidden(form, "hidden", twips(0, 110, 200, 30));
  hidden.BackStyle = platform::opaque;
  hidden.BackColor = red;
  hidden.Visible = false;
  stage.show(form);
  EXPECT_EQ(box.canvas.density(), scale);
  box.PSet(10, 10, red);
  stage.settle(form);
  box.Refresh();

  const auto pixel = [&](int x, int y) { return stage.pixel(TestForm::left * scale + x, TestForm::top * scale + y); };
  // The first or last pixel of each thing, and its neighbour outside, in the pixels of the design.
  const auto first = [&](int x) { return x * scale; };
  const auto last = [&](int x) { return (x + 1) * scale - 1; };
  EXPECT_EQ(pixel(0, 0), seen_green);
  EXPECT_EQ(pixel(last(199), last(149)), seen_green);
  EXPECT_EQ(pixel(first(1), first(1)), seen_black);
  EXPECT_EQ(pixel(first(20), first(10)), seen_red);
  EXPECT_EQ(pixel(last(19), first(10)), seen_black);
  EXPECT_EQ(pixel(first(20), last(39)), seen_red);
  EXPECT_EQ(pixel(first(20), first(40)), seen_black);
  EXPECT_EQ(pixel(last(39), first(20)), seen_red);
  EXPECT_EQ(pixel(first(40), first(20)), seen_blue) << "later controls lie in front";
  EXPECT_EQ(pixel(last(79), last(49)), seen_blue);
  EXPECT_EQ(pixel(first(80), last(49)), seen_black);
  EXPECT_EQ(pixel(first(90), first(100)), seen_red);
  EXPECT_EQ(pixel(first(90), last(99)), seen_black);
  EXPECT_EQ(pixel(first(90), first(101)), seen_black);
  EXPECT_EQ(pixel(first(100), first(10)), seen_blue);
  EXPECT_EQ(pixel(last(149), first(15)), seen_blue) << "a box is in front of a label";
  EXPECT_EQ(pixel(first(150), first(15)), seen_red);
  EXPECT_EQ(pixel(first(140), first(40)), seen_green);
  EXPECT_EQ(pixel(last(149), last(49)), seen_green);
  EXPECT_EQ(pixel(first(150), last(49)), seen_black) << "a box cuts off what lies on it";
  EXPECT_EQ(pixel(first(110), first(20)), seen_red) << "the middle of the dot";
  EXPECT_EQ(pixel(first(109), first(20)), seen_red);
  EXPECT_EQ(pixel(first(108) - 1, first(20)), seen_blue);
  EXPECT_EQ(pixel(first(100), first(120)), seen_black) << "hidden";
}

TEST_F(PaintingTest, EverythingLiesOnItsPixels) {
  check_layout("1", 1);
}

TEST_F(PaintingTest, ADenseScreenShowsTheSameTwiceAsLarge) {
  check_layout("2", 2);
}

TEST_F(PaintingTest, AnAssignmentShowsByItself) {
  Stage stage;
  TestForm form;
  PictureBox box(form, "box", twips(50, 50, 50, 50));
  Label label(box, "label", twips(10, 10, 10, 10));
  label.BackStyle = platform::opaque;
  label.BackColor = red;
  stage.show(form);
  EXPECT_EQ(at(stage, 60, 60), seen_red);

  label.BackColor = green;
  EXPECT_TRUE(stage.until([&] { return at(stage, 60, 60) == seen_green; }));
  label.Left = 20 * 15.0F;
  EXPECT_TRUE(stage.until([&] { return at(stage, 60, 60) == seen_black && at(stage, 70, 60) == seen_green; }));
  box.Left = 0;
  EXPECT_TRUE(stage.until([&] { return at(stage, 70, 60) == seen_black && at(stage, 20, 60) == seen_green; }));
  box.Visible = false;
  EXPECT_TRUE(stage.until([&] { return at(stage, 20, 60) == seen_black; }));
  // Refresh does not wait for events to be served.
  box.Visible = true;
  stage.settle(form);
  label.BackColor = blue;
  label.Refresh();
  XSync(stage.display, False);
  EXPECT_EQ(at(stage, 20, 60), seen_blue);
}

TEST_F(PaintingTest, TextsStandWhereTheirLabelsPutThem) {
  Stage stage;
  TestForm form;
  const auto add = [&](int row, const char* text, platform::Alignment alignment, int height) {
    auto label = std::make_unique<Label>(form, "label", twips(50, row, 100, height));
    label->Caption = text;
    label->ForeColor = green;
    label->Alignment = alignment;
    return label;
  };
  const auto left = add(0, "Été", platform::Alignment::left, 20);
  const auto right = add(20, "Été", platform::Alignment::right, 20);
  const auto centre = add(40, "Été", platform::Alignment::centre, 20);
  const auto wrapped = add(60, "Supprimer le patron choisi", platform::Alignment::left, 30);
  const auto lines = add(90, "Un\r\nDeux", platform::Alignment::left, 24);
  const auto endless = add(114, "WWWWWWWWWWWWWWWWWWWWWWWW", platform::Alignment::left, 20);
  stage.show(form);

  const Ink at_left = ink(stage, 50, 0, 100, 20);
  const Ink at_right = ink(stage, 50, 20, 100, 20);
  const Ink centred = ink(stage, 50, 40, 100, 20);
  EXPECT_LE(at_left.left, 2);
  EXPECT_LT(at_left.right, 40);
  EXPECT_GE(at_right.right, 97);
  EXPECT_GT(at_right.left, 60);
  EXPECT_NEAR(centred.left, 99 - centred.right, 2);
  EXPECT_LE(at_left.bottom, 14) << "one line at the top";
  EXPECT_FALSE(ink(stage, 50, 60, 100, 13).none());
  EXPECT_FALSE(ink(stage, 50, 76, 100, 13).none()) << "the text goes on in a second line";
  const Ink two = ink(stage, 50, 90, 100, 24);
  EXPECT_GE(two.bottom, 17) << "CR LF begins a line";
  EXPECT_LE(two.bottom, 22) << "lines close up where their label is low";
  EXPECT_FALSE(ink(stage, 50, 114, 100, 20).none());
  EXPECT_TRUE(ink(stage, 0, 0, 50, TestForm::height).none()) << "nothing stands outside of the labels";
  EXPECT_TRUE(ink(stage, 150, 0, 50, TestForm::height).none());
}

TEST_F(PaintingTest, ShapesAreRoundedDottedOrLeftOut) {
  Stage stage;
  TestForm form;
  Shape rounded(form, "rounded", twips(10, 10, 40, 40));
  rounded.rounded = true;
  rounded.BorderColor = green;
  Shape dotted(form, "dotted", twips(60, 10, 40, 40));
  dotted.BorderStyle = platform::border_dotted;
  dotted.BorderColor = green;
  Shape none(form, "none", twips(110, 10, 40, 40));
  none.BorderStyle = platform::border_none;
  none.BorderColor = green;
  stage.show(form);

  EXPECT_EQ(at(stage, 10, 10), seen_black) << "a corner that is cut off";
  EXPECT_EQ(at(stage, 30, 10), seen_green);
  EXPECT_EQ(at(stage, 49, 30), seen_green);
  EXPECT_EQ(at(stage, 30, 11), seen_black);
  const auto side = stage.user->pixels(TestForm::left + 60, TestForm::top + 10, 40, 1);
  const auto drawn = std::count(side.begin(), side.end(), seen_green);
  EXPECT_GT(drawn, 12);
  EXPECT_LT(drawn, 28);
  EXPECT_TRUE(ink(stage, 105, 5, 50, 50).none());
}

}  // namespace
