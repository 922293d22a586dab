// What a screen reader is told.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QAccessible>
#include <QApplication>
#include <QWidget>

#include "tests/desktop/stage.h"

namespace {

using testing::Contains;
using testing::Not;

void collect(QAccessibleInterface& from, std::map<std::string, QAccessibleInterface*>& found) {
  for (int i = 0; i < from.childCount(); ++i) {
    QAccessibleInterface* child = from.child(i);
    EXPECT_EQ(from.indexOfChild(child), i);
    found[child->text(QAccessible::Name).toStdString()] = child;
    collect(*child, found);
  }
}

TEST(AccessibleTest, LabelsAndBoxesAreThereByNameAndCanBePressed) {
  Stage stage({.window_manager = false});
  auto form = std::make_unique<TestForm>();
  platform::PictureBox bar(*form, "PicRes", twips(10, 20, 100, 40));
  platform::Label bare(bar, "Bouton", twips(30, 10, 20, 20));
  bare.Index = 4;
  platform::Label info(*form, "lblinfo", twips(10, 100, 100, 20));
  info.Caption = "Prêt...";
  platform::Label hidden(*form, "hidden", twips(0, 0, 20, 20));
  hidden.Visible = false;
  platform::TextBox box(*form, "Texte", twips(10, 130, 100, 20));
  int clicks = 0;
  bare.Click = [&] { ++clicks; };
  stage.show(*form);

  QWidget* window = QWidget::find(form->hWnd);
  ASSERT_NE(window, nullptr);
  std::map<std::string, QAccessibleInterface*> found;
  collect(*QAccessible::queryAccessibleInterface(window), found);
  ASSERT_THAT(found, testing::AllOf(Contains(testing::Key("PicRes")), Contains(testing::Key("Bouton4")),
                                    Contains(testing::Key("Prêt...")), Contains(testing::Key("Texte"))));
  EXPECT_THAT(found, Not(Contains(testing::Key("hidden"))));
  QAccessibleInterface& button = *found["Bouton4"];
  EXPECT_EQ(button.role(), QAccessible::PushButton);
  EXPECT_EQ(button.rect(), QRect(TestForm::left + 40, TestForm::top + 30, 20, 20));
  EXPECT_EQ(button.parent()->childAt(TestForm::left + 45, TestForm::top + 35), &button);
  button.actionInterface()->doAction(QAccessibleActionInterface::pressAction());
  EXPECT_EQ(clicks, 1);

  stage.services().windows.unload(*form);
  EXPECT_FALSE(button.isValid());
  EXPECT_EQ(button.text(QAccessible::Name), QString());
}

}  // namespace
