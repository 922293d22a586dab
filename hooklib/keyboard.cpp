#include "hooklib/keyboard.h"

#include <algorithm>
#include <cstddef>

namespace hooklib {
namespace {

constexpr xcb_keysym_t escape_symbol = 0xff1b;

bool contains(const auto& list, auto value) {
  return std::find(list.begin(), list.end(), value) != list.end();
}

}  // namespace

Keyboard::Keyboard(Display& display) : display_(display) {
  read_modifiers();
  read_symbols();
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
  const Held<xcb_get_keyboard_mapping_reply_t> reply(
      xcb_get_keyboard_mapping_reply(control, xcb_get_keyboard_mapping(control, setup->min_keycode, count), nullptr));
  if (!reply || reply->keysyms_per_keycode == 0) return;
  escape_codes_.clear();
  const xcb_keysym_t* symbols = xcb_get_keyboard_mapping_keysyms(reply.get());
  for (std::uint32_t i = 0; i < count; ++i) {
    const xcb_keysym_t plain = symbols[static_cast<std::size_t>(i) * reply->keysyms_per_keycode];
    if (plain == escape_symbol) escape_codes_.push_back(setup->min_keycode + i);
  }
}

bool Keyboard::is_control(std::uint32_t code) const {
  return contains(control_codes_, code);
}

bool Keyboard::is_escape(std::uint32_t code) const {
  return contains(escape_codes_, code);
}

bool Keyboard::control_is_down() const {
  xcb_connection_t* control = display_.control.get();
  const Held<xcb_query_keymap_reply_t> reply(xcb_query_keymap_reply(control, xcb_query_keymap(control), nullptr));
  return reply && std::any_of(control_codes_.begin(), control_codes_.end(),
                              [&](std::uint32_t code) { return (reply->keys[code / 8] >> (code % 8) & 1) != 0; });
}

}  // namespace hooklib
