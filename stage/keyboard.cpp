#include "stage/keyboard.h"

#include <X11/XKBlib.h>
#include <X11/Xlib.h>
#include <X11/keysym.h>

#include <bit>
#include <cstdio>
#include <stdexcept>

#include "stage/windows.h"

namespace stage {

void set_layout(const XServer& server, const std::string& layout) {
  const std::string command = "setxkbmap -display " + server.display() + " " + layout;
  if (Process({"sh", "-c", command}).wait() != 0) throw std::runtime_error("no layout " + layout);
  if (layout.find("grp:") != std::string::npos) User(server).type(XK_ISO_Next_Group);
}

std::string key_maps(const XServer& server) {
  std::string maps;
  // The keyboard as a whole, that of XTEST, and the one of flesh and blood, as Xvfb numbers them.
  for (const char* device : {"3", "5", "7"}) {
    const std::size_t before = maps.size();
    const std::string command =
        std::string("xkbcomp -w0 -xkb -i ") + device + " " + server.display() + " - 2>/dev/null";
    std::FILE* const pipe = popen(command.c_str(), "r");
    for (int c = 0; pipe != nullptr && (c = std::fgetc(pipe)) != EOF;) maps += static_cast<char>(c);
    if (pipe != nullptr) pclose(pipe);
    if (maps.find("xkb_symbols", before) == std::string::npos) throw std::runtime_error("no key map of " + command);
  }
  return maps;
}

std::string key_state(const XServer& server) {
  const DisplayHandle display(XOpenDisplay(server.display().c_str()));
  char bits[32];
  XQueryKeymap(display.get(), bits);
  int down = 0;
  for (const char byte : bits) down += std::popcount(static_cast<unsigned char>(byte));
  XkbStateRec state{};
  XkbGetState(display.get(), XkbUseCoreKbd, &state);
  return std::to_string(down) + " down, locked " + std::to_string(state.locked_mods) + ", group " +
         std::to_string(state.group);
}

}  // namespace stage
