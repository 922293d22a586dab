// A desktop with an application on it, and the hook in this process or in one of its own.
#pragma once

#include <X11/keysym.h>
#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "stage/hook_parties.h"
#include "stage/screen.h"

namespace hook_test {

using namespace stage;
using Lines = std::vector<std::string>;

// An L of 200 by 150 pixels well inside the application's window.
inline const Path corner = {{400, 300}, {400, 350}, {400, 400}, {400, 450}, {450, 450}, {500, 450}, {600, 450}};

class Desktop : public testing::Test, protected stage::Screen {
 protected:
  Desktop() : Screen({}) {}

  // Presses at the start of the path and goes along it.
  void begin_drawing(const Path& path = corner) {
    EXPECT_TRUE(user->begin_stroke(3, path.front().first, path.front().second));
    for (const auto& [x, y] : path) user->move_to(x, y);
  }
  void pointer_moves() { EXPECT_TRUE(target->hears_of(*user)) << "the pointer is frozen"; }
  // The application gets just these presses and releases.
  void gets(const Lines& expected) {
    EXPECT_TRUE(eventually([&] { return target->events().size() >= expected.size(); }));
    pointer_moves();
    EXPECT_EQ(target->events(), expected);
  }
  void drag_is_passed_on() {
    target->forget();
    user->move_to(400, 300);
    user->press(3);
    user->move_to(450, 300);
    user->move_to(500, 300);
    user->release(3);
    gets({"press 3 at 400,300", "release 3 at 500,300"});
    target->forget();
  }
  void click_is_passed_on(int button = 3) {
    target->forget();
    user->move_to(610, 300);
    user->click(button);
    gets({"press 3 at 610,300", "release 3 at 610,300"});
    target->forget();
  }
  bool taken() { return button_is_taken(target->display()); }

  const std::unique_ptr<Target> target = std::make_unique<Target>(server.display());
};

// The hook runs in this process.
class Hooked : public Desktop {
 protected:
  Hooked() { host->init(); }
  ~Hooked() override { host->exports().EndHook(); }

  bool reported(const std::vector<Report>& expected) {
    return eventually([&] { return host->reports().size() >= expected.size(); }) && host->reports() == expected;
  }
  // Once a drawing is over and Ctrl, used later, has been reported, whatever was to be reported before has.
  void reports_just(std::vector<Report> expected) {
    pointer_moves();
    user->type(XK_Control_L);
    expected.insert(expected.end(), {control_down, control_up});
    EXPECT_TRUE(eventually([&] { return !host->reports().empty() && host->reports().back() == control_up; }));
    EXPECT_EQ(host->reports(), expected);
    host->forget();
  }

  const std::unique_ptr<Host> host = std::make_unique<Host>();
};

// The hook runs in a process of its own, that of be_host() in faults_test.cpp.
class HostProcess : public Desktop {
 protected:
  stage::Process start(const std::vector<std::string>& variables = {}) {
    std::vector<std::string> environment = variables;
    environment.push_back(server.environment());
    stage::Process process({"/proc/self/exe", "host"}, environment, true);
    EXPECT_EQ(process.read_line(), "ready");
    return process;
  }
  void draws_for(stage::Process& host) {
    ASSERT_TRUE(eventually([&] { return taken(); }));
    user->draw(3, corner);
    EXPECT_EQ(host.read_line(), "0 67");
  }
};

}  // namespace hook_test
