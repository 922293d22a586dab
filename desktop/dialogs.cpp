#include "desktop/dialogs.h"

#include <QInputDialog>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>

#include "desktop/style.h"

namespace desktop {

namespace {

QString text_of(std::string_view text) {
  return to_toolkit(std::string(text));
}

// Puts a dialog in front of the program's own windows, which are in front of all others, and runs it. It may go with
// the window it belongs to before this returns.
int run_in_front(QDialog& dialog) {
  dialog.setWindowFlag(Qt::WindowStaysOnTopHint);
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
  const QAbstractButton* pressed = box != nullptr ? box->clickedButton() : nullptr;
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
  const bool accepted = run_in_front(*box) == QDialog::Accepted && box != nullptr;
  std::string answer = accepted ? from_toolkit(box->textValue()) : std::string();
  if (box != nullptr) box->deleteLater();
  return answer;
}

}  // namespace desktop
