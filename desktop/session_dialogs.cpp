#include "desktop/session_dialogs.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QFile>
#include <QInputDialog>
#include <QMessageBox>
#include <QPushButton>
#include <QStandardPaths>

#include "desktop/session_bus.h"
#include "desktop/shell.h"
#include "desktop/style.h"

namespace desktop {

namespace {

constexpr int least_success = 33;  // of shell_open
// Milliseconds. A bus tells what it knows at once; the user takes his time in front of a dialog or a request for a
// password.
constexpr int longest_look = 1000;
constexpr int longest_dialog = 300000;

QString manager() {
  return QStringLiteral("org.freedesktop.login1");
}

// A connection of our own to a bus; made anew where it has broken or could not be made before.
QDBusConnection connection_to(QDBusConnection::BusType type) {
  const QString name = QStringLiteral("strokemind-%1").arg(type);
  QDBusConnection connection = QDBusConnection::connectToBus(type, name);
  if (connection.isConnected()) return connection;
  QDBusConnection::disconnectFromBus(name);
  return QDBusConnection::connectToBus(type, name);
}

// What the bus itself answers to a question for names; nothing where it is not there.
QStringList names(const QDBusConnection& bus, const char* method) {
  const auto question =
      QDBusMessage::createMethodCall(QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
                                     QStringLiteral("org.freedesktop.DBus"), QString::fromLatin1(method));
  const QDBusMessage reply = bus.call(question, QDBus::Block, longest_look);
  return reply.type() == QDBusMessage::ReplyMessage ? reply.arguments().value(0).toStringList() : QStringList();
}

bool knows(const QDBusConnection& bus, const QString& name) {
  return bus.isConnected() &&
         (names(bus, "ListNames").contains(name) || names(bus, "ListActivatableNames").contains(name));
}

SessionView present_session() {
  QStringList owned;
  QStringList startable;
  if (has_session_bus()) {
    const QDBusConnection bus = connection_to(QDBusConnection::SessionBus);
    if (bus.isConnected()) {
      owned = names(bus, "ListNames");
      startable = names(bus, "ListActivatableNames");
    }
  }
  return {.desktops = qEnvironmentVariable("XDG_CURRENT_DESKTOP").toStdString(),
          .has_owner = [owned](const std::string& name) { return owned.contains(QString::fromStdString(name)); },
          .can_be_activated =
              [startable](const std::string& name) { return startable.contains(QString::fromStdString(name)); },
          .has_command =
              [](const std::string& name) {
                return !QStandardPaths::findExecutable(QString::fromStdString(name)).isEmpty();
              }};
}

// Whether an error means only that no answer has come: a dialog may be open all the same.
bool is_silence(const QDBusError& error) {
  return error.type() == QDBusError::NoReply || error.type() == QDBusError::Timeout ||
         error.type() == QDBusError::TimedOut;
}

}  // namespace

SessionDialogs::~SessionDialogs() {
  delete box_;
}

void SessionDialogs::end_session() {
  open(choose_session_end(present_session()), &SessionDialogs::ask_how_to_end);
}

void SessionDialogs::run_command() {
  open(choose_launcher(present_session()), &SessionDialogs::ask_what_to_run);
}

void SessionDialogs::open(const Opening& opening, OwnBox own) {
  switch (opening.kind) {
    case Opening::Kind::bus:
      call(opening, own);
      return;
    case Opening::Kind::command:
      if (shell_open("open", opening.target, "", "") >= least_success) return;
      break;
    case Opening::Kind::own:
      break;
  }
  (this->*own)();
}

// Calls the desktop's own dialog; where that fails, the program's own one comes in its place.
void SessionDialogs::call(const Opening& opening, OwnBox own) {
  const auto text = [](const std::string& ascii) { return QString::fromStdString(ascii); };
  QDBusMessage message = QDBusMessage::createMethodCall(text(opening.target), text(opening.path),
                                                        text(opening.interface), text(opening.method));
  for (const auto& argument : opening.arguments) {
    message << std::visit([](auto value) { return QVariant(value); }, argument);
  }
  auto* watcher =
      new QDBusPendingCallWatcher(connection_to(QDBusConnection::SessionBus).asyncCall(message, longest_dialog), this);
  connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, own](QDBusPendingCallWatcher* done) {
    done->deleteLater();
    if (done->isError() && !is_silence(done->error())) (this->*own)();
  });
}

void SessionDialogs::ask_how_to_end() {
  if (!knows(connection_to(QDBusConnection::SystemBus), manager())) {
    tell(QStringLiteral("Aucun service de ce système ne permet d'éteindre l'ordinateur, ni de le redémarrer."));
    return;
  }
  auto* box = new QMessageBox;
  box->setWindowTitle(QStringLiteral("Éteindre l'ordinateur"));
  box->setText(QStringLiteral("Que doit faire l'ordinateur?"));
  const auto offer = [&](const char* caption, const char* method) {
    QPushButton* button = box->addButton(QString::fromUtf8(caption), QMessageBox::ActionRole);
    connect(button, &QPushButton::clicked, this, [this, name = QString::fromLatin1(method)] { ask_manager(name); });
  };
  offer("Éteindre", "PowerOff");
  offer("Redémarrer", "Reboot");
  offer("Mettre en veille", "Suspend");
  QPushButton* cancel = box->addButton(QStringLiteral("Annuler"), QMessageBox::RejectRole);
  box->setEscapeButton(cancel);
  box->setDefaultButton(cancel);
  show_in_front(box);
}

void SessionDialogs::ask_manager(const QString& method) {
  QDBusMessage message = QDBusMessage::createMethodCall(manager(), QStringLiteral("/org/freedesktop/login1"),
                                                        QStringLiteral("org.freedesktop.login1.Manager"), method);
  message << true;  // the user may be asked for a password
  message.setInteractiveAuthorizationAllowed(true);
  auto* watcher =
      new QDBusPendingCallWatcher(connection_to(QDBusConnection::SystemBus).asyncCall(message, longest_dialog), this);
  connect(watcher, &QDBusPendingCallWatcher::finished, this, [this](QDBusPendingCallWatcher* done) {
    done->deleteLater();
    if (!done->isError() || is_silence(done->error())) return;
    tell(QStringLiteral("Le système n'a pas suivi la demande:\n") + done->error().message());
  });
}

void SessionDialogs::ask_what_to_run() {
  constexpr int width = 360;
  auto* box = new QInputDialog;
  box->setInputMode(QInputDialog::TextInput);
  box->setWindowTitle(QStringLiteral("Exécuter"));
  box->setLabelText(QStringLiteral("Programme, dossier, document ou adresse à ouvrir:"));
  box->setOkButtonText(QStringLiteral("OK"));
  box->setCancelButtonText(QStringLiteral("Annuler"));
  box->resize(width, box->sizeHint().height());
  connect(box, &QInputDialog::textValueSelected, this, [this](const QString& typed) {
    const QString text = typed.trimmed();
    if (text.isEmpty() || shell_open("open", from_toolkit(text), "", "") >= least_success) return;
    tell(QStringLiteral("%1 ne peut pas être ouvert.").arg(text));
  });
  show_in_front(box);
}

void SessionDialogs::tell(const QString& text) {
  auto* box = new QMessageBox(QMessageBox::Critical, QStringLiteral("Strokemind"), text);
  box->setTextFormat(Qt::PlainText);
  box->addButton(QStringLiteral("OK"), QMessageBox::AcceptRole);
  show_in_front(box);
}

// In front of all windows and with the keyboard, without making the rest of the program wait. A box that is still open
// makes way: it asks what has been asked anew, or has just been answered.
void SessionDialogs::show_in_front(QDialog* box) {
  if (box_ != nullptr) {
    box_->hide();
    box_->deleteLater();  // its own button may be what has led here
  }
  box_ = box;
  box->setAttribute(Qt::WA_DeleteOnClose);
  box->setWindowFlag(Qt::WindowStaysOnTopHint);
  box->setModal(false);
  box->show();
  x11_.activate(static_cast<xcb_window_t>(box->winId()));
}

}  // namespace desktop
