// The window of one form: a frameless widget, the widgets of its controls, and its timers.
#pragma once

#include <QKeyEvent>
#include <QRect>
#include <QTimer>
#include <functional>
#include <memory>
#include <unordered_map>
#include <unordered_set>

#include "desktop/surface_widget.h"
#include "desktop/x11.h"

namespace desktop {

class FormWindow final : public QObject, public platform::FormHost {
 public:
  // Makes the window, hidden, and sets the form's `hWnd` and `host`; its timers start. A windowless form has its timers
  // alone.
  FormWindow(platform::Form& form, DesktopEvents& events, const X11& x11);
  // Does not look at the form, which may be gone.
  ~FormWindow() override;

  // Lets go of the form: takes the window off the screen and stops the timers. The object itself may be deleted only
  // when no handler of the form is running any more.
  void unload();

  const platform::Form& form() const { return form_; }
  // Null for a windowless form.
  QWidget* widget() const { return top_; }

  // Maps the window and returns when it is painted on the screen, or cannot come to be (a second at most). The program
  // is not called meanwhile.
  void show();
  // Takes the window off the screen; to the task bar if it is to be kept reachable.
  void hide();
  // Whether the user must be able to bring the window back when it is hidden: from now on, and if it is hidden already,
  // the task bar keeps an entry for it once it has been shown. Without a window manager there is no task bar, and
  // nothing changes.
  void keep_reachable(bool kept);
  // The window manager has iconified the window or brought it back; the toolkit takes notice next.
  void state_changed();
  bool on_screen() const;
  // Kept in front of other windows, now and whenever it is shown again.
  void set_topmost(bool topmost);
  // Place and size in pixels of the screen.
  void move_to(int x, int y);
  void resize_to(int width, int height);
  // Starts a move that the window manager carries on until the button is released.
  void move_by_user();
  void release_capture();
  // Scrolls the list of that name, where the form has it: see LVM_SCROLL.
  void scroll_list(platform::Handle list, int across, int down);
  // What the hook library, or the keyboard, reports.
  void key(bool down, int code, int shift);
  // What the mouse does on the form's icon in the tray: the form is told as of a move. `message` is a mouse message.
  void icon_event(int button, int message);

  void repaint(platform::Control* control) override;
  void refresh(platform::Control* control) override;
  void timer_changed(platform::Timer& timer) override;
  void ensure_visible(platform::ListView& list, int row) override;
  void set_focus(platform::Control& control) override;

 protected:
  // What arrives at the window as a whole, before it goes on to a widget.
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  struct Child {
    QWidget* widget;
    Mirror* mirror;
  };

  void make_window();
  SurfaceWidget* holder(platform::Control& control) const;
  bool within_sight(platform::Control& control) const;
  bool to_be_shown(platform::Control& control) const;
  void give_keyboard();
  Child make_child(platform::Control& control);
  void restack(const platform::Surface& surface);
  void sync(platform::Control& control);
  void sync_form();
  void sync_place();
  void adopt_place();
  void settle(const std::function<bool()>& done);
  void iconify();
  void tick(platform::Timer& timer);
  bool key_pressed(QKeyEvent& event);
  platform::KeyPressHandler* key_press_handler() const;

  platform::Form& form_;
  DesktopEvents& events_;
  const X11& x11_;
  const std::shared_ptr<FormLink> link_;
  std::unique_ptr<SurfaceWidget> owned_;
  SurfaceWidget* top_ = nullptr;
  std::unordered_map<const platform::Control*, Child> children_;
  std::unordered_map<const platform::Control*, QRect> painted_;  // where each painted control was last
  std::unordered_map<const platform::Timer*, std::unique_ptr<QTimer>> timers_;
  std::unordered_set<const platform::Timer*> late_;  // timers whose time came while the program could not be called
  QRect placed_;                                     // where the program has put the window, toolkit pixels
  platform::Picture icon_;
  bool topmost_ = false;
  bool shown_ = false;      // has been on the screen
  bool kept_ = false;       // see keep_reachable
  bool iconified_ = false;  // stands in the task bar in place of being hidden
  bool iconic_ = false;     // as the toolkit has heard from the window manager
  bool adopting_ = false;   // the form's place follows the window, not the other way round
};

}  // namespace desktop
