#include "hooklib/recording.h"

#include <xcb/xcbext.h>

#include <cstddef>
#include <cstring>

#include "hooklib/gesture.h"

namespace hooklib {
namespace {

// Kinds of reply in a recording, and the size of one event in it.
constexpr std::uint8_t from_server = 0;
constexpr std::uint8_t start_of_data = 4;
constexpr std::uint8_t end_of_data = 5;
constexpr std::size_t event_size = 32;

void hand_on(const xcb_record_enable_context_reply_t& reply, const Recording::Sink& sink) {
  const std::uint8_t* data = xcb_record_enable_context_data(&reply);
  const auto length = static_cast<std::size_t>(xcb_record_enable_context_data_length(&reply));
  for (std::size_t at = 0; at + event_size <= length; at += event_size) {
    // Presses and releases carry the position at the same place as motion does.
    xcb_motion_notify_event_t event;
    static_assert(sizeof(event) == event_size);
    std::memcpy(&event, data + at, event_size);
    const int type = is_wheel(event.detail) ? XCB_MOTION_NOTIFY : event.response_type & 0x7f;
    const Recording::Kind kind = type == XCB_BUTTON_PRESS     ? Recording::Kind::press
                                 : type == XCB_BUTTON_RELEASE ? Recording::Kind::release
                                                              : Recording::Kind::motion;
    sink({static_cast<double>(event.root_x), static_cast<double>(event.root_y), event.time}, kind);
  }
}

}  // namespace

void Recording::begin() {
  // After a drawing that was cancelled the end of its stream is still on its way: the server was told to stop before it
  // gave us this press.
  wait_for(end_of_data);
  stream_ = xcb_record_enable_context_unchecked(display_.data.get(), display_.recording).sequence;
  open_ = true;
  finished_ = false;
  // Until the server has begun, an end() on the other connection could overtake this, and the stream would never end.
  wait_for(start_of_data);
}

// Waits for the next reply of this kind and drops those before it; an end of any sort closes the stream.
void Recording::wait_for(std::uint8_t category) {
  while (open_) {
    const Held<xcb_record_enable_context_reply_t> reply(
        xcb_record_enable_context_reply(display_.data.get(), {stream_}, nullptr));
    open_ = reply && reply->category != end_of_data;
    finished_ = !open_;
    if (reply && reply->category == category) return;
  }
}

void Recording::end() {
  xcb_record_disable_context(display_.control.get(), display_.recording);
}

bool Recording::take(const Sink& sink) {
  xcb_connection_t* data = display_.data.get();
  // Nothing is selected on this connection; asking for events is what reads its socket.
  while (const Held<xcb_generic_event_t> stray{xcb_poll_for_event(data)}) continue;
  bool any = false;
  while (open_) {
    void* answer = nullptr;
    xcb_generic_error_t* error = nullptr;
    if (xcb_poll_for_reply(data, stream_, &answer, &error) == 0) break;
    const Held<xcb_generic_error_t> refused(error);
    const Held<xcb_record_enable_context_reply_t> reply(static_cast<xcb_record_enable_context_reply_t*>(answer));
    any = true;
    if (!reply || reply->category == end_of_data) {
      open_ = false;
      finished_ = true;
    } else if (reply->category == from_server) {
      hand_on(*reply, sink);
    }
  }
  return any;
}

}  // namespace hooklib
