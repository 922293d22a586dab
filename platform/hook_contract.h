// What passes between Strokemind and its hook library, Strokemind.so: eight plain C exports and one report channel.
// This header is all that the two binaries share.
#pragma once

#include <cstdint>

extern "C" {

// One point of a stroke, in screen pixels of the whole virtual screen. A stroke crosses as a packed array of these.
struct point_hook {
  std::int32_t x;
  std::int32_t y;
};

// Starts watching the mouse; reports go to `window`, an X window id of the calling program.
using InitHook_t = void(std::uint32_t window);
// Stops watching and gives every grab back. No call may follow.
using EndHook_t = void();
// 1: the right button is the user's again, a drawing in progress is cancelled; 0: drawing resumes. May repeat.
using DLL_STOP_t = void(std::int32_t stop);
// Copies the last finished stroke into `points` (room for hook_capacity records) and its length into `count`, at most
// hook_max_points. With no stroke yet, neither is written: the caller sets `count` to 0 first.
using ENVOIS_BUF_TMP_t = void(point_hook* points, std::int32_t* count);

}  // extern "C"

static_assert(sizeof(point_hook) == 8, "a point crosses as two packed 32-bit numbers");

// Room of the caller's array, and the longest stroke that may be reported: the matcher reads one slot past the end.
inline constexpr int hook_capacity = 501;
inline constexpr int hook_max_points = 500;

// A report is an X ClientMessage of format 32 with this message type, sent to the window given to InitHook:
// data.l[0] is 0 for a key going down and 1 for a key coming up, data.l[1] the key code.
inline constexpr char hook_report_atom[] = "_STROKEMIND_REPORT";
inline constexpr int hook_key_down = 0;
inline constexpr int hook_key_up = 1;

// A ClientMessage of this type asks whether the program still serves its events: the program sends it back as it came,
// to the window data.l[0]. A program that was seen to answer and then leaves a question open for seconds has hung, and
// the right button is the user's until the answer comes.
inline constexpr char hook_question_atom[] = "_STROKEMIND_QUESTION";

// Key codes that carry meaning on the main form.
inline constexpr int key_shift = 16;
inline constexpr int key_control = 17;
inline constexpr int key_stroke = 67;
