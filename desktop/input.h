// Key events and typed text on an X server, through XTEST.
#pragma once

#include <cstdint>
#include <memory>
#include <string_view>

#include "platform/services.h"

namespace desktop {

// Has a connection of its own to $DISPLAY; where there is none, every call does nothing. All calls come from one
// thread.
//
// Keys are looked up in the layout that is in force at the moment of the call. What stands only on another group of it
// is typed with that group locked for the stroke, so that Ctrl+C means Ctrl+C to every toolkit under a Cyrillic layout;
// what stands on none is put on key codes that the layout leaves free. Those keep their assignment, to be used again,
// until the object goes: then the key map is what it was.
class DesktopInput : public platform::Input {
 public:
  DesktopInput();
  // Lets go of every key that is still down and gives the borrowed key codes back.
  ~DesktopInput() override;

  void keybd_event(std::uint8_t key, std::uint8_t scan, std::uint32_t flags, std::uint32_t extra) override;
  // With Ctrl or Alt a letter stands for its key, whatever its case: "^C" is Ctrl+C. All other characters arrive as
  // written whatever locks are on and modifiers held: locks are put back afterwards, a modifier
  // that the user holds is let go of for good.
  void SendKeys(std::string_view text, bool wait) override;
  // Scroll Lock is read from its light: most layouts give it no other state.
  platform::KeyboardState GetKeyboardState() override;
  // Sets the three locks; the other bytes have no meaning here.
  void SetKeyboardState(const platform::KeyboardState& state) override;
  int platform_id() override;

  // Releases every key that keybd_event has pressed and not released.
  void release_all();

 private:
  class Session;
  std::unique_ptr<Session> session_;  // null without a display
};

}  // namespace desktop
