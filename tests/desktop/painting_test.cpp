// What the screen shows of a form: places, colours, order, texts.
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

Label& painted(Label& label, std::int32_t colour) {
  label.BackStyle = platform::opaque;
  label.BackColor = colour;
  return label;
}

// Every kind of painted thing, at its edges: the last pixel inside and the first outside.
class LayoutTest : public testing::TestWithParam<int> {};

TEST_P(LayoutTest, EverythingLiesOnItsPixels) {
  const int scale = GetParam();
  Stage stage({.scale = std::to_string(scale)});
  TestForm form;
  Shape frame(form, "frame", twips(0, 0, TestForm::width, TestForm::height));
  frame.BorderColor = green;
  Label panel(form, "panel", twips(20, 10, 40, 30));
  painted(panel, red);
  Shape filled(form, "filled", twips(40, 20, 40, 30));
  filled.BackStyle = platform::opaque;
  filled.BackColor = blue;
  filled.BorderStyle = platform::border_none;
  Line rule(form, "rule", {0, 100 * 15, 200 * 15, 100 * 15});
  rule.BorderColor = red;
  PictureBox box(form, "box", twips(100, 10, 50, 40));
  box.BackColor = blue;
  box.DrawWidth = 3;
  Label inside(box, "inside", twips(40, 30, 30, 30));
  painted(inside, green);
  Label under(form, "under", twips(140, 10, 30, 10));
  painted(under, red);
  Label hidden(form, "hidden", twips(0, 110, 200, 30));
  painted(hidden, red).Visible = false;
  Shape rounded(form, "rounded", twips(10, 60, 40, 30));
  rounded.rounded = true;
  rounded.BorderColor = green;
  stage.show(form);
  box.PSet(10, 10, red);
  box.Refresh();

  const struct {
    int x, y;  // of the design
    std::int32_t colour;
    const char* what;
  } probes[] = {
      {0, 0, green, "the frame's corner"},
      {199, 149, green, "the frame's other corner"},
      {1, 1, 0, "the frame is one pixel wide"},
      {20, 10, red, "the panel's corner"},
      {19, 10, 0, "left of the panel"},
      {20, 40, 0, "below the panel"},
      {39, 20, red, "the panel beside the filled shape"},
      {40, 20, blue, "later controls lie in front"},
      {79, 49, blue, "the shape's other corner"},
      {80, 49, 0, "right of the shape"},
      {90, 100, red, "the rule"},
      {90, 99, 0, "above the rule"},
      {90, 101, 0, "below the rule"},
      {149, 15, blue, "a box is in front of a label made after it"},
      {150, 15, red, "the label beside the box"},
      {140, 40, green, "a label on the box"},
      {150, 49, 0, "a box cuts off what lies on it"},
      {110, 20, red, "the middle of a dot"},
      {109, 20, red, "a dot is three pixels wide"},
      {108, 20, blue, "and no more"},
      {100, 120, 0, "hidden"},
      {10, 60, 0, "a corner that is cut off"},
      {30, 60, green, "a rounded outline"},
      {30, 61, 0, "and its inside"},
  };
  for (const auto& probe : probes) {
    const auto seen =
        stage.user->pixels((TestForm::left + probe.x) * scale, (TestForm::top + probe.y) * scale, scale, scale);
    const auto rgb =
        static_cast<std::uint32_t>((probe.colour & 0xFF) << 16 | (probe.colour & 0xFF00) | probe.colour >> 16);
    EXPECT_EQ(seen.front(), rgb) << probe.what << std::hex << " " << seen.front();
    EXPECT_EQ(seen.back(), rgb) << probe.what << std::hex << " " << seen.back();
  }
}

INSTANTIATE_TEST_SUITE_P(Densities, LayoutTest, testing::Values(1, 2));

TEST(PaintingTest, AnAssignmentShowsByItself) {
  Stage stage({.window_manager = false});
  TestForm form;
  PictureBox box(form, "box", twips(50, 50, 50, 50));
  Label label(box, "label", twips(10, 10, 10, 10));
  painted(label, red);
  stage.show(form);
  const auto at = [&](int x) { return stage.pixel(TestForm::left + x, TestForm::top + 60); };
  EXPECT_EQ(at(60), 0xFF0000U);
  label.BackColor = green;
  EXPECT_TRUE(stage.until([&] { return at(60) == 0x00FF00; }));
  label.Left = 20 * 15.0F;
  EXPECT_TRUE(stage.until([&] { return at(60) == 0 && at(70) == 0x00FF00; }));
  box.Left = 0;
  EXPECT_TRUE(stage.until([&] { return at(70) == 0 && at(20) == 0x00FF00; }));
  label.BackColor = blue;
  label.Refresh();  // does not wait for events to be served
  EXPECT_EQ(at(20), 0x0000FFU);
  box.Visible = false;
  EXPECT_TRUE(stage.until([&] { return at(20) == 0; }));
}

TEST(PaintingTest, TextsStandWhereTheirLabelsPutThem) {
  Stage stage({.window_manager = false});
  TestForm form;
  const auto add = [&](int top, const char* text, platform::Alignment alignment, int height) {
    auto label = std::make_unique<Label>(form, "label", twips(50, top, 100, height));
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

  // The box around all that is not black in an area of the form; empty where all of it is.
  struct Ink {
    int left = 1000, right = -1, bottom = -1;
  };
  const auto ink = [&](int x, int y, int width, int height) {
    const auto pixels = stage.user->pixels(TestForm::left + x, TestForm::top + y, width, height);
    Ink result;
    for (int i = 0; i < width * height; ++i) {
      if (pixels[static_cast<std::size_t>(i)] == 0) continue;
      result.left = std::min(result.left, i % width);
      result.right = std::max(result.right, i % width);
      result.bottom = i / width;
    }
    return result;
  };
  EXPECT_LE(ink(50, 0, 100, 20).left, 2);
  EXPECT_LE(ink(50, 0, 100, 20).bottom, 14) << "one line at the top";
  EXPECT_GE(ink(50, 20, 100, 20).right, 97);
  EXPECT_NEAR(ink(50, 40, 100, 20).left, 99 - ink(50, 40, 100, 20).right, 2);
  EXPECT_GE(ink(50, 76, 100, 14).right, 0) << "the text goes on in a second line";
  EXPECT_GE(ink(50, 90, 100, 24).bottom, 17) << "CR LF begins a line";
  EXPECT_LE(ink(50, 90, 100, 24).bottom, 22) << "lines close up where their label is low";
  EXPECT_GE(ink(50, 114, 100, 20).right, 97);
  EXPECT_LT(ink(150, 0, 50, TestForm::height).right, 0) << "nothing stands outside of the labels";
}

}  // namespace
