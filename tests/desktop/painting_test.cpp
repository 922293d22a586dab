// What the screen shows of a form: places, colours, order, texts; and what a screen reader is told of it.
#include <gtest/gtest.h>

#include <QWidget>

#include "tests/desktop/stage.h"

namespace {

using platform::Label;
using platform::PictureBox;
using platform::Shape;

constexpr std::int32_t red = 0x0000FF;  // red is in the low byte
constexpr std::int32_t green = 0x00FF00;
constexpr std::int32_t blue = 0xFF0000;

// A label as a field of one colour.
struct Field : Label {
  template <class Parent>
  Field(Parent& parent, const platform::Rectangle& place, std::int32_t colour) : Label(parent, "field", place) {
    BackStyle = platform::opaque;
    BackColor = colour;
  }
};

// Every kind of painted thing, at its edges: the last pixel inside and the first outside.
class LayoutTest : public FormTest, public testing::WithParamInterface<int> {
 protected:
  LayoutTest() : FormTest({.scale = std::to_string(GetParam())}) {}
};

TEST_P(LayoutTest, EverythingLiesOnItsPixels) {
  Shape frame(form, "frame", twips(0, 0, TestForm::width, TestForm::height));
  frame.BorderColor = green;
  const Field panel(form, twips(20, 10, 40, 30), red);
  Shape filled(form, "filled", twips(40, 20, 40, 30));
  filled.BackStyle = platform::opaque;
  filled.BackColor = blue;
  filled.BorderStyle = platform::border_none;
  platform::Line rule(form, "rule", {0, 100 * 15, 200 * 15, 100 * 15});
  rule.BorderColor = red;
  PictureBox box(form, "box", twips(100, 10, 50, 40));
  box.BackColor = blue;
  box.DrawWidth = 3;
  const Field inside(box, twips(40, 30, 30, 30), green), under(form, twips(140, 10, 30, 10), red);
  Field hidden(form, twips(0, 110, 200, 30), red);
  hidden.Visible = false;
  Shape rounded(form, "rounded", twips(10, 60, 40, 30));
  rounded.rounded = true;
  rounded.BorderColor = green;
  show(form);
  box.PSet(10, 10, red);
  box.Refresh();

  const struct {
    int x, y;  // of the design
    std::int32_t colour;
    const char* what;
  } probes[] = {{0, 0, green, "the frame's corner"},
                {1, 1, 0, "the frame is one pixel wide"},
                {20, 10, red, "the panel's corner"},
                {19, 10, 0, "left of the panel"},
                {40, 20, blue, "later controls lie in front"},
                {79, 49, blue, "the shape's other corner"},
                {90, 100, red, "the rule"},
                {90, 101, 0, "below the rule"},
                {149, 15, blue, "a box is in front of labels"},
                {140, 40, green, "a label on the box"},
                {150, 49, 0, "a box cuts off what lies on it"},
                {109, 20, red, "a dot of three pixels"},
                {108, 20, blue, "beside the dot"},
                {100, 120, 0, "hidden"},
                {10, 60, 0, "a rounded corner"},
                {30, 60, green, "a rounded outline"}};
  for (const auto& [x, y, colour, what] : probes) {
    const int scale = GetParam();
    const auto seen = user->pixels((TestForm::left + x) * scale, (TestForm::top + y) * scale, scale, scale);
    const auto rgb = static_cast<std::uint32_t>((colour & 0xFF) << 16 | (colour & 0xFF00) | colour >> 16);
    EXPECT_TRUE(seen.front() == rgb && seen.back() == rgb) << what << std::hex << " " << seen.front();
  }
}

INSTANTIATE_TEST_SUITE_P(Densities, LayoutTest, testing::Values(1, 2));

using PaintingTest = FormTest;

TEST_F(PaintingTest, AnAssignmentShowsByItself) {
  PictureBox box(form, "box", twips(50, 50, 50, 50));
  Field field(box, twips(10, 10, 10, 10), red);
  show(form);
  EXPECT_EQ(at(60, 60), 0xFF0000U);
  field.BackColor = green;
  EXPECT_TRUE(until([&] { return at(60, 60) == 0x00FF00; }));
  field.Left = 20 * 15.0F;
  EXPECT_TRUE(until([&] { return at(60, 60) == 0 && at(70, 60) == 0x00FF00; }));
  box.Left = 0;
  EXPECT_TRUE(until([&] { return at(70, 60) == 0 && at(20, 60) == 0x00FF00; }));
  field.BackColor = blue;
  field.Refresh();  // does not wait for events to be served
  EXPECT_EQ(at(20, 60), 0x0000FFU);
  box.Visible = false;
  EXPECT_TRUE(until([&] { return at(20, 60) == 0; }));
}

TEST_F(PaintingTest, TextsStandWhereTheirLabelsPutThem) {
  std::vector<std::unique_ptr<Label>> labels;
  const auto add = [&](float top, float height, const char* text, platform::Alignment alignment = {}) {
    auto& label = *labels.emplace_back(std::make_unique<Label>(form, "label", twips(50, top, 100, height)));
    label.Caption = text;
    label.ForeColor = green;
    label.Alignment = alignment;
  };
  add(0, 20, "Été");
  add(20, 20, "Été", platform::Alignment::right);
  add(40, 20, "Été", platform::Alignment::centre);
  add(60, 30, "Supprimer le patron choisi");
  add(90, 24, "Un\r\nDeux");
  add(114, 20, "WWWWWWWWWWWWWWWWWWWWWWWW");
  show(form);

  // Whether something stands in an area of the form.
  const auto ink = [&](int x, int y, int width, int height) {
    const auto pixels = user->pixels(TestForm::left + x, TestForm::top + y, width, height);
    return std::ranges::any_of(pixels, [](std::uint32_t colour) { return colour != 0; });
  };
  EXPECT_TRUE(ink(50, 0, 3, 20) && !ink(50, 15, 100, 5)) << "one line, at the top left";
  EXPECT_TRUE(ink(147, 20, 3, 20) && !ink(50, 20, 50, 20)) << "at the right";
  EXPECT_TRUE(ink(98, 40, 4, 20) && !ink(50, 40, 33, 20) && !ink(117, 40, 33, 20)) << "in the middle";
  EXPECT_TRUE(ink(50, 76, 100, 14)) << "the text goes on in a second line";
  EXPECT_TRUE(ink(50, 107, 100, 6)) << "CR LF begins a line";
  EXPECT_FALSE(ink(50, 113, 100, 1)) << "lines close up where their label is low";
  EXPECT_TRUE(ink(147, 114, 3, 20) && !ink(150, 0, 50, TestForm::height)) << "nothing stands outside of the labels";
}

}  // namespace
