#include "hooklib/injected.h"

#include <xcb/xinput.h>
#include <xcb/xtest.h>

#include <cstddef>
#include <cstdlib>
#include <memory>
#include <string_view>

namespace hooklib {
namespace {

struct Free {
  void operator()(void* block) const { std::free(block); }
};
template <class T>
using Held = std::unique_ptr<T, Free>;

bool bit(const std::uint8_t* bits, std::size_t number) {
  return (bits[number / 8] >> (number % 8) & 1) != 0;
}

}  // namespace

Injected::Injected(xcb_connection_t* display) : display_(display) {
  const Held<xcb_input_xi_query_device_reply_t> devices(
      xcb_input_xi_query_device_reply(display, xcb_input_xi_query_device(display, XCB_INPUT_DEVICE_ALL), nullptr));
  if (!devices) return;
  for (auto device = xcb_input_xi_query_device_infos_iterator(devices.get()); device.rem > 0;
       xcb_input_xi_device_info_next(&device)) {
    const std::string_view name(xcb_input_xi_device_info_name(device.data),
                                static_cast<std::size_t>(xcb_input_xi_device_info_name_length(device.data)));
    if (name == "Virtual core XTEST keyboard") keyboard_ = device.data->deviceid;
    if (name == "Virtual core XTEST pointer") pointer_ = device.data->deviceid;
  }
}

std::vector<Injected::Down> Injected::down() const {
  std::vector<Down> found;
  if (keyboard_ != 0) add_down(keyboard_, found);
  if (pointer_ != 0) add_down(pointer_, found);
  return found;
}

void Injected::add_down(std::uint16_t device, std::vector<Down>& found) const {
  const Held<xcb_input_query_device_state_reply_t> state(xcb_input_query_device_state_reply(
      display_, xcb_input_query_device_state(display_, static_cast<std::uint8_t>(device)), nullptr));
  if (!state) return;
  for (auto part = xcb_input_query_device_state_classes_iterator(state.get()); part.rem > 0;
       xcb_input_input_state_next(&part)) {
    const bool keys = part.data->class_id == XCB_INPUT_INPUT_CLASS_KEY;
    if (!keys && part.data->class_id != XCB_INPUT_INPUT_CLASS_BUTTON) continue;
    // Both kinds are laid out alike: a byte of padding after the number, then a bit for each code.
    const auto& state_of_keys = reinterpret_cast<const xcb_input_key_state_t&>(*part.data);
    for (std::size_t code = 1; code < sizeof(state_of_keys.keys) * 8; ++code) {
      if (bit(state_of_keys.keys, code)) found.push_back({keys, static_cast<std::uint8_t>(code)});
    }
  }
}

void Injected::release_all() const {
  for (const Down& one : down()) {
    xcb_test_fake_input(display_, one.key ? XCB_KEY_RELEASE : XCB_BUTTON_RELEASE, one.code, XCB_CURRENT_TIME, XCB_NONE,
                        0, 0, 0);
  }
  xcb_flush(display_);
}

}  // namespace hooklib
