// Single key events, and the state of the keyboard.
#include <X11/keysym.h>

#include <cstdio>
#include <fstream>
#include <map>
#include <optional>

#include "desktop/input.h"
#include "desktop/keymap_symbols.h"
#include "tests/desktop_input/fixture.h"

namespace {

using desktop::DesktopInput;
using Keys = std::vector<std::string>;

constexpr std::uint8_t key_control = 0x11;
constexpr std::uint8_t key_alt = 0x12;
constexpr std::uint8_t key_windows = 0x5B;

class KeyEvents : public KeyTest {
 protected:
  static void strike(DesktopInput& input, std::uint8_t key) {
    input.keybd_event(key, 0, platform::KEYEVENTF_EXTENDEDKEY, 0);
    input.keybd_event(key, 0, platform::KEYEVENTF_EXTENDEDKEY | platform::KEYEVENTF_KEYUP, 0);
  }
};

TEST_F(KeyEvents, ShortcutsMeanTheSameUnderEveryLayout) {
  struct Case {
    std::uint8_t modifier, key;
    std::string heard;
  };
  const std::vector<Case> cases{{key_control, 'A', "4 a"},
                                {key_control, 'Z', "4 z"},
                                {key_control, 'V', "4 v"},
                                {key_alt, 0x73, "8 F4"},
                                {key_windows, 'L', "40 l l"}};
  for (const std::string layout : {"fr", "fr bepo", "ru", "us,ru -option grp:toggle"}) {
    set_layout(layout);
    listen();
    const std::string before = key_maps();
    if (layout.find(',') != std::string::npos) test_support::User(server).type(XK_ISO_Next_Group);
    const std::string state = locked();
    {
      DesktopInput input;
      heard();
      for (const auto& [modifier, key, keys] : cases) {
        input.keybd_event(modifier, 0, 0, 0);
        strike(input, key);
        input.keybd_event(modifier, 0, platform::KEYEVENTF_KEYUP, 0);
        EXPECT_EQ(heard(), Keys{keys}) << layout << ' ' << key;
        EXPECT_EQ(keys_down(), std::vector<int>()) << layout << ' ' << key;
      }
    }
    EXPECT_EQ(locked(), state) << layout;
    EXPECT_EQ(key_maps(), before) << layout;
  }
}

TEST_F(KeyEvents, EveryKeyOfTheProgramIsThere) {
  listen();
  DesktopInput input;
  const std::map<std::uint8_t, std::string> keys{{0xA6, "0 XF86Back"}, {0xA7, "0 XF86Forward"}, {0x0D, "0 Return"},
                                                 {0x25, "0 Left"},     {'7', "0 7 7"},          {0x87, "0 F24"},
                                                 {0x20, "0 space  "},  {0x2C, "0 Print"}};
  for (const auto& [key, name] : keys) {
    strike(input, key);
    EXPECT_EQ(heard(), Keys{name}) << static_cast<int>(key);
  }
}

TEST_F(KeyEvents, WhatIsDownComesUpAtTheEnd) {
  set_layout("us,ru -option grp:toggle");
  test_support::User(server).type(XK_ISO_Next_Group);
  std::optional<DesktopInput> input(std::in_place);
  const auto press = [&] {
    for (const std::uint8_t key : {key_control, std::uint8_t{'X'}, std::uint8_t{0xA6}})
      input->keybd_event(key, 0, 0, 0);
    EXPECT_EQ(keys_down().size(), 3U);
  };
  press();
  input->release_all();
  EXPECT_EQ(keys_down(), std::vector<int>());
  press();
  // The release goes to the key that was pressed, wherever its letter may be by now.
  set_layout("fr");
  input.reset();
  EXPECT_EQ(keys_down(), std::vector<int>());
}

TEST_F(KeyEvents, TheStateOfTheKeyboardIsReadAndSet) {
  test_support::User user(server);
  DesktopInput input;
  const auto expect = [&](const std::map<int, int>& bytes) {
    const platform::KeyboardState state = input.GetKeyboardState();
    for (int key = 0; key < 256; ++key) {
      const auto byte = bytes.find(key);
      EXPECT_EQ(state[static_cast<std::size_t>(key)], byte == bytes.end() ? 0 : byte->second) << "key " << key;
    }
  };
  expect({});
  user.key_down(XK_Control_R);
  user.key_down(XK_q);
  user.key_down(XK_Caps_Lock);
  expect({{0x11, 0x80}, {0xA3, 0x80}, {'Q', 0x80}, {0x14, 0x81}});
  user.key_up(XK_Caps_Lock);
  user.key_up(XK_q);
  user.key_up(XK_Control_R);
  expect({{0x14, 1}});

  platform::KeyboardState wanted{};
  for (const int on : {7, 0, 5, 2, 0}) {
    wanted[0x90] = static_cast<std::uint8_t>(on & 1);
    wanted[0x14] = static_cast<std::uint8_t>(on >> 1 & 1);
    wanted[0x91] = static_cast<std::uint8_t>(on >> 2 & 1);
    input.SetKeyboardState(wanted);
    expect({{0x90, wanted[0x90]}, {0x14, wanted[0x14]}, {0x91, wanted[0x91]}});
  }
}

TEST(KeySymbols, AgreeWithTheProtocolsOwnList) {
  std::ifstream list("/usr/include/X11/keysymdef.h");
  int compared = 0;
  for (std::string line; std::getline(list, line);) {
    unsigned symbol = 0, character = 0;
    if (std::sscanf(line.c_str(), "#define %*s 0x%x /* U+%x", &symbol, &character) != 2) continue;
    ++compared;
    EXPECT_EQ(desktop::character_of_symbol(symbol), character) << line;
  }
  EXPECT_GT(compared, 1000);
}

}  // namespace
