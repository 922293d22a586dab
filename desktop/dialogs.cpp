#include "desktop/dialogs.h"

#include <QApplication>
#include <QColorDialog>
#include <QCursor>
#include <QInputDialog>
#include <QMenu>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>
#include <QScreen>
#include <QTimer>
#include <QWindow>

#include "desktop/style.h"

namespace desktop {

namespace {

// The colours of the program's windows, reversed where the pointer is.
constexpr const char* menu_style =
    "QMenu { background: black; color: #00ff00; border: 1px solid #00ff00; padding: 2px; }"
    "QMenu::item { padding: 3px 20px 3px 6px; }"
    "QMenu::item:selected { background: #00ff00; color: black; }"
    "QMenu::separator { height: 1px; background: #00ff00; margin: 3px 4px; }";

QString text_of(std::string_view text) {
  return to_toolkit(std::string(text));
}

// Puts a dialog in front of the program's own windows, which are in front of all others, and runs it. It may go with
// the window it belongs to before this returns.
int run_in_front(QDialog& dialog) {
  // Without a button to minimise it: the program would wait for a box that nobody sees.
  dialog.setWindowFlags(Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowCloseButtonHint |
                        Qt::WindowStaysOnTopHint);
  return dialog.exec();
}

}  // namespace

int DesktopDialogs::MsgBox(std::string_view text, int style, std::string_view title) {
  constexpr int buttons_mask = 0xF;
  const int buttons = style & buttons_mask;
  const int closed = buttons == platform::vbYesNo      ? platform::vbNo
                     : buttons == platform::vbOKCancel ? platform::vbCancel
                                                       : platform::vbOK;
  if (events_.ended()) return closed;

  const QPointer<QMessageBox> box = new QMessageBox(windows_.dialog_owner());
  box->setWindowTitle(text_of(title));
  box->setTextFormat(Qt::PlainText);
  box->setText(text_of(text));
  box->setIcon((style & platform::vbInformation) != 0 ? QMessageBox::Information
               : (style & platform::vbCritical) != 0  ? QMessageBox::Critical
                                                      : QMessageBox::NoIcon);
  const auto add = [&](const char* caption, QMessageBox::ButtonRole role, int answer) {
    QPushButton* button = box->addButton(QString::fromUtf8(caption), role);
    button->setProperty("answer", answer);
    if (answer == closed) box->setEscapeButton(button);
    return button;
  };
  if (buttons == platform::vbYesNo) {
    box->setDefaultButton(add("&Oui", QMessageBox::YesRole, platform::vbYes));
    add("&Non", QMessageBox::NoRole, platform::vbNo);
  } else {
    box->setDefaultButton(add("OK", QMessageBox::AcceptRole, platform::vbOK));
    if (buttons == platform::vbOKCancel) add("Annuler", QMessageBox::RejectRole, platform::vbCancel);
  }
  run_in_front(*box);
  const QAbstractButton* pressed = box != nullptr && !events_.ended() ? box->clickedButton() : nullptr;
  const int answer = pressed != nullptr ? pressed->property("answer").toInt() : closed;
  if (box != nullptr) box->deleteLater();
  return answer;
}

std::string DesktopDialogs::InputBox(std::string_view prompt, std::string_view title, std::string_view fallback) {
  if (events_.ended()) return {};
  constexpr int width = 360;  // room for the longest name of a patron
  const QPointer<QInputDialog> box = new QInputDialog(windows_.dialog_owner());
  box->setInputMode(QInputDialog::TextInput);
  box->setWindowTitle(text_of(title));
  box->setLabelText(text_of(prompt));
  box->setTextValue(text_of(fallback));
  box->setOkButtonText(QStringLiteral("OK"));
  box->setCancelButtonText(QStringLiteral("Annuler"));
  box->resize(width, box->sizeHint().height());
  const bool accepted = run_in_front(*box) == QDialog::Accepted && box != nullptr && !events_.ended();
  std::string answer = accepted ? from_toolkit(box->textValue()) : std::string();
  if (box != nullptr) box->deleteLater();
  return answer;
}

void DesktopDialogs::ShowColor(platform::ColourDialog& dialog) {
  if (events_.ended()) return;
  const QPointer<QColorDialog> box = new QColorDialog(colour(dialog.Color), windows_.dialog_owner());
  box->setOption(QColorDialog::DontUseNativeDialog);
  box->setWindowTitle(QStringLiteral("Couleurs"));
  // The form that holds `dialog` may have gone with the box.
  if (run_in_front(*box) == QDialog::Accepted && box != nullptr && !events_.ended()) {
    dialog.Color = value_of(box->selectedColor());
  }
  if (box != nullptr) box->deleteLater();
}

// Has the pointer and the keyboard belong to an open menu. A press on an icon belongs to the panel until the button is
// released, and for so long nobody else can have them: the toolkit asks once, this until they are given.
static void insist_on_grab(QMenu& menu, QTimer& timer) {
  constexpr int pause = 20;  // milliseconds
  QObject::connect(&timer, &QTimer::timeout, &menu, [&] {
    QWindow* window = menu.windowHandle();
    if (window == nullptr || !window->isExposed()) return;
    if (window->setMouseGrabEnabled(true) && window->setKeyboardGrabEnabled(true)) timer.stop();
  });
  timer.start(pause);
}

// Where a menu of that size opens: below the pointer or, where there is no room, above it. Never under it: who passes
// over the icon and clicks must not have chosen what happens to come up there.
static QPoint beside_pointer(QSize size) {
  const QPoint at = QCursor::pos();
  const QScreen* screen = QGuiApplication::screenAt(at);
  const QRect room = (screen != nullptr ? screen : QGuiApplication::primaryScreen())->geometry();
  const int x = std::min(at.x(), room.right() + 1 - size.width());
  const bool below = at.y() + size.height() < room.bottom();
  return {std::max(x, room.left()), below ? at.y() + 1 : at.y() - size.height() - 1};
}

// The handler of the entry that the user chooses; none where he chooses nothing.
static platform::ClickHandler choose(const std::vector<platform::MenuItem*>& entries) {
  platform::ClickHandler chosen;
  QMenu menu;
  menu.setStyleSheet(QString::fromLatin1(menu_style));
  for (const platform::MenuItem* entry : entries) {
    if (entry->Caption == "-") {
      menu.addSeparator();
      continue;
    }
    QAction* action = menu.addAction(text_of(entry->Caption));
    action->setCheckable(entry->Checked);
    action->setChecked(entry->Checked);
    // Kept apart from the entry: the form that holds it may be gone when the menu closes.
    QObject::connect(action, &QAction::triggered, &menu, [&chosen, click = entry->Click] { chosen = click; });
  }
  QTimer grabbing;
  insist_on_grab(menu, grabbing);
  menu.exec(beside_pointer(menu.sizeHint()));
  return chosen;
}

void DesktopDialogs::PopupMenu(const std::vector<platform::MenuItem*>& entries) {
  if (events_.ended()) return;
  const auto chosen = choose(entries);
  if (chosen && !events_.ended()) chosen();
}

}  // namespace desktop
