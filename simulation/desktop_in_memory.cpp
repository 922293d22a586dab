#include "simulation/desktop_in_memory.h"

#include <algorithm>
#include <optional>
#include <utility>

namespace simulation {

namespace {

// Journals each member that is called.
class ShellObject final : public platform::ShellObject {
 public:
  explicit ShellObject(Journal& journal) : journal_(journal) { journal_.write("shell object created"); }
  ~ShellObject() override { journal_.write("shell object released"); }
  ShellObject(const ShellObject&) = delete;
  ShellObject& operator=(const ShellObject&) = delete;
  void CascadeWindows() override { journal_.write("shell CascadeWindows"); }
  void TileHorizontally() override { journal_.write("shell TileHorizontally"); }
  void TileVertically() override { journal_.write("shell TileVertically"); }
  void MinimizeAll() override { journal_.write("shell MinimizeAll"); }
  void UndoMinimizeALL() override { journal_.write("shell UndoMinimizeALL"); }
  void ShutdownWindows() override { journal_.write("shell ShutdownWindows"); }
  void FileRun() override { journal_.write("shell FileRun"); }

 private:
  Journal& journal_;
};

platform::Glyph box_glyph(int width, int height, std::uint8_t coverage) {
  platform::Glyph glyph{0, 0, width, height, static_cast<double>(width), {}};
  glyph.coverage.assign(static_cast<std::size_t>(width) * static_cast<std::size_t>(height), coverage);
  return glyph;
}

}  // namespace

// The window of one form: whether it is on the screen, and when its timers are due.
class DesktopInMemory::Host final : public platform::FormHost {
 public:
  Host(DesktopInMemory& desktop, platform::Form& form) : desktop_(desktop), form_(form) {
    for (platform::Control* control : form.Controls) {
      if (control->kind() == platform::Kind::timer) timer_changed(static_cast<platform::Timer&>(*control));
    }
  }
  void repaint(platform::Control* /*control*/) override {}
  void refresh(platform::Control* control) override {
    desktop_.journal.write("Refresh ", control == nullptr ? form_.Name : control->Name);
  }
  void timer_changed(platform::Timer& timer) override {
    if (timer.Enabled) {
      due_[&timer] = desktop_.later(timer.Interval);
    } else {
      due_.erase(&timer);
    }
  }
  void ensure_visible(platform::ListView& list, int row) override {
    desktop_.journal.write("EnsureVisible ", list.Name, " ", row);
  }
  void set_focus(platform::Control& control) override { desktop_.journal.write("SetFocus ", control.Name); }

  // The next timer that comes due by `until`, and when.
  std::optional<std::pair<std::int32_t, platform::Timer*>> next(std::int32_t until) const {
    std::optional<std::pair<std::int32_t, platform::Timer*>> first;
    for (const auto& [timer, at] : due_) {
      if (at <= until && (!first || at < first->first)) first = {at, timer};
    }
    return first;
  }
  // Due again an interval later, unless its handler stops it.
  void rearm(platform::Timer& timer) { due_[&timer] = desktop_.later(timer.Interval); }

  bool shown = false;
  platform::Form& form() { return form_; }

 private:
  DesktopInMemory& desktop_;
  platform::Form& form_;
  std::map<platform::Timer*, std::int32_t> due_;
};

DesktopInMemory::DesktopInMemory()
    : services{*this, *this, *this, *this, *this, profile_, *this, *this, hook, program_} {}

DesktopInMemory::~DesktopInMemory() = default;

platform::Form* DesktopInMemory::form_of(platform::Handle window) const {
  const auto found = hosts_.find(window);
  return found == hosts_.end() ? nullptr : &found->second->form();
}

void DesktopInMemory::advance(int milliseconds) {
  const std::int32_t until = later(milliseconds);
  while (!ended_ && fire_timer(until)) DoEvents();
  ticks = until;
  DoEvents();
}

// Fires the first timer that comes due by `until`, at its time; gives whether there is one.
bool DesktopInMemory::fire_timer(std::int32_t until) {
  Host* host = nullptr;
  std::optional<std::pair<std::int32_t, platform::Timer*>> first;
  for (auto& [handle, candidate] : hosts_) {
    const auto due = candidate->next(until);
    if (due && (!first || due->first < first->first)) first = due, host = candidate.get();
  }
  if (!first) return false;
  ticks = std::max(ticks, first->first);
  host->rearm(*first->second);
  // A copy: the handler may unload the form that holds it.
  if (const auto elapsed = first->second->Elapsed) elapsed();
  return true;
}

void DesktopInMemory::DoEvents() {
  if (const auto inside = std::exchange(during_yield, nullptr)) inside();
  while (!ended_) {
    if (!waiting_.empty()) {
      const std::function<void()> task = std::move(waiting_.front());
      waiting_.pop_front();
      task();
    } else if (!fire_timer(ticks)) {
      break;
    }
  }
}

void DesktopInMemory::Sleep(int milliseconds) {
  ticks = later(milliseconds);
}

void DesktopInMemory::post(std::function<void()> task) {
  waiting_.push_back(std::move(task));
}

void DesktopInMemory::End(int status) {
  journal.write("End ", status);
  if (!ended_) status_ = status;
  ended_ = true;
}

void DesktopInMemory::report(platform::Form& form, int direction, int key) {
  post([&form, direction, key] {
    int code = key;
    int shift = 0;
    const platform::KeyHandler& handler = direction == hook_key_down ? form.KeyDown : form.KeyUp;
    if (handler) handler(code, shift);
  });
}

void DesktopInMemory::on_icon(platform::Form& form, int message) {
  post([&form, message] {
    if (form.MouseMove) form.MouseMove({1, 0, static_cast<float>(message), 0});
  });
  DoEvents();
}

void DesktopInMemory::draw(platform::Form& form, std::vector<point_hook> stroke) {
  hook.state.stroke = std::move(stroke);
  report(form, hook_key_down, key_stroke);
  DoEvents();
}

bool DesktopInMemory::load(platform::Form& form) {
  if (journal.fails("window")) return false;
  form.hWnd = next_handle_++;
  auto host = std::make_unique<Host>(*this, form);
  form.host = host.get();
  hosts_[form.hWnd] = std::move(host);
  for (platform::Control* control : form.Controls) {
    if (control->kind() == platform::Kind::list_view) static_cast<platform::ListView*>(control)->hWnd = next_handle_++;
  }
  journal.write("load form ", form.Name);
  return true;
}

void DesktopInMemory::unload(platform::Form& form) {
  journal.write("unload form ", form.Name);
  hosts_.erase(form.hWnd);
  form.host = nullptr;
  form.hWnd = 0;
}

void DesktopInMemory::Show(platform::Form& form) {
  journal.write("Show ", form.Name);
  form.Visible = true;
  hosts_.at(form.hWnd)->shown = true;
}

void DesktopInMemory::Hide(platform::Form& form) {
  journal.write("Hide ", form.Name);
  form.Visible = false;
  hosts_.at(form.hWnd)->shown = false;
}

bool DesktopInMemory::on_screen(const platform::Form& form) const {
  const auto found = hosts_.find(form.hWnd);
  return found != hosts_.end() && found->second->shown;
}

bool DesktopInMemory::SetForegroundWindow(platform::Handle window) {
  journal.write("SetForegroundWindow ", window);
  return !journal.fails("SetForegroundWindow");
}

bool DesktopInMemory::AnimateWindow(platform::Handle window, int milliseconds, std::uint32_t flags) {
  journal.write("AnimateWindow ", window, " ", milliseconds, " ", std::hex, flags);
  const auto found = hosts_.find(window);
  if (found == hosts_.end() || journal.fails("AnimateWindow")) return false;
  found->second->shown = (flags & platform::AW_HIDE) == 0;
  ticks = later(milliseconds);
  return true;
}

bool DesktopInMemory::SetWindowPos(platform::Handle window, std::int32_t place, int x, int y, int width, int height,
                                   std::uint32_t flags) {
  journal.write("SetWindowPos ", window, " ", place, " ", x, " ", y, " ", width, " ", height, " ", std::hex, flags);
  return !journal.fails("SetWindowPos");
}

bool DesktopInMemory::PostMessageA(platform::Handle window, std::uint32_t message, std::int32_t wParam,
                                   std::int32_t lParam) {
  journal.write("PostMessageA ", window, " ", message, " ", wParam, " ", lParam);
  return !journal.fails("PostMessageA");
}

void DesktopInMemory::ReleaseCapture() {
  journal.write("ReleaseCapture");
}

platform::Handle DesktopInMemory::WindowFromPoint(platform::Point point) {
  const auto inside = [&](double left, double top, double width, double height) {
    return point.x >= left && point.x < left + width && point.y >= top && point.y < top + height;
  };
  // Our own windows are kept in front of all others.
  for (const auto& [handle, host] : hosts_) {
    const platform::Form& form = host->form();
    constexpr double scale = platform::twips_per_pixel;
    if (host->shown && inside(form.Left / scale, form.Top / scale, form.Width / scale, form.Height / scale)) {
      return handle;
    }
  }
  const auto hit = std::find_if(others.rbegin(), others.rend(), [&](const OtherWindow& window) {
    return inside(window.left, window.top, window.width, window.height);
  });
  return hit == others.rend() ? 0 : hit->handle;
}

platform::Handle DesktopInMemory::WindowFromDC(platform::Handle /*context*/) {
  return 0;
}

platform::Handle DesktopInMemory::GetParent(platform::Handle window) {
  const auto found = std::find_if(others.begin(), others.end(), [&](const auto& w) { return w.handle == window; });
  return found == others.end() ? 0 : found->parent;
}

int DesktopInMemory::GetWindowPlacement(platform::Handle window) {
  const auto found = std::find_if(others.begin(), others.end(), [&](const auto& w) { return w.handle == window; });
  return found == others.end() ? 0 : found->state;
}

bool DesktopInMemory::ShowWindow(platform::Handle window, int state) {
  journal.write("ShowWindow ", window, " ", state);
  const auto found = std::find_if(others.begin(), others.end(), [&](const auto& w) { return w.handle == window; });
  if (found == others.end() || journal.fails("ShowWindow")) return false;
  found->state = state;
  return true;
}

void DesktopInMemory::keybd_event(std::uint8_t key, std::uint8_t scan, std::uint32_t flags, std::uint32_t extra) {
  journal.write("keybd_event ", std::hex, static_cast<int>(key), " ", static_cast<int>(scan), " ", flags, " ", extra);
}

void DesktopInMemory::SendKeys(std::string_view text, bool wait) {
  journal.write("SendKeys ", wait ? "wait " : "", "[", text, "]");
  if (typing) typing(text);
}

void DesktopInMemory::SetKeyboardState(const platform::KeyboardState& state) {
  journal.write("SetKeyboardState");
  keyboard = state;
}

int DesktopInMemory::ShellExecuteA(platform::Handle owner, std::string_view verb, std::string_view file,
                                   std::string_view parameters, std::string_view directory, int show) {
  journal.write("ShellExecuteA ", owner, " ", verb, " [", file, "] [", parameters, "] [", directory, "] ", show);
  constexpr int file_not_found = 2;
  constexpr int success = 42;
  return journal.fails("ShellExecuteA") ? file_not_found : success;
}

std::unique_ptr<platform::ShellObject> DesktopInMemory::create_object() {
  if (journal.fails("shell object")) return nullptr;
  return std::make_unique<ShellObject>(journal);
}

bool DesktopInMemory::Shell_NotifyIconA(std::uint32_t message, const platform::NOTIFYICONDATA& record) {
  journal.write("Shell_NotifyIconA ", message, " icon ", record.hIcon);
  icon_records.push_back(record);
  return !journal.fails("Shell_NotifyIconA");
}

int DesktopInMemory::MsgBox(std::string_view text, int style, std::string_view title) {
  journal.write("MsgBox [", text, "] ", style, " [", title, "]");
  if (during_dialog) during_dialog();
  if (ended_) {
    const bool asks = (style & platform::vbYesNo) != 0;
    return asks ? platform::vbNo : (style & platform::vbOKCancel) != 0 ? platform::vbCancel : platform::vbOK;
  }
  if (box_answers.empty()) return platform::vbOK;
  const int answer = box_answers.front();
  box_answers.pop_front();
  return answer;
}

std::string DesktopInMemory::InputBox(std::string_view prompt, std::string_view title, std::string_view fallback) {
  journal.write("InputBox [", prompt, "] [", title, "] [", fallback, "]");
  if (during_dialog) during_dialog();
  if (ended_ || input_answers.empty()) return {};
  std::string answer = input_answers.front();
  input_answers.pop_front();
  return answer;
}

void DesktopInMemory::ShowColor(platform::ColourDialog& dialog) {
  journal.write("ShowColor ", dialog.Color.get());
  if (during_dialog) during_dialog();
  if (ended_ || colour_answers.empty()) return;
  dialog.Color = colour_answers.front();
  colour_answers.pop_front();
}

void DesktopInMemory::PopupMenu(const std::vector<platform::MenuItem*>& entries) {
  std::string shown;
  for (const platform::MenuItem* entry : entries) shown += (entry->Checked ? " *" : " ") + entry->Caption;
  journal.write("PopupMenu", shown);
  if (during_dialog) during_dialog();
  if (ended_ || menu_answers.empty()) return;
  const std::string caption = menu_answers.front();
  menu_answers.pop_front();
  for (const platform::MenuItem* entry : entries) {
    if (entry->Caption != caption) continue;
    if (const platform::ClickHandler chosen = entry->Click) chosen();
    return;
  }
}

const platform::Glyph& DesktopInMemory::glyph(const platform::Font& /*font*/, double /*density*/, char32_t character) {
  static const platform::Glyph full = box_glyph(glyph_width, glyph_height, 255);
  static const platform::Glyph blank = box_glyph(glyph_width, glyph_height, 0);
  return character == U' ' ? blank : full;
}

int DesktopInMemory::AddFontResourceA(std::string_view path) {
  journal.write("AddFontResourceA ", path);
  return journal.fails("font") ? 0 : 1;
}

}  // namespace simulation
