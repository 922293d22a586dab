// The hook's own connections to the X server. XCB, because the library is a guest: with it an error is a value, and a
// server that goes away is no reason to end the process.
#pragma once

#include <xcb/record.h>
#include <xcb/xcb.h>

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <optional>
#include <string>

namespace hooklib {

struct Free {
  void operator()(void* block) const { std::free(block); }
};
// A reply, event or error as XCB gives it out.
template <class T>
using Held = std::unique_ptr<T, Free>;

struct Disconnect {
  void operator()(xcb_connection_t* connection) const { xcb_disconnect(connection); }
};
using Connection = std::unique_ptr<xcb_connection_t, Disconnect>;

struct Atoms {
  xcb_atom_t report = 0;        // type of the reports to the program
  xcb_atom_t question = 0;      // type of the question whether it hangs
  xcb_atom_t owner = 0;         // selection of the one instance that has the button
  xcb_atom_t compositor = 0;    // selection that a compositing manager owns
  xcb_atom_t xtest_device = 0;  // property of the devices through which programs inject
};

struct Display {
  // Nearly everything goes over `control`, so that the server does it in the order in which it was asked for.
  Connection control;
  // What the server records. While it does, nothing else can be asked for here.
  Connection data;
  xcb_screen_t* screen = nullptr;
  // A window of ours that is never shown. It owns the selection, and stands for the connection.
  xcb_window_t window = 0;
  xcb_record_context_t recording = 0;
  std::uint8_t input_opcode = 0;
  Atoms atoms;

  bool alive() const {
    return xcb_connection_has_error(control.get()) == 0 && xcb_connection_has_error(data.get()) == 0;
  }
};

// Asks the server for an answer and waits for it: then whatever it had to say before is here.
void sync(xcb_connection_t* connection);

// Connects to the display of the environment. Nothing if there is none, or if it lacks what the hook needs: recording,
// shaped windows, and raw input events that come in spite of grabs.
std::optional<Display> open_display();

}  // namespace hooklib
