// The dialogs that end the session and run a command: the desktop's own ones, or plain ones of this program.
#pragma once

#include <QDialog>
#include <QObject>
#include <QPointer>

#include "desktop/session_choice.h"
#include "desktop/x11.h"

namespace desktop {

// Calls return at once, apart from a question to the session bus that may take a second; what they open goes with this
// object at the latest. Nothing is ended or run before the user has said so.
class SessionDialogs final : public QObject {
 public:
  explicit SessionDialogs(const X11& x11) : x11_(x11) {}
  ~SessionDialogs() override;

  void end_session();
  void run_command();

 private:
  using OwnBox = void (SessionDialogs::*)();

  void open(const Opening& opening, OwnBox own);
  void call(const Opening& opening, OwnBox own);
  void ask_how_to_end();
  void ask_what_to_run();
  void ask_manager(const QString& method);
  void tell(const QString& text);
  void show_in_front(QDialog* box);

  const X11& x11_;
  QPointer<QDialog> box_;  // the one that is open
};

}  // namespace desktop
