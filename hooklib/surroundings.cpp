#include "hooklib/surroundings.h"

#include <algorithm>
#include <charconv>
#include <cstddef>

namespace hooklib {
namespace {

constexpr double plain_dpi = 96;
// Between these, a density is one that a screen can have.
constexpr double least_dpi = 24;
constexpr double most_dpi = 1200;
// Most that is read of the resources, in units of four bytes.
constexpr std::uint32_t resources_limit = 1 << 18;

}  // namespace

double density_of(std::string_view resources) {
  constexpr std::string_view name = "Xft.dpi:";
  while (!resources.empty()) {
    const std::size_t end = resources.find('\n');
    std::string_view line = resources.substr(0, end);
    resources.remove_prefix(end == std::string_view::npos ? resources.size() : end + 1);
    if (!line.starts_with(name)) continue;
    line.remove_prefix(name.size());
    line.remove_prefix(std::min(line.find_first_not_of(" \t"), line.size()));
    double dpi = 0;
    const auto [rest, error] = std::from_chars(line.data(), line.data() + line.size(), dpi);
    if (error == std::errc() && dpi >= least_dpi && dpi <= most_dpi) return dpi / plain_dpi;
  }
  return 1;
}

SurroundingsQuestion::SurroundingsQuestion(Display& display)
    : display_(display),
      resources_(xcb_get_property(display.control.get(), 0, display.screen->root, XCB_ATOM_RESOURCE_MANAGER,
                                  XCB_ATOM_STRING, 0, resources_limit)),
      compositor_(xcb_get_selection_owner(display.control.get(), display.atoms.compositor)),
      geometry_(xcb_get_geometry(display.control.get(), display.screen->root)) {}

Surroundings SurroundingsQuestion::answer() {
  xcb_connection_t* control = display_.control.get();
  const Held<xcb_get_property_reply_t> resources(xcb_get_property_reply(control, resources_, nullptr));
  const Held<xcb_get_selection_owner_reply_t> compositor(xcb_get_selection_owner_reply(control, compositor_, nullptr));
  const Held<xcb_get_geometry_reply_t> geometry(xcb_get_geometry_reply(control, geometry_, nullptr));
  Surroundings found;
  if (resources) {
    found.density = density_of({static_cast<const char*>(xcb_get_property_value(resources.get())),
                                static_cast<std::size_t>(xcb_get_property_value_length(resources.get()))});
  }
  found.compositor = compositor ? compositor->owner : xcb_window_t{XCB_WINDOW_NONE};
  found.width = geometry ? geometry->width : display_.screen->width_in_pixels;
  found.height = geometry ? geometry->height : display_.screen->height_in_pixels;
  return found;
}

}  // namespace hooklib
