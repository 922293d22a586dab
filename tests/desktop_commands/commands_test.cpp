// Windows of other programs, as window managers keep them, put in order, away and back; the dialogs of the session.
#include <gtest/gtest.h>

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <algorithm>
#include <array>
#include <cstdlib>
#include <filesystem>

#include "desktop/arrangement.h"
#include "tests/desktop/stage.h"

// After those: X makes macros of names that they use.
#include <X11/Xatom.h>
#include <X11/Xutil.h>

namespace {

using desktop::Area;
using platform::ShellObject;
using Windows = std::vector<Window>;

// A bus for the session and the system alike, used by this process and by what it starts.
struct PrivateBus {
  PrivateBus() {
    setenv("HOME", home.c_str(), 1);
    setenv("XDG_CONFIG_HOME", "/dev/null", 1);  // nobody has set anything up, and nobody writes it down when he ends
    setenv("NO_AT_BRIDGE", "1", 1);             // no further programs
    std::filesystem::create_directory(home);
    for (const char* name : {"DBUS_SESSION_BUS_ADDRESS", "DBUS_SYSTEM_BUS_ADDRESS"}) setenv(name, address.c_str(), 1);
  }
  ~PrivateBus() { std::filesystem::remove_all(home); }

  const std::string home = std::filesystem::temp_directory_path() / ("commands_test_" + std::to_string(getpid()));
  stage::Process daemon = stage::start_bus();
  const std::string address = daemon.read_line();
};

// A program that owns a name on the bus, notes every call and answers with nothing.
class Service final : public QDBusVirtualObject {
 public:
  Service(const PrivateBus& bus, const QString& name) {
    QDBusConnection connection = QDBusConnection::connectToBus(QString::fromStdString(bus.address), name);
    connection.registerVirtualObject(QStringLiteral("/"), this, QDBusConnection::SubPath);
    EXPECT_TRUE(connection.registerService(name));
  }
  std::string calls;

 private:
  bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override {
    calls += (message.path() + ' ' + message.interface() + '.' + message.member()).toStdString();
    for (const QVariant& argument : message.arguments()) calls += ' ' + argument.toString().toStdString();
    return connection.send(message.createReply());
  }
  QString introspect(const QString& /*path*/) const override { return {}; }
};

class Commands : public testing::TestWithParam<std::string> {
 protected:
  Commands() : stage({.manager = GetParam(), .bus = bus.address}) {}

  Window make(const char* type = "NORMAL", Window owner = None) {
    const bool dock = std::string(type) == "DOCK";
    const Window window = XCreateSimpleWindow(stage.display, root, 0, 0, dock ? 40 : 300, dock ? 1080 : 200, 0, 0, 0);
    child = XCreateSimpleWindow(stage.display, window, 0, 20, 20, 20, 0, 0, 0);
    set(window, "_NET_WM_WINDOW_TYPE", XA_ATOM, {stage.atom((std::string("_NET_WM_WINDOW_TYPE_") + type).c_str())});
    if (dock) set(window, "_NET_WM_STRUT_PARTIAL", XA_CARDINAL, {40, 0, 0, 0, 0, 1079, 0, 0, 0, 0, 0, 0});
    if (owner != None) XSetTransientForHint(stage.display, window, owner);
    XMapWindow(stage.display, window);
    EXPECT_TRUE(stage.until([&] { return order({window}, "_NET_CLIENT_LIST").size() == 1; }) && become({window}, 1));
    return window;
  }
  void set(Window window, const char* name, Atom type, const std::vector<unsigned long>& items) const {
    XChangeProperty(stage.display, window, stage.atom(name), type, 32, PropModeReplace,
                    reinterpret_cast<const unsigned char*>(items.data()), static_cast<int>(items.size()));
  }
  int placement(Window window) { return windows.GetWindowPlacement(static_cast<platform::Handle>(window)); }
  bool show(Window window, int state) { return windows.ShowWindow(static_cast<platform::Handle>(window), state); }
  bool become(const Windows& all, int state) {
    XSync(stage.display, False);
    XWindowAttributes now{};  // a window that is being minimised is shown for a while
    return stage.until([&] {
      return std::ranges::all_of(all, [&](Window one) {
        return placement(one) == state &&
               (state != 2 || (XGetWindowAttributes(stage.display, one, &now) != 0 && now.map_state != IsViewable));
      });
    });
  }
  void raise(const Windows& all) {
    for (const Window window : all) {
      stage.tell_manager(window, "_NET_ACTIVE_WINDOW", {2});
      EXPECT_TRUE(stage.until([&] { return stage.active() == window; }));
    }
  }
  Windows order(const Windows& among, const char* list = "_NET_CLIENT_LIST_STACKING") const {
    Windows all = stage.property(root, list);
    std::erase_if(all, [&](Window one) { return std::ranges::find(among, one) == among.end(); });
    return all;
  }
  std::vector<Area> frames(const Windows& of) const {
    std::vector<Area> areas;
    for (const Window window : of) {
      XWindowAttributes now{};
      XGetWindowAttributes(stage.display, window, &now);
      const auto [x, y] = stage.place(window);
      const auto [left, right, top, bottom] = sides(window);
      areas.push_back({x - left, y - top, now.width + left + right, now.height + top + bottom});
    }
    return areas;
  }
  std::array<int, 4> sides(Window window) const {
    std::array<int, 4> sides{};
    std::ranges::copy(stage.property(window, "_NET_FRAME_EXTENTS"), sides.begin());
    return sides;
  }
  // Gives a command and answers its box; either may be left out.
  void command(void (ShellObject::*what)(), const std::vector<unsigned long>& keys = {}) {
    if (what != nullptr) (*stage.services().shell.create_object().*what)();
    if (keys.empty()) return;
    EXPECT_TRUE(stage.until([&] { return stage.active() != 0 && stage.active() != last; }));
    last = stage.active();
    for (const unsigned long key : keys) stage.user->type(key);
    EXPECT_TRUE(stage.until([&] { return stage.property(last, "WM_STATE") != Windows({1, 0}); }));
  }

  PrivateBus bus;  // before the stage: a window manager may want it
  Stage stage;
  const Window root = DefaultRootWindow(stage.display);
  Window child = None;  // of the window that was made last
  Window last = 0;      // the box that was answered last
  platform::Windows& windows = stage.services().windows;
};
INSTANTIATE_TEST_SUITE_P(Desktop, Commands, testing::Values("openbox", "xfwm4"));

TEST_P(Commands, AWindowTakesTheStateAskedOfItFromWhicheverPart) {
  const Window window = make();
  for (const Window part : {window, child}) {
    for (const int state : {3, 2, 3, 1, 2, 1}) {
      EXPECT_TRUE(show(part, state) && become({part}, state)) << state << " is not " << placement(part);
      EXPECT_TRUE(state == 2 || stage.has_state(window, "_NET_WM_STATE_MAXIMIZED_VERT") == (state == 3));
    }
  }
  XDestroyWindow(stage.display, window);
  for (const Window gone : {window, child, root, Window{0}}) EXPECT_TRUE(become({gone}, 0) && !show(gone, 3));
}

TEST_P(Commands, WindowsAreArrangedBesideThePanelToThePixel) {
  make("DOCK");
  const Window back = make(), middle = make(), front = make(), away = make(), dialog = make("DIALOG", front);
  set(middle, "WM_NORMAL_HINTS", XA_WM_SIZE_HINTS, {PMinSize, 0, 0, 0, 0, 1000, 1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0});
  TestForm form;
  stage.show(form);
  EXPECT_TRUE(show(away, 2) && become({away}, 2) && show(middle, 3) && become({middle}, 3));
  raise({back, middle, front});
  const auto others = frames({dialog, form.hWnd});
  const Windows up{back, middle, front};
  const auto expect = [&](void (ShellObject::*what)(), const std::vector<Area>& places) {
    command(what);
    EXPECT_TRUE(stage.until([&] { return frames(up) == places; })) << testing::PrintToString(frames(up));
    EXPECT_EQ(order(up), up);
  };
  const std::vector<desktop::Limits> any(3);
  expect(&ShellObject::CascadeWindows, cascade({40, 0, 1880, 1080}, any, std::max(24, sides(front)[2])));
  expect(&ShellObject::TileHorizontally, {{40, 720, 1880, 360}, {40, 360, 1880, 360}, {40, 0, 1880, 360}});
  const int width = 1000 + sides(middle)[0] + sides(middle)[1];
  expect(&ShellObject::TileVertically, {{1293, 0, 627, 1080}, {666, 0, width, 1080}, {40, 0, 626, 1080}});
  EXPECT_EQ(frames({dialog, form.hWnd}), others);
}

TEST_P(Commands, WhatWasPutAwayComesBackAsItWas) {
  const Window first = make(), second = make(), third = make(), by_user = make(), short_lived = make();
  show(by_user, 2);
  raise({third, first, short_lived, second});
  command(&ShellObject::MinimizeAll);
  EXPECT_TRUE(become({first, second, third, by_user, short_lived}, 2));
  XDestroyWindow(stage.display, short_lived);
  // A second time, for one that has been opened meanwhile and one that the user has brought back.
  const Window opened = make();
  EXPECT_TRUE(show(first, 1) && become({first}, 1));
  raise({first, second});
  command(&ShellObject::MinimizeAll);
  EXPECT_TRUE(become({first, second, opened}, 2));
  command(&ShellObject::UndoMinimizeALL);
  EXPECT_TRUE(become({first, second, third, opened}, 1) && become({by_user}, 2));
  EXPECT_TRUE(stage.until([&] { return stage.active() == second; }));
  EXPECT_EQ(order({third, first, second}), (Windows{third, first, second}));
}

TEST_P(Commands, TheDesktopsDialogIsAskedElseOursDoesWhatTheUserWantsAndNothingElse) {
  setenv("XDG_CURRENT_DESKTOP", "XFCE", 1);
  Service xfce(bus, "org.xfce.SessionManager");
  command(&ShellObject::ShutdownWindows);
  EXPECT_TRUE(stage.until([&] { return !xfce.calls.empty(); }));
  EXPECT_EQ(xfce.calls, "/org/xfce/SessionManager org.xfce.Session.Manager.Logout true true");

  setenv("XDG_CURRENT_DESKTOP", "i3", 1);
  command(&ShellObject::ShutdownWindows, {XK_Return});  // nobody can do anything: the user is told
  Service manager(bus, "org.freedesktop.login1");
  command(&ShellObject::ShutdownWindows, {XK_Return});  // what is offered first is to do nothing
  std::string wanted;
  std::vector<unsigned long> keys{XK_space};
  for (const std::string method : {"PowerOff", "Reboot", "Suspend"}) {
    wanted += "/org/freedesktop/login1 org.freedesktop.login1.Manager." + method + " true";
    keys.insert(keys.begin(), XK_Tab);
    command(&ShellObject::ShutdownWindows, keys);
    EXPECT_TRUE(stage.until([&] { return manager.calls == wanted; })) << manager.calls;
  }
  command(&ShellObject::FileRun, {XK_t, XK_o, XK_u, XK_c, XK_h, XK_space, XK_x, XK_Return});
  EXPECT_TRUE(stage.until([&] { return std::filesystem::exists(bus.home + "/x"); }));
  command(&ShellObject::FileRun, {XK_y, XK_y, XK_y, XK_Return});
  command(nullptr, {XK_Return});  // that it cannot be opened
}

TEST(BareCommands, WithoutAWindowManagerNothingHappens) {
  Stage stage({.window_manager = false});
  TestForm form;
  stage.show(form);
  stage.services().shell.create_object()->MinimizeAll();
  EXPECT_FALSE(stage.services().windows.ShowWindow(form.hWnd, 2));
  EXPECT_EQ(stage.services().windows.GetWindowPlacement(form.hWnd), 1);
}

}  // namespace
