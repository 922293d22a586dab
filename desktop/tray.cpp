#include "desktop/tray.h"

#include <QApplication>
#include <QCursor>
#include <QMouseEvent>
#include <string_view>
#include <utility>

#include "desktop/icons.h"
#include "desktop/style.h"
#include "platform/text.h"

namespace desktop {

using platform::NOTIFYICONDATA;

// Not among the messages that the program knows by name.
static constexpr int middle_button_down = 519;

static QString tip_of(const NOTIFYICONDATA& record) {
  const std::string_view text(record.szTip.data(), record.szTip.size());
  return to_toolkit(platform::from_cp1252(text.substr(0, text.find('\0'))));
}

static int message_of(QSystemTrayIcon::ActivationReason reason) {
  switch (reason) {
    case QSystemTrayIcon::Context:
      return platform::WM_RBUTTONDOWN;
    case QSystemTrayIcon::DoubleClick:
      return platform::WM_LBUTTONDBLCLK;
    case QSystemTrayIcon::MiddleClick:
      return middle_button_down;
    default:
      return platform::WM_LBUTTONDOWN;
  }
}

Tray::Tray(DesktopEvents& events, DesktopWindows& windows, const X11& x11)
    : events_(events), windows_(windows), hosts_(x11, [this] { events_.post([this] { update(); }); }) {}

bool Tray::present() const {
  // The toolkit chooses the kind of an icon once, when the first is made.
  if (icon_ == nullptr) return hosts_.notifier_host() || hosts_.embedder();
  return published_ ? hosts_.notifier_host() : hosts_.embedder();
}

bool Tray::notify(std::uint32_t message, const NOTIFYICONDATA& record) {
  const bool wanted = record_.has_value();
  if (message == platform::NIM_DELETE) {
    if (!wanted || record_->hWnd != record.hWnd) return false;
    record_.reset();
  } else {
    const FormWindow* window = windows_.find(record.hWnd);
    if (window == nullptr || message > platform::NIM_MODIFY || wanted != (message == platform::NIM_MODIFY))
      return false;
    take(record, window->form());
  }
  update();
  return true;
}

void Tray::take(const NOTIFYICONDATA& record, const platform::Form& form) {
  record_ = record;
  tip_ = tip_of(record);
  // A picture is known by the form that has it; of any other handle there is nothing to show.
  const platform::Picture& picture = form.Icon;
  if (picture.handle == record.hIcon) picture_ = icon_of(picture);
}

void Tray::update() {
  const bool there = present();
  // Made only now: without a tray the toolkit would settle for an embedded icon, whatever panel comes later.
  if (record_ && there && icon_ == nullptr) make_icon();
  if (icon_ != nullptr) {
    if (record_) {
      icon_->setIcon(picture_);
      icon_->setToolTip(tip_);
    }
    icon_->setVisible(record_.has_value() && !picture_.isNull());
  }
  windows_.keep_reachable(record_ && !there ? record_->hWnd : 0);
}

void Tray::make_icon() {
  published_ = hosts_.notifier_host();
  icon_ = std::make_unique<QSystemTrayIcon>();
  connect(icon_.get(), &QSystemTrayIcon::activated, this,
          [this](QSystemTrayIcon::ActivationReason reason) { report(message_of(reason)); });
  if (!published_) qApp->installEventFilter(this);
}

void Tray::report(int message) {
  events_.post([this, message] {
    // The program answers with its menu, on which it waits in a loop of its own: what the mouse does on the icon
    // meanwhile would open a second menu on top of the first, or beneath a box that lets nothing else be used.
    if (QApplication::activePopupWidget() != nullptr || QApplication::activeModalWidget() != nullptr) return;
    if (!record_) return;
    if (FormWindow* window = windows_.find(record_->hWnd)) {
      window->icon_event(static_cast<int>(record_->uId), message);
    }
  });
}

// Presses come from the toolkit, the same for both kinds of icon. The rest is told to the widget that is embedded,
// which is the toolkit's own.
bool Tray::eventFilter(QObject* watched, QEvent* event) {
  const auto type = event->type();
  // A menu that closes gives back the pointer to the icon beneath, which hears of an entry. Nothing has moved.
  if (type == QEvent::Hide && watched->inherits("QMenu")) last_ = QCursor::pos();
  const bool move = type == QEvent::MouseMove || type == QEvent::Enter;
  if (!move && type != QEvent::MouseButtonRelease) return false;
  if (!watched->isWidgetType() || !watched->inherits("QSystemTrayIconSys")) return false;
  // What is told late, after a menu or on a busy machine, is over: a menu would open wherever the pointer is by now.
  if (move && !icon_->geometry().contains(QCursor::pos())) return false;
  const auto released = move ? Qt::NoButton : static_cast<const QMouseEvent&>(*event).button();
  if (move && std::exchange(last_, QCursor::pos()) != QCursor::pos()) report(platform::WM_MOUSEMOVE);
  if (released == Qt::LeftButton) report(platform::WM_LBUTTONUP);
  if (released == Qt::RightButton) report(platform::WM_RBUTTONUP);
  return false;
}

}  // namespace desktop
