// The hook library under random use and random deaths on private X servers: what becomes of each press, how soon the
// right button is back, what is lost of fast motion, and what it all costs. Faults are printed with what repeats them;
// any of them makes the exit status 1.
// usage: hook_reliability [presses [deaths [seed [manager...]]]], by default 300, 40, 1 and three managers, one of them
// with a compositor beside it, too; presses alone where there are no deaths
//        hook_reliability --replay TRACE [manager...]: what was recorded of a hand (stage/trace.h), at its own pace
#include <X11/Xlib.h>
#include <X11/extensions/XTest.h>
#include <X11/keysym.h>
#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <random>
#include <sstream>
#include <stdexcept>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "hooklib/recording.h"
#include "stage/hook_parties.h"
#include "stage/trace.h"
#include "stage/xserver.h"

namespace {

using stage::DisplayHandle;
using stage::eventually;
using stage::Path;
using stage::Process;
using Clock = std::chrono::steady_clock;
using Lines = std::vector<std::string>;

constexpr int start_ms = 20000;
constexpr double recovery_limit_ms = 1000;
constexpr double trail_ratio_limit = 1.5;
constexpr long growth_limit_kb = 1024;

// A number from /proc/PID/status.
long status_of(pid_t pid, const std::string& name) {
  std::ifstream file("/proc/" + std::to_string(pid) + "/status");
  for (std::string word; file >> word;) {
    long value = 0;
    if (word == name + ":" && file >> value) return value;
  }
  return 0;
}

// Processor time of all threads so far.
double cpu_us(pid_t pid) {
  double total = 0;
  for (const auto& thread : std::filesystem::directory_iterator("/proc/" + std::to_string(pid) + "/task")) {
    double ns = 0;
    std::ifstream(thread.path() / "schedstat") >> ns;
    total += ns / 1000;
  }
  return total;
}

double milliseconds_since(Clock::time_point start) {
  return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

class Trial {
 public:
  Trial(const std::string& manager, unsigned seed) : manager_name_(manager), seed_(seed), random_(seed) {
    start_host();
  }

  void presses(int count);
  void replay(const std::string& file);
  void deaths(int count);
  void long_stroke();
  void idle();
  int faults() const { return faults_; }

 private:
  enum Kind { gesture, click, control_drag, control_late, escape, left_click, kinds };

  Process start_manager() {
    server_.make_current();
    return started(stage::start_window_manager(server_, manager_name_.substr(0, manager_name_.find('+'))));
  }
  Process start_compositor() {
    return manager_name_.find('+') != std::string::npos ? started(stage::start_compositor(server_)) : Process();
  }
  Process started(Process process) const {
    if (!process.running()) throw std::runtime_error(manager_name_ + " does not start");
    return process;
  }
  void start_host() {
    host_ = Process({"/proc/self/exe", "host"}, {server_.environment()}, true);
    if (host_.read_line(start_ms) != "ready") throw std::runtime_error("the host does not start");
  }
  int pick(int low, int high) { return std::uniform_int_distribution(low, high)(random_); }
  void move_about(int least, int most) {
    for (int i = pick(least, most); i > 0; --i) user_.move_to(pick(250, 950), pick(200, 600));
  }
  void fault(const std::string& what, int number) {
    ++faults_;
    std::printf("FAULT: %s, at number %d; again: hook_reliability with seed %u under %s\n", what.c_str(), number, seed_,
                manager_name_.c_str());
  }
  void act(Kind kind);
  int strokes_until_control();
  bool can_grab();
  bool recover(Clock::time_point start);
  // Of the server and the hook's host, in microseconds.
  double cpu() { return cpu_us(server_.process().pid()) + cpu_us(host_.pid()); }

  std::string manager_name_;
  unsigned seed_;
  std::mt19937 random_;
  stage::XServer server_;
  // In this order: a window that was there before its manager has no frame to begin with, and never the keyboard.
  Process manager_ = start_manager();
  Process compositor_ = start_compositor();
  stage::User user_{server_};
  stage::Target target_{server_.display()};
  Process host_;
  int faults_ = 0;
};

// Ctrl, reported after it, tells that no more is to come.
int Trial::strokes_until_control() {
  int strokes = 0;
  for (std::string line = host_.read_line(); line != "1 17"; line = host_.read_line()) {
    if (line.empty()) return -1;
    strokes += line == "0 67" ? 1 : 0;
  }
  return strokes;
}

void Trial::act(Kind kind) {
  const int x = pick(300, 900);
  const int y = pick(250, 550);
  if (kind == click || kind == control_drag) {
    user_.move_to(x, y);
    if (kind == control_drag) user_.key_down(XK_Control_L);
    user_.press(3);
    if (kind == click) user_.move_to(x + pick(-6, 6), y + pick(-6, 6));
    if (kind == control_drag) move_about(2, 20);
    user_.release(3);
    if (kind == control_drag) user_.key_up(XK_Control_L);
    return;
  }
  user_.begin_stroke(3, x, y);
  user_.move_to(x + 50, y + 30);
  move_about(1, 20);
  if (kind == control_late) user_.key_down(XK_Control_L);
  if (kind == escape) user_.type(XK_Escape);
  if (kind == left_click) user_.click(1);
  if (kind != gesture) move_about(0, 5);
  user_.release(3);
  if (kind == control_late) user_.key_up(XK_Control_L);
}

void Trial::presses(int count) {
  std::array<int, kinds> made{};
  int reported = 0, clicked = 0, handed = 0, cancelled = 0;
  long memory = 0;
  for (int number = 1; number <= count; ++number) {
    if (number == std::min(count, 50)) memory = status_of(host_.pid(), "VmRSS");
    target_.forget();
    const Kind kind = static_cast<Kind>(pick(0, kinds - 1));
    ++made[kind];
    act(kind);
    const bool free = target_.hears_of(user_);
    // The drags end with a report of their own Ctrl key.
    const int before = kind == control_drag || kind == control_late ? strokes_until_control() : 0;
    user_.type(XK_Control_L);
    const int strokes = before + strokes_until_control();
    Lines got = target_.events();
    const bool whole = got.size() == 2 && got[0].starts_with("press 3") && got[1].starts_with("release 3");
    const bool none = got.empty();
    reported += strokes == 1 && none;
    clicked += whole && strokes == 0 && kind == click;
    handed += whole && strokes == 0 && (kind == control_drag || kind == control_late);
    cancelled += none && strokes == 0;
    const bool right = kind == gesture                        ? strokes == 1 && none
                       : kind == escape || kind == left_click ? strokes == 0 && none
                                                              : strokes == 0 && whole;
    if (!free || !right) {
      fault("a press of kind " + std::to_string(kind) + " gave " + std::to_string(strokes) + " reports and " +
                std::to_string(got.size()) + " events" + (free ? "" : ", and the pointer is frozen"),
            number);
      if (!free) return;
    }
  }
  const long growth = status_of(host_.pid(), "VmRSS") - memory;
  if (reported + clicked + handed + cancelled != count) fault("presses are not accounted for", count);
  if (count > 0 && growth >= growth_limit_kb) fault("memory grows", count);
  std::printf(
      "%s: %d pressed = %d reported + %d clicked + %d handed over + %d cancelled; resident %ld kB, grown by %ld kB\n",
      manager_name_.c_str(), count, reported, clicked, handed, cancelled, memory, growth);
}

// What is to become of the presses of a trace: one with Ctrl held is the application's, as is too small a stroke.
struct Expected {
  int strokes = 0, others = 0;
};

Expected expect_of(std::istream& trace) {
  constexpr int least_stroke = 20;
  Expected expected;
  int left = 0, right = 0, top = 0, bottom = 0, x = 0, y = 0;
  bool control = false, drawing = false;
  std::string time, device, kind, what;
  for (std::string line; std::getline(trace, line);) {
    std::istringstream words(line);
    words >> time >> device >> kind >> what;
    if (kind == "motion") x = std::stoi(what), words >> y;
    if (what == "Control_L") control = kind == "key-down";
    if (kind == "press" && what == "3") {
      drawing = !control, expected.others += control ? 1 : 0;
      left = right = x, top = bottom = y;
    }
    if (!drawing) continue;
    left = std::min(left, x), right = std::max(right, x), top = std::min(top, y), bottom = std::max(bottom, y);
    if (kind != "release" || what != "3") continue;
    const bool small = right - left < least_stroke && bottom - top < least_stroke;
    ++(small ? expected.others : expected.strokes);
    drawing = false;
  }
  return expected;
}

void Trial::replay(const std::string& file) {
  std::ifstream trace(file);
  const auto [strokes, others] = expect_of(trace);
  trace.clear();
  trace.seekg(0);
  target_.forget();
  if (strokes + others == 0 || !stage::replay(trace, user_)) return fault("nothing to play in " + file, 0);
  const bool free = target_.hears_of(user_);
  int reported = 0;
  for (std::string line; reported < strokes && !(line = host_.read_line()).empty();) reported += line == "0 67" ? 1 : 0;
  const auto arrived = static_cast<int>(target_.events().size());
  if (!free || reported != strokes || arrived != 2 * others) fault("a hand's work comes out wrong", reported);
  std::printf("%s: %d strokes of a hand, %d reported; %d clicks and drags, %d presses and releases arrived\n",
              manager_name_.c_str(), strokes, reported, others, arrived);
}

bool Trial::can_grab() {
  Display* const display = target_.display();
  const bool granted = XGrabPointer(display, DefaultRootWindow(display), False, ButtonPressMask, GrabModeAsync,
                                    GrabModeAsync, 0, 0, CurrentTime) == GrabSuccess;
  if (granted) XUngrabPointer(display, CurrentTime);
  XSync(display, False);
  return granted;
}

bool Trial::recover(Clock::time_point start) {
  const auto left = [&] { return static_cast<int>(std::max(0.0, 5 * recovery_limit_ms - milliseconds_since(start))); };
  if (!eventually([&] { return target_.nothing_is_down() && can_grab() && !stage::button_is_taken(target_.display()); },
                  left())) {
    return false;
  }
  user_.move_to(610, 300);
  target_.forget();
  user_.click(3);
  return eventually([&] { return target_.events() == Lines{"press 3 at 610,300", "release 3 at 610,300"}; }, left());
}

void Trial::deaths(int count) {
  std::vector<double> times;
  for (int number = 1; number <= count; ++number) {
    const bool kill = pick(0, 1) == 0;
    if (pick(0, 1) == 0) {
      host_.write_line("inject");
      if (host_.read_line() != "pressed") fault("the host does not answer", number);
    }
    user_.begin_stroke(3, pick(300, 900), pick(250, 550));
    move_about(0, 30);
    const bool at_release = pick(0, 3) == 0;
    if (at_release) user_.release(3);
    // Anywhere in what the hook does then.
    std::this_thread::sleep_for(std::chrono::microseconds(pick(0, 2000)));
    const auto start = Clock::now();
    host_.signal(kill ? SIGKILL : SIGSTOP);
    if (!at_release) user_.release(3);
    const bool back = recover(start);
    times.push_back(milliseconds_since(start));
    if (!back || times.back() > recovery_limit_ms) fault(kill ? "killed" : "stopped", number);
    host_.signal(SIGCONT);
    if (kill) {
      host_.wait();
      start_host();
    }
    if (!eventually([&] { return stage::button_is_taken(target_.display()); })) fault("drawing is over", number);
    // Reports from before the death, if any, are of no interest.
    user_.type(XK_Control_L);
    if (strokes_until_control() < 0) fault("no reports any more", number);
  }
  std::sort(times.begin(), times.end());
  std::printf("%d times killed or stopped in mid-stroke: all free after %.0f ms (median), %.0f ms (at most)\n", count,
              times[times.size() / 2], times.back());
}

// A stroke under way, with a recorder of its own beside the hook's.
class Stroke {
 public:
  // Draws on the current display, where `user` sits.
  explicit Stroke(stage::User& user) : user_(user) {}

  void begin() {
    user_.begin_stroke(3, centre_x, centre_y);
    hooklib::sync(display_.control.get());
    recording_.begin();
    seen_ = moved_ = 0;
  }
  void step() {
    // Never twice the same place, which would be no motion; about four pixels each.
    const double turn = moved_ * 0.013;
    user_.move_to(centre_x + static_cast<int>(300 * std::cos(turn)) + moved_ % 2,
                  centre_y + static_cast<int>(200 * std::sin(1.7 * turn)));
    ++moved_;
    look();
  }
  // How many motions the recorder has lost.
  int end() {
    recording_.end();
    eventually([&] { return look(), recording_.finished(); });
    user_.release(3);
    return moved_ - seen_;
  }

 private:
  static hooklib::Display opened() {
    auto display = hooklib::open_display();
    if (!display) throw std::runtime_error("no display to record on");
    return std::move(*display);
  }
  void look() {
    hooklib::sync(display_.control.get());
    recording_.take([&](const hooklib::Sample&, hooklib::Recording::Kind) { ++seen_; });
  }

  static constexpr int centre_x = 600;
  static constexpr int centre_y = 400;
  stage::User& user_;
  hooklib::Display display_ = opened();
  hooklib::Recording recording_{display_};
  int seen_ = 0;
  int moved_ = 0;
};

// Beside the long stroke goes one that is begun afresh for each thousand of its points, on a server of its own: what
// else the machine does makes both dear alike.
void Trial::long_stroke() {
  constexpr int points = 10000;
  constexpr int round = 1000;
  constexpr int first = 100;
  constexpr int judged = points / 2;
  constexpr auto apart = std::chrono::milliseconds(1);
  Stroke old(user_);
  Trial other(manager_name_, seed_);
  Stroke fresh(other.user_);
  server_.make_current();
  std::vector<double> ratios;
  double fresh_us = 0, old_us = 0, fresh_before = 0, old_before = 0;
  int lost = 0;
  old.begin();
  auto next = Clock::now();
  for (int i = 0; i < points; ++i) {
    if (i % round == 0) {
      fresh.begin();
      next = Clock::now();
    }
    if (i % round == first) fresh_before = other.cpu(), old_before = cpu();
    old.step();
    fresh.step();
    if (i % round == round - 1) {
      const double fresh_cost = other.cpu() - fresh_before;
      const double old_cost = cpu() - old_before;
      lost += fresh.end();
      if (other.host_.read_line() != "0 67") fault("a stroke beside the long one is lost", i);
      if (i >= judged) ratios.push_back(old_cost / fresh_cost), fresh_us += fresh_cost, old_us += old_cost;
    }
    std::this_thread::sleep_until(next += apart);
  }
  lost += old.end();
  const std::string line = host_.read_line();
  if (line != "0 67") fault("the long stroke gave '" + line + "'", 0);
  if (lost != 0) fault("events lost", lost);
  std::sort(ratios.begin(), ratios.end());
  const double ratio = ratios[ratios.size() / 2];
  if (ratio >= trail_ratio_limit) fault("the trail grows dear", points);
  const auto counted = static_cast<double>(ratios.size()) * (round - first);
  std::printf(
      "%d motions in %d s: %d lost; server and hook %.0f us each from the %dth on, %.0f us up to the %dth, %.2f as "
      "dear\n",
      points, points / 1000, lost, fresh_us / counted, first, old_us / counted, points, ratio);
}

void Trial::idle() {
  constexpr auto span = std::chrono::seconds(2);
  const double before = cpu_us(host_.pid());
  std::this_thread::sleep_for(span);
  std::printf("just after use, with nothing to do: %.3f %% of a processor\n",
              (cpu_us(host_.pid()) - before) / std::chrono::duration<double, std::micro>(span).count() * 100);
}

}  // namespace

// What is thrown ends the run, as it should.
int main(int count, char** arguments) {  // NOLINT(bugprone-exception-escape)
  const std::vector<std::string> words(arguments + 1, arguments + count);
  if (words == std::vector<std::string>{"host"}) {
    stage::be_host();
    return 0;
  }
  if (words.size() > 1 && words[0] == "--replay") {
    std::vector<std::string> managers(words.begin() + 2, words.end());
    if (managers.empty()) managers = {"openbox"};
    int faults = 0;
    for (const std::string& manager : managers) {
      Trial trial(manager, 0);
      trial.replay(words[1]);
      faults += trial.faults();
    }
    return faults == 0 ? 0 : 1;
  }
  const auto number = [&](std::size_t at, int standard) { return words.size() > at ? std::stoi(words[at]) : standard; };
  std::vector<std::string> managers(words.begin() + std::min<std::ptrdiff_t>(3, std::ssize(words)), words.end());
  if (managers.empty()) managers = {"openbox", "xfwm4", "metacity", "openbox+picom"};
  const int presses = number(0, 300);
  const auto seed = static_cast<unsigned>(number(2, 1));
  const int deaths = number(1, 40);
  int faults = 0;
  for (const std::string& manager : managers) {
    Trial trial(manager, seed);
    trial.presses(presses / static_cast<int>(managers.size()));
    if (manager == managers.front() && deaths > 0) {
      trial.idle();
      trial.long_stroke();
      trial.deaths(deaths);
    }
    faults += trial.faults();
  }
  std::printf("%d faults\n", faults);
  return faults == 0 ? 0 : 1;
}
