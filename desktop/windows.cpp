#include "desktop/windows.h"

#include <QApplication>
#include <algorithm>
#include <chrono>
#include <thread>

#include "platform/hook_contract.h"

namespace desktop {

using platform::Form;
using platform::Handle;

DesktopWindows::DesktopWindows(DesktopEvents& events, const X11& x11)
    : events_(events), x11_(x11), report_(x11.atom(hook_report_atom)) {
  qApp->installNativeEventFilter(this);
}

DesktopWindows::~DesktopWindows() {
  qApp->removeNativeEventFilter(this);
  windows_.clear();
  // No handler is running any more: what was unloaded inside one can go.
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

FormWindow* DesktopWindows::find(Handle window) const {
  const auto found = std::find_if(windows_.begin(), windows_.end(),
                                  [&](const auto& one) { return window != 0 && one->form().hWnd == window; });
  return found == windows_.end() ? nullptr : found->get();
}

FormWindow* DesktopWindows::find(const Form& form) const {
  const auto found =
      std::find_if(windows_.begin(), windows_.end(), [&](const auto& one) { return &one->form() == &form; });
  return found == windows_.end() ? nullptr : found->get();
}

bool DesktopWindows::load(Form& form) {
  if (find(form) == nullptr) windows_.push_back(std::make_unique<FormWindow>(form, events_, x11_));
  return true;
}

void DesktopWindows::unload(Form& form) {
  const auto found =
      std::find_if(windows_.begin(), windows_.end(), [&](const auto& one) { return &one->form() == &form; });
  if (found == windows_.end()) return;
  // Often asked for by a handler of this very window, which must find its way back out of it.
  FormWindow* window = found->release();
  windows_.erase(found);
  window->unload();
  window->deleteLater();
}

void DesktopWindows::Show(Form& form) {
  form.Visible = true;
  FormWindow* window = find(form);
  if (window == nullptr || window->widget() == nullptr) return;
  window->show();
  x11_.activate(form.hWnd);
}

void DesktopWindows::Hide(Form& form) {
  form.Visible = false;
  FormWindow* window = find(form);
  if (window != nullptr && window->widget() != nullptr) window->hide();
}

bool DesktopWindows::on_screen(const Form& form) const {
  const FormWindow* window = find(form);
  return window != nullptr && window->on_screen();
}

bool DesktopWindows::SetForegroundWindow(Handle window) {
  if (window == 0) return false;
  x11_.activate(window);
  return true;
}

// Takes the opacity from 0 to 1 or back, at the pace of a screen.
void DesktopWindows::blend(FormWindow& window, int milliseconds, bool in) {
  using Clock = std::chrono::steady_clock;
  constexpr std::chrono::milliseconds frame(16);
  const DesktopEvents::Hold hold(events_);
  const auto start = Clock::now();
  const auto end = start + std::chrono::milliseconds(milliseconds);
  for (auto now = start; now < end; now = Clock::now()) {
    const double done = std::chrono::duration<double>(now - start) / (end - start);
    window.widget()->setWindowOpacity(in ? done : 1 - done);
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
    x11_.flush();
    std::this_thread::sleep_until(std::min(now + frame, end));
  }
}

bool DesktopWindows::AnimateWindow(Handle handle, int milliseconds, std::uint32_t flags) {
  FormWindow* window = find(handle);
  if (window == nullptr) return false;
  QWidget& widget = *window->widget();
  const bool blends = (flags & platform::AW_BLEND) != 0 && x11_.composited() && milliseconds > 0;
  if ((flags & platform::AW_HIDE) != 0) {
    if (!window->on_screen()) return false;
    if (blends) blend(*window, milliseconds, false);
    window->hide();
    widget.setWindowOpacity(1);
    x11_.flush();
    return true;
  }
  if (window->on_screen()) return false;
  if (blends) widget.setWindowOpacity(0);
  window->show();
  if ((flags & platform::AW_ACTIVATE) != 0) x11_.activate(handle);
  if (blends) blend(*window, milliseconds, true);
  widget.setWindowOpacity(1);
  x11_.flush();
  return true;
}

bool DesktopWindows::SetWindowPos(Handle handle, std::int32_t place, int x, int y, int width, int height,
                                  std::uint32_t flags) {
  constexpr std::uint32_t no_size = 0x1;
  constexpr std::uint32_t no_move = 0x2;
  constexpr std::uint32_t no_order = 0x4;
  constexpr std::uint32_t no_activate = 0x10;
  constexpr std::uint32_t show_window = 0x40;
  FormWindow* window = find(handle);
  if (window == nullptr) return false;
  if ((flags & no_size) == 0) window->resize_to(width, height);
  if ((flags & no_move) == 0) window->move_to(x, y);
  const bool band = place == platform::HWND_TOPMOST || place == platform::HWND_NOTOPMOST;
  if ((flags & no_order) == 0 && band) window->set_topmost(place == platform::HWND_TOPMOST);
  if ((flags & show_window) != 0 && !window->on_screen()) window->show();
  if ((flags & no_activate) == 0) x11_.activate(handle);
  return true;
}

bool DesktopWindows::PostMessageA(Handle window, std::uint32_t message, std::int32_t wParam, std::int32_t /*lParam*/) {
  constexpr std::uint32_t WM_NCLBUTTONDOWN = 161;
  constexpr std::int32_t HTCAPTION = 2;
  // To every window: fonts have changed. Here the toolkit knows by itself.
  if (window == 0) return message == platform::WM_FONTCHANGE;
  if (find(window) == nullptr) return false;
  if (message == WM_NCLBUTTONDOWN && wParam == HTCAPTION) {
    events_.post([this, window] {
      if (FormWindow* moved = find(window)) moved->move_by_user();
    });
  }
  return true;
}

void DesktopWindows::ReleaseCapture() {
  for (const auto& window : windows_) window->release_capture();
}

QWidget* DesktopWindows::dialog_owner() const {
  QWidget* owner = nullptr;
  for (const auto& window : windows_) {
    if (!window->on_screen()) continue;
    if (window->widget()->isActiveWindow()) return window->widget();
    owner = window->widget();
  }
  return owner;
}

// Reports of the hook library reach a window whether it is shown or not.
bool DesktopWindows::nativeEventFilter(const QByteArray& type, void* message, qintptr* /*result*/) {
  if (type != "xcb_generic_event_t") return false;
  constexpr int event_mask = 0x7F;  // the top bit says that it was sent by a program
  const auto* event = static_cast<const xcb_client_message_event_t*>(message);
  if ((event->response_type & event_mask) != XCB_CLIENT_MESSAGE || event->type != report_) return false;
  const std::uint32_t* data = event->data.data32;
  const bool known = data[0] == hook_key_down || data[0] == hook_key_up;
  if (event->format == 32 && known && find(event->window) != nullptr) {
    // Later, not from within the reading of events: the handler may open a box and serve events of its own.
    events_.post([this, handle = event->window, down = data[0] == hook_key_down, code = static_cast<int>(data[1])] {
      if (FormWindow* window = find(handle)) window->key(down, code, 0);
    });
  }
  return true;
}

}  // namespace desktop
