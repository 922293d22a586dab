// While the hook holds a press, the server keeps every pointer event back until the hook lets go. A process that is
// stopped, or hangs, never does. The guard is a process of its own that notices and cuts the hook's connection: the
// server then frees the pointer, and the hook connects anew when it runs on.
#pragma once

#include <xcb/xcb.h>

#include <chrono>
#include <optional>

namespace hooklib {

class Guard {
 public:
  Guard() = default;
  // The guard process ends by itself when this goes, or this process dies; then it first lets go of the keys that the
  // program left pressed.
  ~Guard();
  Guard(const Guard&) = delete;
  Guard& operator=(const Guard&) = delete;

  // Starts the guard process, if none runs, and waits until it watches. Without its program, which lies beside this
  // library, there is no guard, and the hook works all the same.
  void start();
  // Starts it anew if it is gone, and waits for nothing: somebody may be drawing. True if one is on its way: it must be
  // told what to watch. For a guard that does not stay it tries seldom, and more and more seldom for one that does not
  // come up.
  bool revive();
  // When revive() is to be called; nothing if none is missing, or if there is no program to start.
  std::optional<std::chrono::steady_clock::time_point> next_try() const;
  // Has the connection that owns `resource` cut if the hook hangs from now on; with 0, none.
  void watch(xcb_window_t resource);
  // Whether the guard has asked, since the last look, if the hook is alive.
  bool asked();
  // The answer: it is. While `drawing`, the guard asks again, shortly, until the drawing is over.
  void answer(bool drawing);
  // Readable when the guard has asked; -1 if there is none.
  int descriptor() const { return socket_; }

 private:
  using Clock = std::chrono::steady_clock;

  void launch();
  void lose();
  void stop();

  int socket_ = -1;
  bool wanted_ = false;
  bool installed_ = false;
  bool ready_ = false;         // the last one started has said that it watches
  Clock::time_point started_;  // when that was
  Clock::duration pause_{};
  Clock::time_point next_try_;
};

}  // namespace hooklib
