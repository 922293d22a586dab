// A desktop on a private screen with a user in front of it, and a form to try things on.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "desktop/desktop.h"
#include "stage/screen.h"

// After the controls: it makes macros of names that are members there.
#include <X11/Xlib.h>
#include <X11/keysym.h>
#undef KeyPress

// Twips of a rectangle in pixels.
inline platform::Rectangle twips(float left, float top, float width, float height) {
  return {15 * left, 15 * top, 15 * width, 15 * height};
}

// A window of 200 by 150 pixels at (100, 50), with nothing on it.
struct TestForm : platform::Form {
  static constexpr int left = 100, top = 50, width = 200, height = 150;  // pixels
  TestForm() : Form("Essai", width * 15.0F, height * 15.0F) { Left = left * 15.0F, Top = top * 15.0F; }
};

class Stage : public stage::Screen {
 public:
  explicit Stage(const With& with);

  platform::Services& services() { return desktop->services(); }
  // Serves events until the condition holds; false where it does not in good time.
  bool until(const std::function<bool()>& condition);
  // Serves everything that is under way: what the user has done so far, and what the program has made of it.
  void settle(platform::Form& form);
  // Loads a form and shows it.
  void show(platform::Form& form);

  std::optional<desktop::Desktop> desktop;
};

// A test with the form on a stage; without a window manager, which could hold input back until it has looked at it.
class FormTest : public testing::Test, protected Stage {
 protected:
  explicit FormTest(const With& with = {.window_manager = false}) : Stage(with) {}

  void type(const std::vector<unsigned long>& keys) {
    for (const unsigned long key : keys) user->type(key);
  }
  // To a pixel of the form, and what is seen there, 0xRRGGBB.
  void move(int x, int y) { user->move_to(TestForm::left + x, TestForm::top + y); }
  std::uint32_t at(int x, int y) { return user->pixels(TestForm::left + x, TestForm::top + y, 1, 1).front(); }
  // What has been noted since the last call, all that is under way included.
  std::vector<std::string> news() { return settle(form), std::exchange(heard, {}); }

  // Does something once the condition holds, in whatever loop the program is by then.
  void when(const std::function<bool()>& condition, const std::function<void()>& act) {
    timer.Elapsed = [this, condition, act] { condition() ? timer.Enabled = false, act() : void(); };
    timer.Enabled = true;
  }

  TestForm form;
  platform::Timer timer{form, "timer", 5, false};
  std::vector<std::string> heard;
  platform::Windows& windows = services().windows;
};
