// What the program asks of a platform, one small interface a capability. The desktop implements them with real windows
// and input, the simulation in memory. Failure is a value or is silent, as each member says; none of them throws.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/controls.h"
#include "platform/hook_contract.h"

namespace platform {

struct Point {
  std::int32_t x, y;  // screen pixels
};

class Clock {
 public:
  virtual ~Clock() = default;
  // Milliseconds on a counter that starts well above 700 when the program starts and wraps in 32 bits.
  virtual std::int32_t GetTickCount() = 0;
  // Blocks the thread without serving events.
  virtual void Sleep(int milliseconds) = 0;
};

class Events {
 public:
  virtual ~Events() = default;
  // Serves every event that is waiting, then returns.
  virtual void DoEvents() = 0;
  // Runs `task` later on this thread, after the events that wait now.
  virtual void post(std::function<void()> task) = 0;
  // Ends the program: every loop returns, and no further event is served. The first status counts.
  virtual void End(int status) = 0;
  virtual bool ended() const = 0;
};

// Flags of AnimateWindow and SetWindowPos, and the places of the latter.
inline constexpr std::uint32_t AW_HIDE = 0x10000;
inline constexpr std::uint32_t AW_ACTIVATE = 0x20000;
inline constexpr std::uint32_t AW_BLEND = 0x80000;
inline constexpr std::int32_t HWND_TOPMOST = -1;
inline constexpr std::int32_t HWND_NOTOPMOST = -2;
inline constexpr std::uint32_t WM_FONTCHANGE = 29;
inline constexpr std::uint32_t WM_NCLBUTTONDOWN = 161;
inline constexpr std::int32_t HTCAPTION = 2;
inline constexpr std::uint32_t LVM_SCROLL = 4116;

// Show states of a window.
inline constexpr int SW_SHOWNORMAL = 1;
inline constexpr int SW_SHOWMINIMIZED = 2;
inline constexpr int SW_SHOWMAXIMIZED = 3;

// A monitor: its place among the others and its size, twips.
struct Screen {
  float Left, Top, Width, Height;
  float TwipsPerPixelX;
};

class Windows {
 public:
  virtual ~Windows() = default;
  // Makes the window of a form, hidden, and sets its `hWnd` and `host`; its enabled timers start. A windowless form
  // gets its timers alone. False where there can be no window.
  virtual bool load(Form& form) = 0;
  // Takes the window away; the form's `hWnd` and `host` are unset and its timers stop.
  virtual void unload(Form& form) = 0;
  // Show and Hide set the form's own Visible; AnimateWindow does not.
  virtual void Show(Form& form) = 0;
  virtual void Hide(Form& form) = 0;
  // Whether the window can be seen on the screen now, whatever Visible says.
  virtual bool on_screen(const Form& form) const = 0;
  virtual bool SetForegroundWindow(Handle window) = 0;
  // Blends the window in or out, blocking for `milliseconds` where the screen can blend, at once where it cannot.
  virtual bool AnimateWindow(Handle window, int milliseconds, std::uint32_t flags) = 0;
  virtual bool SetWindowPos(Handle window, std::int32_t place, int x, int y, int width, int height,
                            std::uint32_t flags) = 0;
  // Serves WM_FONTCHANGE, WM_NCLBUTTONDOWN on HTCAPTION (the user moves the window), and LVM_SCROLL on a list: by
  // wParam and lParam pixels, in list view by wParam columns. Returns at once; true where the message is one of these.
  virtual bool PostMessageA(Handle window, std::uint32_t message, std::int32_t wParam, std::int32_t lParam) = 0;
  virtual void ReleaseCapture() = 0;
  // The window at a point, a child where one is there; 0 for none.
  virtual Handle WindowFromPoint(Point point) = 0;
  // The window of a device context; a platform without such contexts has none.
  virtual Handle WindowFromDC(Handle context) = 0;
  // 0 for a top-level window: what a window manager puts around a window does not count as its parent.
  virtual Handle GetParent(Handle window) = 0;
  virtual Point GetCursorPos() = 0;
  // The show state of a top-level window of any program; 0 where there is no such window.
  virtual int GetWindowPlacement(Handle window) = 0;
  // Gives a top-level window of any program one of the three show states.
  virtual bool ShowWindow(Handle window, int state) = 0;
  // The monitor on which the middle of a form's window stands, the nearest one where it stands on none.
  virtual platform::Screen Screen(const Form& form) = 0;
};

// The last argument of GetVersionExA's record that matters: 1 the Windows 9x family, 2 the NT family.
inline constexpr int platform_9x = 1;
inline constexpr int platform_nt = 2;
inline constexpr std::uint32_t KEYEVENTF_EXTENDEDKEY = 1;
inline constexpr std::uint32_t KEYEVENTF_KEYUP = 2;

// By virtual key code: the top bit says that the key is down, the lowest that a lock key is on.
using KeyboardState = std::array<std::uint8_t, 256>;

class Input {
 public:
  virtual ~Input() = default;
  // Puts one key event into the input stream. `key` is a virtual key code.
  virtual void keybd_event(std::uint8_t key, std::uint8_t scan, std::uint32_t flags, std::uint32_t extra) = 0;
  // Types `text`, in the notation of platform/sendkeys.h, into the window that has the keyboard. An invalid notation
  // types nothing. With wait false it does not wait for that window to process the keys.
  virtual void SendKeys(std::string_view text, bool wait) = 0;
  virtual KeyboardState GetKeyboardState() = 0;
  virtual void SetKeyboardState(const KeyboardState& state) = 0;
  // The platform family of GetVersionExA.
  virtual int platform_id() = 0;
};

// The desktop's own commands. None of them gives a result.
class ShellObject {
 public:
  virtual ~ShellObject() = default;
  // Arrange the windows of the present virtual desktop.
  virtual void CascadeWindows() = 0;
  virtual void TileHorizontally() = 0;
  virtual void TileVertically() = 0;
  virtual void MinimizeAll() = 0;
  virtual void UndoMinimizeALL() = 0;
  // Open the dialogs by which the session ends and by which a program is started.
  virtual void ShutdownWindows() = 0;
  virtual void FileRun() = 0;
};

// Messages of Shell_NotifyIconA.
inline constexpr std::uint32_t NIM_ADD = 0;
inline constexpr std::uint32_t NIM_MODIFY = 1;
inline constexpr std::uint32_t NIM_DELETE = 2;

// The mouse messages of a tray icon.
inline constexpr int WM_MOUSEMOVE = 512;
inline constexpr int WM_LBUTTONDOWN = 513;
inline constexpr int WM_LBUTTONUP = 514;
inline constexpr int WM_LBUTTONDBLCLK = 515;
inline constexpr int WM_RBUTTONDOWN = 516;
inline constexpr int WM_RBUTTONUP = 517;

// An icon of the tray. Text in code page 1252.
struct NOTIFYICONDATA {
  std::uint32_t cbSize;  // of this record, bytes
  std::uint32_t hWnd;    // the form that hears of the mouse
  std::uint32_t uId;
  std::uint32_t uFlags;
  std::uint32_t uCallbackMessage;
  std::uint32_t hIcon;  // handle of a Picture
  std::array<char, 64> szTip;
};
static_assert(sizeof(NOTIFYICONDATA) == 88);

class Shell {
 public:
  virtual ~Shell() = default;
  // Opens a file, document or program and returns at once; above 32 is success. `show` 1 is a normal window.
  virtual int ShellExecuteA(Handle owner, std::string_view verb, std::string_view file, std::string_view parameters,
                            std::string_view directory, int show) = 0;
  // Whether a tray shows, or will show, the program's icon, so that a hidden window can be brought back.
  virtual bool tray_present() = 0;
  virtual std::unique_ptr<ShellObject> create_object() = 0;
  // Adds, changes or removes the program's icon. Each mouse event on it that the tray lets be seen comes to the form
  // `hWnd` as a MouseMove of button `uId` (here 1) with the mouse message as X.
  virtual bool Shell_NotifyIconA(std::uint32_t message, const NOTIFYICONDATA& record) = 0;
};

class Profile {
 public:
  virtual ~Profile() = default;
  // The value of a key, `fallback` where there is none, at most size - 1 characters of it. Without a section: the names
  // of all sections, each followed by a NUL; without a key: the names of the section's keys likewise; at most size - 2
  // characters of either. Sections and keys are matched without regard to case.
  virtual std::string GetPrivateProfileStringA(std::optional<std::string_view> section,
                                               std::optional<std::string_view> key, std::string_view fallback,
                                               std::size_t size, std::string_view file) = 0;
  // Sets a key in the text gathered for `file`; nothing reaches the disk before `flush`.
  virtual bool WritePrivateProfileStringA(std::string_view section, std::string_view key, std::string_view value,
                                          std::string_view file) = 0;
  // Whether the file exists, on the disk or gathered, and its deletion; the deletion too takes effect on the disk with
  // `flush`.
  virtual bool Dir(std::string_view file) = 0;
  virtual void Kill(std::string_view file) = 0;
  // Replaces the file on the disk by the gathered text in one step; a copy of what another program has put there since
  // it was last read or written is set aside first. False: the old file stands as it was.
  virtual bool flush(std::string_view file) = 0;
  // The file holds something that the table could not take in: a copy is set aside before it is next replaced.
  virtual void preserve(std::string_view file) = 0;
};

// Message box styles and answers.
inline constexpr int vbOKCancel = 1;
inline constexpr int vbYesNo = 4;
inline constexpr int vbCritical = 16;
inline constexpr int vbInformation = 64;
inline constexpr int vbSystemModal = 4096;
inline constexpr int vbOK = 1;
inline constexpr int vbCancel = 2;
inline constexpr int vbYes = 6;
inline constexpr int vbNo = 7;

// When the program has ended, each of these gives what it gives when its box is closed, whatever was pressed.
class Dialogs {
 public:
  virtual ~Dialogs() = default;
  // Gives the button pressed; a box closed by its window button counts as Cancel, or No where there is no Cancel.
  virtual int MsgBox(std::string_view text, int style, std::string_view title) = 0;
  // Empty text on Cancel.
  virtual std::string InputBox(std::string_view prompt, std::string_view title, std::string_view fallback) = 0;
  // Lets the user choose a colour, starting from the dialog's Color, which takes the choice; unchanged on Cancel.
  virtual void ShowColor(ColourDialog& dialog) = 0;
  // Opens a menu at the pointer and returns when it is closed. The Click of the chosen entry has run by then; it may
  // unload the form that holds the entries.
  virtual void PopupMenu(const std::vector<MenuItem*>& entries) = 0;
};

class Fonts {
 public:
  virtual ~Fonts() = default;
  // Makes a font file known to the program; how many faces it holds, 0 on failure.
  virtual int AddFontResourceA(std::string_view path) = 0;
  // The picture of a character at `density` device pixels to the pixel of the design screen. Valid until a font
  // file is added.
  virtual const Glyph& glyph(const Font& font, double density, char32_t character) = 0;
  // The height of a line, pixels of the design screen.
  virtual int line_height(const Font& font) = 0;
};

// The exports of the hook library.
class HookLibrary {
 public:
  virtual ~HookLibrary() = default;
  virtual void InitHook(Handle window) = 0;
  virtual void EndHook() = 0;
  virtual void DLL_STOP(std::int32_t stop) = 0;
  virtual void ENVOIS_BUF_TMP(point_hook* points, std::int32_t* count) = 0;
};

class HookLoader {
 public:
  virtual ~HookLoader() = default;
  // The library of that name from the program's folder; null where it is missing or lacks an export, with the reason
  // in `error`.
  virtual std::unique_ptr<HookLibrary> load(std::string_view name, std::string& error) = 0;
};

struct Program {
  std::string Path;     // folder of the executable, without a closing separator
  std::string EXEName;  // its base name
};

// Everything that the program asks of the outside.
struct Services {
  Clock& clock;
  Events& events;
  Windows& windows;
  Input& input;
  Shell& shell;
  Profile& profile;
  Dialogs& dialogs;
  Fonts& fonts;
  HookLoader& hooks;
  const Program& program;
};

}  // namespace platform
