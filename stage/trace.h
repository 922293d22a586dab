// What a user's devices did, and when: recorded on any X server, played again on a private one. One event a line:
//
//   MILLISECONDS DEVICE motion X Y
//   MILLISECONDS DEVICE press|release BUTTON
//   MILLISECONDS DEVICE key-down|key-up KEYSYM
//
// Times count from the first event. A line that begins with # is a comment. DEVICE is the number that the server gave
// it. X and Y are pixels of the screen.
#pragma once

#include <istream>
#include <ostream>
#include <string>

#include "stage/xserver.h"

namespace stage {

// Writes down what the devices of a display do, programs that inject aside, until `enough` says so; it is asked at
// least every tenth of a second. False where there is no such display, or none that tells of its devices.
bool record(const std::string& display, std::ostream& trace, const std::function<bool()>& enough);

// Lets the user do all of it again, each thing at its time. False where a line is none of the above.
bool replay(std::istream& trace, User& user);

}  // namespace stage
