#include "desktop/window_arranger.h"

#include <QGuiApplication>
#include <QScreen>
#include <algorithm>
#include <chrono>
#include <cmath>
#include <thread>

#include "desktop/show_state.h"

namespace desktop {

namespace {

// What is neither a program's window to work in nor movable: everything of these types, whatever others it names too.
constexpr const char* types_left_alone[] = {"DESKTOP",      "DOCK",          "SPLASH", "TOOLBAR", "MENU",
                                            "NOTIFICATION", "DROPDOWN_MENU", "COMBO",  "TOOLTIP", "POPUP_MENU"};

// The monitor that holds a point of the screen, else the first, in the screen's own pixels.
Area monitor_at(platform::Point at) {
  Area first;
  for (const QScreen* screen : QGuiApplication::screens()) {
    // The toolkit scales the size of a screen, and leaves its place.
    const QRect scaled = screen->geometry();
    const auto own = [&](int length) { return static_cast<int>(std::lround(length * screen->devicePixelRatio())); };
    const Area area{scaled.x(), scaled.y(), own(scaled.width()), own(scaled.height())};
    if (common(area, {at.x, at.y, 1, 1}).width > 0) return area;
    if (first.width == 0) first = area;
  }
  return first;
}

int value(const std::vector<std::uint32_t>& items, std::size_t index) {
  return index < items.size() ? static_cast<int>(items[index]) : 0;
}

}  // namespace

std::uint32_t WindowArranger::present_desktop() const {
  const auto current = x11_.property(x11_.root(), "_NET_CURRENT_DESKTOP");
  return current.empty() ? 0 : current.front();
}

bool WindowArranger::is_on(xcb_window_t window, std::uint32_t desktop) const {
  constexpr std::uint32_t all_desktops = 0xFFFFFFFF;
  const auto own = x11_.property(window, "_NET_WM_DESKTOP");
  return own.empty() || own.front() == desktop || own.front() == all_desktops;
}

bool WindowArranger::is_arranged(xcb_window_t window) const {
  if (x11_.is_own(window) || is_minimised(x11_, window)) return false;
  if (has_any_state(x11_, window, {"_NET_WM_STATE_SKIP_TASKBAR"})) return false;
  const auto types = x11_.property(window, "_NET_WM_WINDOW_TYPE");
  for (const char* type : types_left_alone) {
    if (std::find(types.begin(), types.end(), x11_.atom(std::string("_NET_WM_WINDOW_TYPE_") + type)) != types.end()) {
      return false;
    }
  }
  // A dialog of a window. One that belongs to the root, that is to a whole program, is on its own.
  const auto owner = x11_.property(window, "WM_TRANSIENT_FOR");
  return owner.empty() || owner.front() == XCB_NONE || owner.front() == x11_.root() || owner.front() == window;
}

// Those that are to be arranged, the foremost last.
std::vector<xcb_window_t> WindowArranger::windows() const {
  if (!x11_.managed()) return {};
  auto all = x11_.property(x11_.root(), "_NET_CLIENT_LIST_STACKING");
  // Some window managers say how windows are stacked only when that has changed: the newest may be missing.
  for (const xcb_window_t window : x11_.property(x11_.root(), "_NET_CLIENT_LIST")) {
    if (std::find(all.begin(), all.end(), window) == all.end()) all.push_back(window);
  }
  const std::uint32_t desktop = present_desktop();
  std::erase_if(all, [&](xcb_window_t window) { return !is_on(window, desktop) || !is_arranged(window); });
  return all;
}

std::vector<Strut> WindowArranger::struts(const Area& screen) const {
  using Edge = Strut::Edge;
  std::vector<Strut> found;
  const std::uint32_t desktop = present_desktop();
  for (const xcb_window_t window : x11_.property(x11_.root(), "_NET_CLIENT_LIST")) {
    auto items = x11_.property(window, "_NET_WM_STRUT_PARTIAL");
    constexpr std::size_t partial_items = 12;
    const bool partial = items.size() >= partial_items;
    if (!partial) items = x11_.property(window, "_NET_WM_STRUT");
    if (!is_on(window, desktop)) continue;
    constexpr Edge edges[] = {Edge::left, Edge::right, Edge::top, Edge::bottom};
    for (std::size_t i = 0; i < std::size(edges); ++i) {
      const int whole = i < 2 ? screen.height : screen.width;
      const std::size_t start = std::size(edges) + 2 * i;
      found.push_back(
          {edges[i], value(items, i), partial ? value(items, start) : 0, partial ? value(items, start + 1) : whole});
    }
  }
  return found;
}

Area WindowArranger::work_area() const {
  const Area screen = x11_.geometry(x11_.root()).value_or(Area());
  const Area monitor = monitor_at(x11_.pointer());
  Area work = without_struts(monitor, screen, struts(screen));
  const std::uint32_t desktop = present_desktop();
  // A shell that draws its panels itself has no windows to tell of them. The standard's own work area is that of the
  // whole screen: with several monitors it says nothing about any.
  auto areas = x11_.property(x11_.root(), ("_GTK_WORKAREAS_D" + std::to_string(desktop)).c_str());
  if (areas.empty() && QGuiApplication::screens().size() == 1) {
    areas = x11_.property(x11_.root(), "_NET_WORKAREA");
    constexpr std::size_t items_each = 4;
    const std::size_t own = std::min<std::size_t>(areas.size(), items_each * desktop);
    areas.erase(areas.begin(), areas.begin() + static_cast<std::ptrdiff_t>(own));
    areas.resize(std::min(areas.size(), items_each));
  }
  for (std::size_t i = 0; i + 3 < areas.size(); i += 4) {
    const Area told{value(areas, i), value(areas, i + 1), value(areas, i + 2), value(areas, i + 3)};
    const Area shared = common(work, told);
    if (shared.width > 0 && shared.height > 0) work = shared;
  }
  return work;
}

// Takes windows out of states in which they cannot be moved, and waits for it, as their frames may change with it.
void WindowArranger::make_normal(const std::vector<xcb_window_t>& windows) const {
  const auto fills_screen = [&](xcb_window_t window) {
    return has_any_state(x11_, window,
                         {"_NET_WM_STATE_MAXIMIZED_VERT", "_NET_WM_STATE_MAXIMIZED_HORZ", "_NET_WM_STATE_FULLSCREEN"});
  };
  std::vector<xcb_window_t> waited_for = windows;
  std::erase_if(waited_for, [&](xcb_window_t window) { return !fills_screen(window); });
  for (const xcb_window_t window : waited_for) {
    remove_state(x11_, window, "_NET_WM_STATE_FULLSCREEN", nullptr);
    remove_state(x11_, window, "_NET_WM_STATE_MAXIMIZED_VERT", "_NET_WM_STATE_MAXIMIZED_HORZ");
  }
  // A window manager that takes longer, or does not do it, gets its orders all the same.
  constexpr std::chrono::milliseconds longest(500);
  constexpr std::chrono::milliseconds look_interval(2);
  const auto end = std::chrono::steady_clock::now() + longest;
  while (std::any_of(waited_for.begin(), waited_for.end(), fills_screen) && std::chrono::steady_clock::now() < end) {
    std::this_thread::sleep_for(look_interval);
  }
}

// What the frame adds on each side. A window that draws its own frame has a shadow around it, which is not counted.
WindowArranger::Sides WindowArranger::frame(xcb_window_t window) const {
  const auto added = x11_.property(window, "_NET_FRAME_EXTENTS");
  const auto shadow = x11_.property(window, "_GTK_FRAME_EXTENTS");
  const auto side = [&](std::size_t i) { return value(added, i) - value(shadow, i); };
  return {side(0), side(1), side(2), side(3)};
}

Limits WindowArranger::limits(xcb_window_t window) const {
  constexpr std::uint32_t has_least = 1U << 4;
  constexpr std::uint32_t has_most = 1U << 5;
  constexpr std::uint32_t has_base = 1U << 8;
  constexpr std::size_t least = 5, most = 7, base = 15;  // width, height
  static constexpr int endless = 1 << 24;                // windows say so in many ways
  const auto hints = x11_.property(window, "WM_NORMAL_HINTS");
  const std::uint32_t flags = hints.empty() ? 0 : hints.front();
  const Sides sides = frame(window);
  const int across = sides.left + sides.right;
  const int down = sides.top + sides.bottom;
  Limits limits{.least_width = across + 1, .least_height = down + 1};
  if ((flags & (has_least | has_base)) != 0) {
    const std::size_t from = (flags & has_least) != 0 ? least : base;
    limits.least_width = across + std::clamp(value(hints, from), 1, endless);
    limits.least_height = down + std::clamp(value(hints, from + 1), 1, endless);
  }
  if ((flags & has_most) != 0) {
    const auto at_most = [](int size) { return size > 0 ? std::min(size, endless) : endless; };
    limits.most_width = across + at_most(value(hints, most));
    limits.most_height = down + at_most(value(hints, most + 1));
  }
  return limits;
}

void WindowArranger::place(xcb_window_t window, const Area& area) const {
  const Sides sides = frame(window);
  // Static gravity: the place is that of the window itself, which leaves nothing about its frame to be understood
  // differently.
  constexpr std::uint32_t static_gravity = 10;
  constexpr std::uint32_t all_four = 0xFU << 8;
  constexpr std::uint32_t from_user = 2U << 12;
  const auto item = [](int number) { return static_cast<std::uint32_t>(number); };
  x11_.ask_window_manager(window, "_NET_MOVERESIZE_WINDOW",
                          {static_gravity | all_four | from_user, item(area.x + sides.left), item(area.y + sides.top),
                           item(std::max(1, area.width - sides.left - sides.right)),
                           item(std::max(1, area.height - sides.top - sides.bottom))});
}

void WindowArranger::cascade() {
  const auto order = windows();
  if (order.empty()) return;
  make_normal(order);
  // The title of a window behind stays in sight.
  int step = 24;  // pixels, the least
  std::vector<Limits> sizes;
  for (const xcb_window_t window : order) {
    sizes.push_back(limits(window));
    step = std::max(step, frame(window).top);
  }
  const auto places = desktop::cascade(work_area(), sizes, step);
  for (std::size_t i = 0; i < order.size(); ++i) place(order[i], places[i]);
}

void WindowArranger::tile(Arrange arrange) const {
  auto order = windows();
  if (order.empty()) return;
  make_normal(order);
  std::reverse(order.begin(), order.end());
  std::vector<Limits> sizes(order.size());
  std::transform(order.begin(), order.end(), sizes.begin(), [&](xcb_window_t window) { return limits(window); });
  const auto places = arrange(work_area(), sizes);
  for (std::size_t i = 0; i < order.size(); ++i) place(order[i], places[i]);
}

void WindowArranger::tile_horizontally() {
  tile(desktop::tile_horizontally);
}

void WindowArranger::tile_vertically() {
  tile(desktop::tile_vertically);
}

void WindowArranger::minimise_all() {
  const auto order = windows();
  if (order.empty()) return;
  const auto active = x11_.property(x11_.root(), "_NET_ACTIVE_WINDOW");
  std::erase_if(minimised_, [&](xcb_window_t window) { return !is_minimised(x11_, window); });
  minimised_.insert(minimised_.end(), order.begin(), order.end());
  active_ = active.empty() || x11_.is_own(active.front()) ? xcb_window_t{XCB_NONE} : active.front();
  // The front one last: the keyboard does not wander over windows that are about to go.
  for (const xcb_window_t window : order) iconify(x11_, window);
}

void WindowArranger::bring_back() {
  const auto put_away = std::exchange(minimised_, {});
  const xcb_window_t active = std::exchange(active_, XCB_NONE);
  bool any = false;
  for (const xcb_window_t window : put_away) {
    if (!is_minimised(x11_, window)) continue;
    x11_.map(window);
    any = true;
  }
  if (any && active != XCB_NONE && x11_.client_of(active) == active) x11_.activate(active);
}

}  // namespace desktop
