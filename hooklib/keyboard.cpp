#include "hooklib/keyboard.h"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace hooklib {
namespace {

constexpr xcb_keysym_t escape_symbol = 0xff1b;

bool contains(const auto& list, auto value) { return std::find(list.begin(), list.end(), value) != list.end(); }

}  // namespace

Keyboard::Keyboard(Display& display) : display_(display) {
  read_modifiers();
  read_symbols();
  devices_changed();
}

void Keyboard::mapping_changed(std::uint8_t request) {
  if (request == XCB_MAPPING_MODIFIER) read_modifiers();
  if (request == XCB_MAPPING_KEYBOARD) read_symbols();
}

void Keyboard::read_modifiers() {
  xcb_connection_t* control = display_.control.get();
  const Held<xcb_get_modifier_mapping_reply_t> reply(
      xcb_get_modifier_mapping_reply(control, xcb_get_modifier_mapping(control), nullptr));
  if (!reply) return;
  control_codes_.clear();
  const xcb_keycode_t* codes = xcb_get_modifier_mapping_keycodes(reply.get());
  const std::size_t width = reply->keycodes_per_modifier;
  for (std::size_t i = XCB_MAP_INDEX_CONTROL * width; i < (XCB_MAP_INDEX_CONTROL + 1) * width; ++i) {
    if (codes[i] != 0) control_codes_.push_back(codes[i]);
  }
}

void Keyboard::read_symbols() {
  xcb_connection_t* control = display_.control.get();
  const xcb_setup_t* setup = xcb_get_setup(control);
  const auto count = static_cast<std::uint8_t>(setup->max_keycode - setup->min_keycode + 1);
  const Held<xcb_get_keyboard_mapping_reply_t> reply(xcb_get_keyboard_mapping_reply(
      control, xcb_get_keyboard_mapping(control, setup->min_keycode, count), nullptr));
  if (!reply || reply->keysyms_per_keycode == 0) return;
  escape_codes_.clear();
  const xcb_keysym_t* symbols = xcb_get_keyboard_mapping_keysyms(reply.get());
  for (std::uint32_t i = 0; i < count; ++i) {
    const xcb_keysym_t plain = symbols[static_cast<std::size_t>(i) * reply->keysyms_per_keycode];
    if (plain == escape_symbol) escape_codes_.push_back(setup->min_keycode + i);
  }
}

void Keyboard::devices_changed() {
  xcb_connection_t* control = display_.control.get();
  const Held<xcb_input_xi_query_device_reply_t> devices(xcb_input_xi_query_device_reply(
      control, xcb_input_xi_query_device(control, XCB_INPUT_DEVICE_ALL), nullptr));
  if (!devices) return;
  std::vector<std::pair<std::uint16_t, xcb_input_xi_get_property_cookie_t>> asked;
  for (auto device = xcb_input_xi_query_device_infos_iterator(devices.get()); device.rem > 0;
       xcb_input_xi_device_info_next(&device)) {
    asked.emplace_back(device.data->deviceid,
                       xcb_input_xi_get_property(control, device.data->deviceid, 0, display_.atoms.xtest_device,
                                                 XCB_GET_PROPERTY_TYPE_ANY, 0, 1));
  }
  injecting_devices_.clear();
  for (const auto& [device, cookie] : asked) {
    const Held<xcb_input_xi_get_property_reply_t> property(xcb_input_xi_get_property_reply(control, cookie, nullptr));
    if (!property || property->format != 8 || property->num_items == 0) continue;
    const auto* value = static_cast<const std::uint8_t*>(xcb_input_xi_get_property_items(property.get()));
    if (value[0] != 0) injecting_devices_.push_back(device);
  }
}

bool Keyboard::is_control(std::uint32_t code) const { return contains(control_codes_, code); }

bool Keyboard::is_escape(std::uint32_t code) const { return contains(escape_codes_, code); }

bool Keyboard::is_injected(std::uint16_t device) const { return contains(injecting_devices_, device); }

bool Keyboard::control_is_down() const {
  xcb_connection_t* control = display_.control.get();
  const Held<xcb_query_keymap_reply_t> reply(xcb_query_keymap_reply(control, xcb_query_keymap(control), nullptr));
  return reply && std::any_of(control_codes_.begin(), control_codes_.end(), [&](std::uint32_t code) {
           return (reply->keys[code / 8] >> (code % 8) & 1) != 0;
         });
}

}  // namespace hooklib
