// The list under the user's hands: what chooses a row, and what is in sight.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QAbstractItemView>
#include <QScrollBar>

#include "tests/desktop/stage.h"

namespace {

using namespace platform;
using testing::ElementsAre;

class ListTest : public FormTest {
 protected:
  ListTest() {
    list.ColumnHeaders = {{"Nom", 1500}, {"Points", 450}};
    list.ItemClick = [this](int row) { clicked.push_back(row); };
    list.KeyPress = [this](int& key) { key == 13 ? clicked.push_back(-key) : void(); };
    images.Add({"", {}, std::make_shared<const Canvas>(Canvas(68, 51).on_ground(0x00FF00))});
    show(form);
  }
  // Sixty rows in each view in turn; `sideways` is the way that the view scrolls.
  void in_every_view(const std::function<void()>& check) {
    for (const auto& [view, order] : {std::pair(view_icon, arrange_left), std::pair(view_icon, arrange_top),
                                      std::pair(view_list, arrange_left), std::pair(view_report, arrange_left)}) {
      SCOPED_TRACE("view " + std::to_string(view) + ", arranged " + std::to_string(order));
      sideways = view == view_list || (view == view_icon && order == arrange_left);
      list.View = view;
      list.Arrange = order;
      build();
      clicked.clear();
      check();
    }
  }
  void build() {
    list.Clear();
    list.Icons = &images;
    for (int n = 1; n <= 60; ++n) list.Add(n, static_cast<char>('a' + n % 26) + std::to_string(n), {1, ""}, {1, ""});
    settle(form);
  }
  QAbstractItemView& shown() const {
    const auto views = QWidget::find(form.hWnd)->findChildren<QAbstractItemView*>();
    return **std::ranges::find_if(views, [](auto* v) { return v->isVisible() && !v->inherits("QHeaderView"); });
  }
  // How far the list has been scrolled, pixels, the way that it scrolls.
  int along() const { return (sideways ? shown().horizontalScrollBar() : shown().verticalScrollBar())->value(); }
  QRect cell(int row) const { return shown().visualRect(shown().model()->index(row - 1, 0)); }
  bool in_sight(int row) const { return shown().viewport()->rect().contains(cell(row)); }
  int scroll(int by) {
    EXPECT_TRUE(windows.PostMessageA(list.hWnd, LVM_SCROLL, sideways ? by : 0, sideways ? 0 : by));
    return settle(form), along();
  }
  void point_at(int x, int y) { move(x, y), settle(form); }
  void press(unsigned long key) { type({key}), settle(form); }
  // The screen's own mouse has no wheel, which is button 4 for up and 5 for down.
  void click(int button) {
    user->inject_button(button, true), user->inject_button(button, false);
    settle(form);
  }

  ImageList images{form, "images"};
  ListView list{form, "list", twips(10, 10, 180, 130)};
  std::vector<int> clicked;  // rows, and -13 for Enter
  bool sideways = false;
};

TEST_F(ListTest, ItScrollsAsAskedAndNoFurtherThanThereAreRows) {
  in_every_view([&] {
    const int unit = list.View == view_list ? cell(1).width() : 1;
    EXPECT_EQ(scroll(3), 3 * unit);
    EXPECT_TRUE(scroll(9999) > 0 && in_sight(60));
    EXPECT_TRUE(scroll(-1) > 0 && !in_sight(60)) << "no further than to the end";
    EXPECT_EQ(scroll(-9999), 0);
    point_at(100, 75);
    click(5);
    EXPECT_GE(along(), sideways ? cell(1).width() - 2 : 20) << "the wheel";
    list.EnsureVisible(60);
    const int far = along();
    list.EnsureVisible(60);
    EXPECT_TRUE(in_sight(60) && along() == far) << "where it is in sight nothing moves";
    list.select(60);
    build();
    EXPECT_TRUE(along() == 0 && !shown().selectionModel()->hasSelection()) << "a rebuilt list is at its start";
  });
}

TEST_F(ListTest, ARowIsChosenByAPressOnItOrByTheKeyboard) {
  std::vector<std::pair<float, float>> moves;
  list.MouseMove = [&](const MouseEvent& at) { at.Button == 1 ? void(moves.emplace_back(at.X, at.Y)) : void(); };
  build();
  press(XK_f);
  EXPECT_EQ(list.selected_row(), 5) << "the first name with that letter";
  in_every_view([&] {
    const QPoint corner = shown().viewport()->mapTo(QWidget::find(form.hWnd), cell(2).topLeft());
    point_at(corner.x() + 20, corner.y() + (list.View == view_icon ? 30 : 8));
    click(1);
    EXPECT_THAT(clicked, ElementsAre(2)) << "once for a click";
    moves.clear();
    user->press(1);
    for (const int at : {150, 100, 50}) point_at(at, at);
    user->release(1);
    EXPECT_THAT(moves, ElementsAre(std::pair(2100, 2100), std::pair(1350, 1350), std::pair(600, 600)));
    EXPECT_EQ(along(), 0) << "in a drag nothing scrolls but what the program does";
    point_at(corner.x() + 1, corner.y() + 1);
    if (list.View == view_icon) click(1);  // between the pictures
    user->key_down(XK_Control_L);
    press(XK_space);
    user->key_up(XK_Control_L);
    EXPECT_THAT(clicked, ElementsAre(2, 2)) << "again for a press, for nothing else";
    EXPECT_TRUE(shown().selectionModel()->isRowSelected(1));

    clicked.clear();
    for (const unsigned long key : {XK_End, XK_Home, list.Arrange == arrange_top ? XK_Right : XK_Down}) {
      press(key);
      EXPECT_TRUE(shown().viewport()->rect().contains(cell(list.selected_row()).topLeft()));
    }
    press(XK_Return);
    EXPECT_THAT(clicked, ElementsAre(60, 1, 2, -13));
  });
}

}  // namespace
