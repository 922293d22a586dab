// A private X server with what a desktop has on it, and a user at it. Everything started here is a child process that
// is ended by its id when its object goes, also when this process dies.
#pragma once

#include <sys/types.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace stage {

// Points on the screen, pixels, as the pointer visits them.
using Path = std::vector<std::pair<int, int>>;

// Asks `condition` again and again until it holds or the deadline has passed; gives what it said last. The deadline is
// there to end a test that fails, never to pace one that passes.
bool eventually(const std::function<bool()>& condition, int deadline_ms = 20000);

// A child process. It ends with this object, and with the test program, whatever way that goes.
class Process {
 public:
  Process() = default;
  // Starts `argv` (looked up in PATH), with these variables added to the environment ("NAME=value"). Its standard
  // input and output are pipes to here if `piped`, else the test's own. running() is false if it could not be started.
  explicit Process(const std::vector<std::string>& argv, const std::vector<std::string>& environment = {},
                   bool piped = false);
  Process(Process&& other) noexcept { swap(other); }
  Process& operator=(Process&& other) noexcept {
    swap(other);
    return *this;
  }
  ~Process();

  pid_t pid() const { return pid_; }
  // True until the process has ended; takes its exit status when it has.
  bool running();
  // Waits for the end and gives the exit status as of waitpid, or -1 if it has not ended by the deadline.
  int wait(int deadline_ms = 20000);
  void signal(int number) const;
  // Ends it, with force if it does not listen, and waits until it is gone.
  void end();
  // One line to its standard input.
  void write_line(const std::string& line) const;
  // The next line of its standard output without the line end; empty if none has come by the deadline.
  std::string read_line(int deadline_ms = 20000);

 private:
  void swap(Process& other) noexcept;

  pid_t pid_ = -1;
  int status_ = -1;
  int input_ = -1;
  int output_ = -1;
  std::string buffered_;
};

// Xvfb on a free display number, ready to be connected to when the constructor returns. `ok()` tells whether it is.
class XServer {
 public:
  explicit XServer(const std::string& screen = "1920x1080x24");

  bool ok() const { return !display_.empty(); }
  // ":7", for connecting by hand.
  const std::string& display() const { return display_; }
  // "DISPLAY=:7", for child processes.
  std::string environment() const { return "DISPLAY=" + display_; }
  // Makes it the display of this process and of what it starts from now on.
  void make_current() const;
  Process& process() { return process_; }

 private:
  Process process_;
  std::string display_;
};

// Starts openbox, xfwm4 or metacity and waits until it manages the screen. The process is not running if it could not.
// xfwm4 needs a session bus.
Process start_window_manager(const XServer& server, const std::string& name = "openbox");
// Starts picom and waits until it composites the screen. The process is not running if it could not.
Process start_compositor(const XServer& server);

// Starts a message bus; its first line is its address.
Process start_bus(const std::vector<std::string>& variables = {});

// A user at the screen: a mouse and a keyboard that are devices of their own, as real ones are (not the XTEST devices,
// by which programs inject), and eyes. Each call is done by the server when it returns.
class User {
 public:
  explicit User(const XServer& server);
  ~User();
  User(const User&) = delete;
  User& operator=(const User&) = delete;

  void move_to(int x, int y);
  void press(int button);
  void release(int button);
  void click(int button);
  // Release and press in the same instant, as of a worn switch; and a press that bounces so.
  void bounce(int button);
  void press_bouncing(int button);
  // Unplugs the mouse, or plugs it in again.
  void plug_mouse(bool in);
  // A key by its keysym (XK_...); both halves, or one.
  void key_down(unsigned long keysym);
  void key_up(unsigned long keysym);
  void type(unsigned long keysym);
  // Presses the button and trembles by a few pixels until the trail shows. A hand is slow beside the program, this user
  // is not: a stroke made within the first fraction of a millisecond would be over before anybody watched.
  // False if no trail appears; the button is down either way.
  bool begin_stroke(int button, int x, int y);
  // Goes along these points with the button held, from a visible start to a release at the last.
  void draw(int button, const Path& path);

  // The same as a program would do it, through the XTEST devices.
  void inject_key(unsigned long keysym, bool down);
  void inject_button(int button, bool down);

  // What is on the screen, as 0xRRGGBB, row by row.
  std::vector<std::uint32_t> pixels(int x, int y, int width, int height);

 private:
  struct Devices;
  std::unique_ptr<Devices> devices_;
};

}  // namespace stage
