#include "desktop/windows.h"

#include <QApplication>
#include <QScreen>
#include <algorithm>
#include <chrono>
#include <climits>
#include <thread>

#include "desktop/show_state.h"
#include "desktop/style.h"
#include "platform/hook_contract.h"

namespace desktop {

using platform::Form;
using platform::Handle;

DesktopWindows::DesktopWindows(DesktopEvents& events, const X11& x11)
    : events_(events), x11_(x11), report_(x11.atom(hook_report_atom)), question_(x11.atom(hook_question_atom)) {
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
  // What the user has before him already is left alone: asked for again, the keyboard would be away for a moment.
  if (window->on_screen() && window->widget()->isActiveWindow()) return;
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

bool DesktopWindows::PostMessageA(Handle window, std::uint32_t message, std::int32_t wParam, std::int32_t lParam) {
  // To every window: fonts have changed. Here the toolkit knows by itself.
  if (window == 0) return message == platform::WM_FONTCHANGE;
  if (message == platform::LVM_SCROLL) {
    // Looked for when it is served: the form may be gone by then.
    events_.post([this, window, wParam, lParam] {
      for (const auto& form : windows_) form->scroll_list(window, wParam, lParam);
    });
    return true;
  }
  if (find(window) == nullptr || message != platform::WM_NCLBUTTONDOWN || wParam != platform::HTCAPTION) return false;
  events_.post([this, window] {
    if (FormWindow* moved = find(window)) moved->move_by_user();
  });
  return true;
}

int DesktopWindows::GetWindowPlacement(Handle window) {
  return show_state(x11_, window);
}

bool DesktopWindows::ShowWindow(Handle window, int state) {
  return set_show_state(x11_, window, state);
}

platform::Screen DesktopWindows::Screen(const Form& form) {
  const QRect window(pixels(form.Left), pixels(form.Top), pixels(form.Width), pixels(form.Height));
  const QScreen* nearest = QGuiApplication::primaryScreen();
  int least = INT_MAX;
  for (const QScreen* screen : QGuiApplication::screens()) {
    const QRect area = screen->geometry();
    const QPoint middle = window.center();
    const QPoint inside(std::clamp(middle.x(), area.left(), area.right()),
                        std::clamp(middle.y(), area.top(), area.bottom()));
    const int distance = (middle - inside).manhattanLength();
    if (distance < least) least = distance, nearest = screen;
  }
  const QRect area = nearest->geometry();
  const auto twips = [](int length) { return static_cast<float>(length) * platform::twips_per_pixel; };
  return {twips(area.left()), twips(area.top()), twips(area.width()), twips(area.height()), platform::twips_per_pixel};
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

void DesktopWindows::keep_reachable(Handle kept) {
  for (const auto& window : windows_) window->keep_reachable(kept != 0 && window->form().hWnd == kept);
}

// Reports of the hook library reach a window whether it is shown or not. Its question is answered here and nowhere
// else: this runs whenever the program serves its events, also within a box, and never while it hangs.
bool DesktopWindows::nativeEventFilter(const QByteArray& type, void* message, qintptr* /*result*/) {
  if (type != "xcb_generic_event_t") return false;
  constexpr int event_mask = 0x7F;  // the top bit says that it was sent by a program
  const auto* change = static_cast<const xcb_property_notify_event_t*>(message);
  if ((change->response_type & event_mask) == XCB_PROPERTY_NOTIFY && change->atom == x11_.wm_state()) {
    if (FormWindow* window = find(change->window)) window->state_changed();
    return false;
  }
  const auto* event = static_cast<const xcb_client_message_event_t*>(message);
  if ((event->response_type & event_mask) != XCB_CLIENT_MESSAGE) return false;
  const std::uint32_t* data = event->data.data32;
  if (event->type == question_ && event->format == 32) x11_.send_back(*event, data[0]);
  if (event->type != report_) return event->type == question_;
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
