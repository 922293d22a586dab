// Serving of events: what waits, what may run now, and the end of the program.
#pragma once

#include <QObject>
#include <QTimer>
#include <deque>
#include <functional>

#include "platform/services.h"

namespace desktop {

class DesktopEvents final : public QObject, public platform::Events {
 public:
  DesktopEvents();

  void DoEvents() override;
  void post(std::function<void()> task) override;
  void End(int status) override;
  bool ended() const override { return ended_; }
  // That of the first End.
  int status() const { return status_; }

  // While one lives, the program is not called: posted tasks wait. For services that must look at events of the
  // display while the program believes to be inside one call.
  class Hold {
   public:
    explicit Hold(DesktopEvents& events) : events_(events) { ++events_.holds_; }
    Hold(const Hold&) = delete;
    Hold& operator=(const Hold&) = delete;
    ~Hold() {
      if (--events_.holds_ == 0) events_.wake();
    }

   private:
    DesktopEvents& events_;
  };
  bool held() const { return holds_ > 0; }

 private:
  void wake();
  void run_next();

  std::deque<std::function<void()>> tasks_;
  QTimer idle_;
  int holds_ = 0;
  bool ended_ = false;
  int status_ = 0;
};

}  // namespace desktop
