// A desktop in memory: every service of the platform, a clock that tests move, a journal of what was asked, faults on
// demand, and dialogs that answer from a script.
//
// Faults (journal.faults): "load" of the hook library, "window", "font", "replace", "set_aside", "shell object"; and by
// their own names "SetForegroundWindow", "AnimateWindow", "SetWindowPos", "PostMessageA", "ShowWindow",
// "ShellExecuteA", "Shell_NotifyIconA".
#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/services.h"
#include "simulation/hook.h"
#include "simulation/journal.h"
#include "simulation/profile_files.h"

namespace simulation {

// A window of another program.
struct OtherWindow {
  platform::Handle handle;
  platform::Handle parent;       // 0 for a top-level window
  int left, top, width, height;  // screen pixels
  int state = platform::SW_SHOWNORMAL;
};

// The face of the simulated desktop: every character is a full box of these pixels, a blank takes the same room.
inline constexpr int glyph_width = 7;
inline constexpr int glyph_height = 11;

class DesktopInMemory final : platform::Clock,
                              platform::Events,
                              platform::Windows,
                              platform::Input,
                              platform::Shell,
                              platform::Dialogs,
                              platform::Fonts {
 public:
  DesktopInMemory();
  ~DesktopInMemory() override;
  DesktopInMemory(const DesktopInMemory&) = delete;
  DesktopInMemory& operator=(const DesktopInMemory&) = delete;

  Journal journal;
  HookLoader hook{journal};
  ProfileFiles files{journal};

  // What tests set.
  std::int32_t ticks = 1000000;  // ms
  platform::Point cursor{0, 0};
  std::vector<OtherWindow> others;  // the last lies in front
  platform::KeyboardState keyboard{};
  int family = platform::platform_nt;
  bool tray = true;
  std::function<void(std::string_view text)> typing;  // runs inside SendKeys
  std::deque<int> box_answers;                        // of MsgBox; OK once they are used up
  std::deque<std::string> input_answers;              // of InputBox; Cancel once they are used up
  std::deque<std::int32_t> colour_answers;            // of ShowColor; Cancel once they are used up
  std::deque<std::string> menu_answers;               // captions chosen in PopupMenu; none once they are used up
  std::function<void()> during_dialog;                // runs while a box or a menu is open
  std::function<void()> during_yield;                 // runs once, inside the next DoEvents
  platform::Screen screen{0, 0, 1920 * 15, 1080 * 15, 15};
  std::vector<platform::NOTIFYICONDATA> icon_records;  // of Shell_NotifyIconA, each one sent

  // What tests look at.
  int exit_status() const { return status_; }
  bool ended() const override { return ended_; }
  bool on_screen(const platform::Form& form) const override;

  // Reads the clock `milliseconds` later; it wraps in 32 bits.
  std::int32_t later(int milliseconds) const {
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(ticks) + static_cast<std::uint32_t>(milliseconds));
  }
  // Moves the clock, fires the timers that come due on the way, each at its time, and serves events.
  void advance(int milliseconds);
  // Serves the events that wait, and the timers that are due.
  void DoEvents() override;
  // A mouse event on the tray icon: a mouse message of platform/services.h.
  void on_icon(platform::Form& form, int message);
  // A report of the hook library, or a key on the main window: it waits with the other events.
  void report(platform::Form& form, int direction, int key);
  // The user finishes a stroke: the library keeps it and reports it, and the report is served.
  void draw(platform::Form& form, std::vector<point_hook> stroke);

 private:
  class Host;
  friend class Host;

  std::int32_t GetTickCount() override { return ticks; }
  void Sleep(int milliseconds) override;
  void post(std::function<void()> task) override;
  void End(int status) override;

  bool load(platform::Form& form) override;
  void unload(platform::Form& form) override;
  void Show(platform::Form& form) override;
  void Hide(platform::Form& form) override;
  bool SetForegroundWindow(platform::Handle window) override;
  bool AnimateWindow(platform::Handle window, int milliseconds, std::uint32_t flags) override;
  bool SetWindowPos(platform::Handle window, std::int32_t place, int x, int y, int width, int height,
                    std::uint32_t flags) override;
  bool PostMessageA(platform::Handle window, std::uint32_t message, std::int32_t wParam, std::int32_t lParam) override;
  void ReleaseCapture() override;
  platform::Handle WindowFromPoint(platform::Point point) override;
  platform::Handle WindowFromDC(platform::Handle context) override;
  platform::Handle GetParent(platform::Handle window) override;
  platform::Point GetCursorPos() override { return cursor; }
  int GetWindowPlacement(platform::Handle window) override;
  bool ShowWindow(platform::Handle window, int state) override;
  platform::Screen Screen(const platform::Form& /*form*/) override { return screen; }

  void keybd_event(std::uint8_t key, std::uint8_t scan, std::uint32_t flags, std::uint32_t extra) override;
  void SendKeys(std::string_view text, bool wait) override;
  platform::KeyboardState GetKeyboardState() override { return keyboard; }
  void SetKeyboardState(const platform::KeyboardState& state) override;
  int platform_id() override { return family; }

  int ShellExecuteA(platform::Handle owner, std::string_view verb, std::string_view file, std::string_view parameters,
                    std::string_view directory, int show) override;
  bool tray_present() override { return tray; }
  std::unique_ptr<platform::ShellObject> create_object() override;
  bool Shell_NotifyIconA(std::uint32_t message, const platform::NOTIFYICONDATA& record) override;

  int MsgBox(std::string_view text, int style, std::string_view title) override;
  std::string InputBox(std::string_view prompt, std::string_view title, std::string_view fallback) override;
  void ShowColor(platform::ColourDialog& dialog) override;
  void PopupMenu(const std::vector<platform::MenuItem*>& entries) override;
  int AddFontResourceA(std::string_view path) override;
  const platform::Glyph& glyph(const platform::Font& font, double density, char32_t character) override;
  int line_height(const platform::Font& /*font*/) override { return glyph_height; }

  platform::Form* form_of(platform::Handle window) const;
  bool fire_timer(std::int32_t until);

  std::map<platform::Handle, std::unique_ptr<Host>> hosts_;
  std::deque<std::function<void()>> waiting_;
  platform::Handle next_handle_ = 101;
  platform::ProfileService profile_{files};
  platform::Program program_{"/opt/strokemind", "Strokemind"};
  bool ended_ = false;
  int status_ = -1;

 public:
  platform::Services services;
};

}  // namespace simulation
