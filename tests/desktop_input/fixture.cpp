#include "tests/desktop_input/fixture.h"

#include <X11/XKBlib.h>
#include <X11/Xlib.h>

#include <bit>
#include <cstdio>
#include <memory>

using stage::Process;

static std::string output_of(const std::string& command) {
  std::string output;
  FILE* const pipe = popen(command.c_str(), "r");
  for (int c = 0; pipe != nullptr && (c = std::fgetc(pipe)) != EOF;) output += static_cast<char>(c);
  if (pipe != nullptr) pclose(pipe);
  return output;
}

KeyTest::KeyTest() {
  EXPECT_TRUE(server.ok());
  server.make_current();
}

void KeyTest::listen(const std::string& behaviour) {
  listener_ = Process({LISTENER, behaviour}, {server.environment()}, true);
  ASSERT_EQ(listener_.read_line(), "ready");
}

void KeyTest::set_layout(const std::string& layout) {
  ASSERT_EQ(Process({"sh", "-c", "setxkbmap " + layout}).wait(), 0);
  if (layout.find("grp:") != std::string::npos) stage::User(server).type(XK_ISO_Next_Group);
}

std::string KeyTest::key_maps() {
  std::string maps;
  // The keyboard as a whole, that of XTEST, and the one of flesh and blood, as Xvfb numbers them.
  for (const char* device : {"3", "5", "7"}) {
    const std::string map = output_of(std::string("xkbcomp -w0 -xkb -i ") + device + " \"$DISPLAY\" - 2>/dev/null");
    EXPECT_NE(map.find("xkb_symbols"), std::string::npos) << "device " << device;
    maps += map;
  }
  return maps;
}

std::string KeyTest::state() {
  const std::unique_ptr<Display, int (*)(Display*)> display(XOpenDisplay(nullptr), XCloseDisplay);
  char bits[32];
  XQueryKeymap(display.get(), bits);
  int down = 0;
  for (const char byte : bits) down += std::popcount(static_cast<unsigned char>(byte));
  XkbStateRec state{};
  XkbGetState(display.get(), XkbUseCoreKbd, &state);
  return std::to_string(down) + " down, locked " + std::to_string(state.locked_mods) + ", group " +
         std::to_string(state.group);
}

std::string KeyTest::heard(bool as_text) {
  std::string keys;
  listener_.write_line("?");
  for (std::string line = listener_.read_line(); line != "so far"; line = listener_.read_line()) {
    if (line.empty()) return keys + " and then the window no longer answers";
    const std::size_t name = line.find(' ') + 1, end = line.find(' ', name);
    const std::string text = end != std::string::npos ? line.substr(end + 1) : "<" + line.substr(name) + ">";
    keys += !as_text ? (keys.empty() ? "" : "|") + line : line == "^" ? "" : text;
  }
  return keys;
}
