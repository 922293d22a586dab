#include "hooklib/devices.h"

#include <xcb/xinput.h>

#include <algorithm>
#include <utility>

namespace hooklib {
namespace {

bool contains(const std::vector<std::uint16_t>& devices, std::uint16_t device) {
  return std::find(devices.begin(), devices.end(), device) != devices.end();
}

}  // namespace

void Devices::refresh() {
  xcb_connection_t* control = display_.control.get();
  const Held<xcb_input_xi_query_device_reply_t> devices(
      xcb_input_xi_query_device_reply(control, xcb_input_xi_query_device(control, XCB_INPUT_DEVICE_ALL), nullptr));
  if (!devices) return;
  attached_.clear();
  injecting_.clear();
  std::vector<std::pair<std::uint16_t, xcb_input_xi_get_property_cookie_t>> asked;
  for (auto device = xcb_input_xi_query_device_infos_iterator(devices.get()); device.rem > 0;
       xcb_input_xi_device_info_next(&device)) {
    if (device.data->type != XCB_INPUT_DEVICE_TYPE_SLAVE_POINTER &&
        device.data->type != XCB_INPUT_DEVICE_TYPE_SLAVE_KEYBOARD) {
      continue;
    }
    attached_.push_back(device.data->deviceid);
    asked.emplace_back(device.data->deviceid,
                       xcb_input_xi_get_property(control, device.data->deviceid, 0, display_.atoms.xtest_device,
                                                 XCB_GET_PROPERTY_TYPE_ANY, 0, 1));
  }
  for (const auto& [device, cookie] : asked) {
    const Held<xcb_input_xi_get_property_reply_t> property(xcb_input_xi_get_property_reply(control, cookie, nullptr));
    if (!property || property->format != 8 || property->num_items == 0) continue;
    const auto* value = static_cast<const std::uint8_t*>(xcb_input_xi_get_property_items(property.get()));
    if (value[0] != 0) injecting_.push_back(device);
  }
}

bool Devices::is_attached(std::uint16_t device) const {
  return contains(attached_, device);
}

bool Devices::is_injected(std::uint16_t device) const {
  return contains(injecting_, device);
}

}  // namespace hooklib
