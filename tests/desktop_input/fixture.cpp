#include "tests/desktop_input/fixture.h"

using stage::Process;

KeyTest::KeyTest() {
  EXPECT_TRUE(server.ok());
  server.make_current();
}

void KeyTest::listen(const std::string& behaviour) {
  listener_ = Process({LISTENER, behaviour}, {server.environment()}, true);
  ASSERT_EQ(listener_.read_line(), "ready");
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
