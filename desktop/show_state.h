// The show state of windows of any program: normal, minimised or maximised, as window managers know it.
#pragma once

#include "desktop/x11.h"

namespace desktop {

// Takes a window, a part of one, or its frame. SW_SHOWNORMAL, SW_SHOWMINIMIZED (a minimised window may be maximised as
// well) or SW_SHOWMAXIMIZED; 0 where there is no such window. One that no window manager looks after is normal.
int show_state(const X11& x11, platform::Handle window);
// Asks the window manager for one of the three; from minimised the window comes back to the front. False where there is
// no window manager, no such window, or no such state.
bool set_show_state(const X11& x11, platform::Handle window, int state);

// Whether the window manager is done with minimising a window.
bool is_iconic(const X11& x11, xcb_window_t client);
// A window that the window manager has minimised, or is about to have.
bool is_minimised(const X11& x11, xcb_window_t client);
// Whether a window bears any of these names in its _NET_WM_STATE.
bool has_any_state(const X11& x11, xcb_window_t client, std::initializer_list<const char*> names);
// Takes one or two of those off a window. `second` may be null.
void remove_state(const X11& x11, xcb_window_t client, const char* first, const char* second);
void iconify(const X11& x11, xcb_window_t client);

}  // namespace desktop
