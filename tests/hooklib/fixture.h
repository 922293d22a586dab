// A desktop with an application on it, a user before it, and a program that has the hook loaded.
#pragma once

#include <X11/keysym.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "tests/hooklib/host.h"
#include "tests/support/xserver.h"

namespace hook_test {

using test_support::eventually;
using Path = std::vector<std::pair<int, int>>;

// An L of 200 by 150 pixels well inside the application's window.
inline const Path corner = {{400, 300}, {400, 350}, {400, 400}, {400, 450}, {450, 450}, {500, 450}, {600, 450}};

class Desktop : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(server.ok());
    server.make_current();
    window_manager = test_support::start_window_manager(server);
    ASSERT_TRUE(window_manager.running());
    user = std::make_unique<test_support::User>(server);
    target = std::make_unique<Target>(server.display());
  }

  // Presses at the start of the path and goes along it.
  void begin_drawing(const Path& path = corner) {
    EXPECT_TRUE(user->begin_stroke(3, path.front().first, path.front().second));
    for (const auto& [x, y] : path) user->move_to(x, y);
  }
  // The same for a button that is not to draw.
  void drag(int button, const Path& path) {
    user->move_to(path.front().first, path.front().second);
    user->press(button);
    for (const auto& [x, y] : path) user->move_to(x, y);
    user->release(button);
  }
  // What the application has got, once that is as much as expected, and the server withholds nothing any more. Not
  // while a drawing is in progress. The pointer must rest before: what the server hands over late has the place of that
  // moment.
  std::vector<std::string> events(std::size_t expected = 0) {
    EXPECT_TRUE(eventually([&] { return target->events().size() >= expected; }));
    static int x = 0;
    x = x == 990 ? 980 : 990;
    user->move_to(x, 690);
    const std::string mark = "motion at " + std::to_string(x) + ",690";
    EXPECT_TRUE(eventually([&] {
      const auto all = target->events(true);
      return !all.empty() && all.back() == mark;
    })) << "the pointer is frozen";
    return target->events();
  }
  void gets(const std::vector<std::string>& expected) { EXPECT_EQ(events(expected.size()), expected); }

  test_support::XServer server;
  test_support::Process window_manager;
  std::unique_ptr<test_support::User> user;
  std::unique_ptr<Target> target;
};

// The hook runs in this process.
class Hooked : public Desktop {
 protected:
  void SetUp() override {
    Desktop::SetUp();
    if (HasFatalFailure()) return;
    host = std::make_unique<Host>();
    host->init();
  }
  void TearDown() override {
    if (host) host->library().EndHook();
  }

  bool reported(const std::vector<Report>& expected) {
    return eventually([&] { return host->reports().size() >= expected.size(); }) && host->reports() == expected;
  }
  // Once a drawing is over and Ctrl, used later, has been reported, whatever was to be reported before has. Gives that.
  std::vector<Report> reports_so_far() {
    events();
    user->type(XK_Control_L);
    EXPECT_TRUE(eventually([&] { return !host->reports().empty() && host->reports().back() == control_up; }));
    std::vector<Report> all = host->reports();
    all.resize(all.size() - std::min<std::size_t>(all.size(), 2));
    host->forget();
    return all;
  }

  std::unique_ptr<Host> host;
};

}  // namespace hook_test
