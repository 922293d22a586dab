#include "tests/desktop_input/fixture.h"

#include <X11/XKBlib.h>
#include <X11/Xlib.h>

#include <cstdio>
#include <memory>

namespace {

using test_support::Process;

struct CloseDisplay {
  void operator()(Display* display) const { XCloseDisplay(display); }
};
std::unique_ptr<Display, CloseDisplay> connect() {
  return std::unique_ptr<Display, CloseDisplay>(XOpenDisplay(nullptr));
}

std::string output_of(const std::string& command) {
  std::string output;
  FILE* const pipe = popen(command.c_str(), "r");
  for (int c = 0; pipe != nullptr && (c = std::fgetc(pipe)) != EOF;) output += static_cast<char>(c);
  if (pipe != nullptr) pclose(pipe);
  return output;
}

bool is_modifier(const std::string& name) {
  const auto begins = [&](const char* start) { return name.starts_with(start); };
  return begins("Shift_") || begins("Control_") || begins("Alt_") || begins("ISO_Level") || begins("Super_");
}

}  // namespace

void KeyTest::SetUp() {
  ASSERT_TRUE(server.ok());
  server.make_current();
}

void KeyTest::listen(const std::string& behaviour) {
  listener_ = Process({LISTENER, behaviour}, {server.environment()}, true);
  ASSERT_EQ(listener_.read_line(), "ready");
}

void KeyTest::set_layout(const std::string& layout) {
  ASSERT_EQ(Process({"sh", "-c", "setxkbmap " + layout}).wait(), 0);
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

std::vector<int> KeyTest::keys_down() {
  const auto display = connect();
  char bits[32];
  XQueryKeymap(display.get(), bits);
  std::vector<int> codes;
  for (int code = 0; code < 256; ++code) {
    if ((static_cast<unsigned char>(bits[code / 8]) >> (code % 8) & 1U) != 0) codes.push_back(code);
  }
  return codes;
}

std::string KeyTest::locked() {
  const auto display = connect();
  XkbStateRec state{};
  XkbGetState(display.get(), XkbUseCoreKbd, &state);
  return "locked " + std::to_string(state.locked_mods) + ", group " + std::to_string(state.group);
}

std::vector<std::string> KeyTest::heard() {
  std::vector<std::string> keys;
  modifiers_heard_ = 0;
  listener_.write_line("?");
  for (std::string line = listener_.read_line(); line != "so far"; line = listener_.read_line()) {
    if (line.empty()) {
      ADD_FAILURE() << "the window no longer answers";
      break;
    }
    if (is_modifier(line.substr(line.find(' ') + 1))) {
      ++modifiers_heard_;
    } else {
      if (line.ends_with(' ') && !line.ends_with("  ")) line.pop_back();
      keys.push_back(line);
    }
  }
  return keys;
}

std::string KeyTest::typed() {
  std::string text;
  for (const std::string& key : heard()) {
    const std::size_t name = key.find(' ') + 1;
    const std::size_t end = key.find(' ', name);
    if (end != std::string::npos) {
      text += key.substr(end + 1);
    } else {
      text += key.substr(name) == "Return" ? "\n" : "<" + key.substr(name) + ">";
    }
  }
  return text;
}
