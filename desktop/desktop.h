// The platform on a real desktop: Qt Widgets on an X display. It shows forms in real windows, brings their events back,
// and implements every service that the program asks for.
#pragma once

#include <functional>
#include <memory>

#include "platform/services.h"

namespace desktop {

class Desktop {
 public:
  // Whether there is an X display to run on. Where there is none, one sentence on the error stream says so. To be asked
  // before a Desktop is made: without a display the toolkit would abort the process. On a Wayland session with X11
  // windows it says what to expect and answers true.
  static bool available();

  // Connects to the display. The program has no command line: of the arguments only the program's name is used, and
  // they must outlive the object.
  Desktop(int argc, char** argv);
  Desktop(const Desktop&) = delete;
  Desktop& operator=(const Desktop&) = delete;
  ~Desktop();

  // Alive as long as the Desktop. All services are called on the thread that made it.
  platform::Services& services();

  // Serves events until Events::End, and gives the status that was passed to it. Returns at once when the program has
  // already ended.
  int run();

  // Called on the same thread, between two events, when the process is asked to go (SIGTERM, SIGINT, SIGHUP), also
  // while a message box is open or another handler yields. Without it such a signal ends the program with status 0.
  std::function<void()> on_terminate;

 private:
  struct Parts;
  std::unique_ptr<Parts> parts_;
};

}  // namespace desktop
