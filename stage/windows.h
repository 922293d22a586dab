// What a window tells about itself, and the window manager about it.
#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

struct _XDisplay;

namespace stage {

struct CloseDisplay {
  void operator()(_XDisplay* display) const;
};
using DisplayHandle = std::unique_ptr<_XDisplay, CloseDisplay>;

// A property of a window as its 32-bit items; none where it has no such property, or of another format.
std::vector<unsigned long> property(_XDisplay* display, unsigned long window, const char* name);
// The same of the root window.
std::vector<unsigned long> root_property(_XDisplay* display, const char* name);
// The window that the window manager says is active; 0 where there is none.
unsigned long active_window(_XDisplay* display);
// Empty where it has none.
std::string title_of(_XDisplay* display, unsigned long window);

// Where a point of a window lies on the screen.
std::pair<int, int> place_of(_XDisplay* display, unsigned long window, int x = 0, int y = 0);

// Waits until a window that was mapped is on the screen to stay. Where there is a window manager it may be there early,
// and gone again while it gets its frame; to make it active is the last thing that is done to it. False if that does
// not come about.
bool settles(_XDisplay* display, unsigned long window);

// Whether any client holds the right button of the whole screen.
bool button_is_taken(_XDisplay* display);

}  // namespace stage
