// Texts and single keys arrive as they were written, and leave the keyboard as it was.
#include <cstdio>
#include <fstream>
#include <map>
#include <optional>

#include "desktop/input.h"
#include "desktop/keymap_symbols.h"
#include "platform/sendkeys.h"
#include "platform/text.h"
#include "tests/desktop_input/fixture.h"

namespace {

using desktop::DesktopInput;

const std::string prose = "Bonjour, ça va ? œuvre 12 € 漢字 éàèùç @#|\\[x]'\"<>";

std::string row_of(char32_t first, char32_t count) {
  std::string text;
  for (char32_t c = first; c < first + count; ++c) platform::append_code_point(text, c);
  return text;
}

using Typing = KeyTest;

TEST_F(Typing, ATextArrivesUnderEveryLayoutAndTheLayoutStays) {
  for (const std::string layout : {"us", "fr", "fr bepo", "ru", "us,ru"}) {
    set_layout(layout);
    const std::string before = key_maps();
    listen();
    {
      DesktopInput input;
      input.SendKeys(prose + "{{}{}}{~}{^}{%}{+}{(}{)}~", false);
      EXPECT_EQ(typed(), prose + "{}~^%+()<Return>") << layout;
      EXPECT_EQ(state(), "0 down, locked 0, group 0") << layout;
      input.SendKeys("Щ" + prose, true);
      EXPECT_EQ(typed(), "Щ" + prose) << layout;
    }
    EXPECT_EQ(key_maps(), before) << layout;
  }
}

TEST_F(Typing, KeysAndModifiersArriveAsWritten) {
  listen();
  const std::pair<std::string, std::string> cases[] = {
      {"{TAB}{BS}{F16}{LEFT 2}", "0 Tab|0 BackSpace|0 F16|0 Left|0 Left"},
      {"{ADD}{DIVIDE}", "0 KP_Add +|0 KP_Divide /"},
      {"+a+b", "^|1 A A|^|1 B B"},
      {"%({TAB 2}){TAB}", "^|8 Tab|8 Tab|0 Tab"},
      {"^+{END}%{F4}", "^|^|5 End|^|8 F4"},
      {"+(a^(bc)d)", "^|1 A A|^|5 B|5 C|1 D D"},
      {"{BREAK}", "^|4 Break"},
      {"a{b", ""}};
  for (const std::string layout : {"us", "fr", "us,ru"}) {
    set_layout(layout);
    DesktopInput input;
    for (const auto& [text, keys] : cases) {
      input.SendKeys(text, false);
      EXPECT_EQ(heard(), keys) << layout << ' ' << text;
    }
  }
}

TEST_F(Typing, LocksNeitherDistortATextNorAreChangedByIt) {
  stage::User user(server);
  listen();
  for (const std::string layout : {"us", "fr"}) {
    set_layout(layout);
    DesktopInput input;
    for (const unsigned long lock : {XK_Caps_Lock, XK_Num_Lock}) {
      user.type(lock);
      const std::string before = state();
      EXPECT_NE(before, "0 down, locked 0, group 0");
      heard();
      input.SendKeys(prose, false);
      EXPECT_EQ(typed(), prose) << layout;
      EXPECT_EQ(state(), before);
      user.type(lock);
    }
    // A lock key in the text is another matter: it is struck, and the text still arrives as written.
    heard();
    input.SendKeys("aé{CAPSLOCK}bÉ", false);
    EXPECT_EQ(typed(), "aé<Caps_Lock>bÉ") << layout;
    EXPECT_EQ(state(), "0 down, locked 2, group 0");
    input.SendKeys("{CAPSLOCK}", false);
    EXPECT_EQ(state(), "0 down, locked 0, group 0");
  }
}

TEST_F(Typing, ModifiersThatTheUserHoldsAreLetGoOf) {
  stage::User user(server);
  listen();
  DesktopInput input;
  for (const unsigned long modifier : {XK_Shift_L, XK_Control_L, XK_ISO_Level3_Shift, XK_Shift_L, XK_Control_L}) {
    user.key_down(modifier);
    heard();
    input.SendKeys("abÇ1", false);
    EXPECT_EQ(typed(), "abÇ1");
    user.key_up(modifier);
    EXPECT_EQ(state(), "0 down, locked 0, group 0");
  }
}

TEST_F(Typing, MoreForeignCharactersThanThereAreSpareKeys) {
  const std::string before = key_maps();
  for (const std::string behaviour : {"pings", "lazy", "deaf"}) {
    listen(behaviour);
    std::optional<DesktopInput> input(std::in_place);
    // Forty, then some of them again, then others straight behind.
    for (const std::string& text : {row_of(0x4E00, 40), row_of(0x4E10, 10) + row_of(0x0430, 5), row_of(0x1200, 19)}) {
      for (const std::string& part : {text, std::string("a")}) input->SendKeys(part, false);
      EXPECT_EQ(typed(), text + "a") << behaviour;
    }
    // The last word is still on its way when the keys are given back.
    input->SendKeys(row_of(0x0E01, 19), false);
    input.reset();
    EXPECT_EQ(typed(), row_of(0x0E01, 19)) << behaviour;
  }
  EXPECT_EQ(key_maps(), before);
}

TEST_F(Typing, ALayoutThatChangesInBetweenIsFollowed) {
  listen();
  set_layout("de");
  const std::string german = key_maps();
  {
    DesktopInput input;
    for (const auto& [layout, text] : {std::pair("us", "ça"), {"de", "çzyß"}, {"fr", "çqé漢"}}) {
      set_layout(layout);
      input.SendKeys(text, false);
      EXPECT_EQ(typed(), text);
    }
    set_layout("de");
  }
  EXPECT_EQ(key_maps(), german);
}

constexpr std::uint8_t key_control = 0x11, key_alt = 0x12, key_windows = 0x5B;

using KeyEvents = KeyTest;

TEST_F(KeyEvents, KeysAndShortcutsMeanTheSameUnderEveryLayout) {
  const std::pair<std::vector<std::uint8_t>, std::string> cases[] = {
      {{key_control, 'A'}, "4 a"}, {{key_control, 'Z'}, "4 z"},    {{key_control, 'X'}, "4 x"},
      {{key_control, 'C'}, "4 c"}, {{key_control, 'V'}, "4 v"},    {{key_control, 0xA6}, "4 XF86Back"},
      {{key_alt, 0x73}, "8 F4"},   {{key_windows, 'L'}, "40 l l"}, {{0xA6}, "0 XF86Back"},
      {{0xA7}, "0 XF86Forward"},   {{0x0D}, "0 Return"},           {{0x25}, "0 Left"},
      {{0x87}, "0 F24"},           {{0x20}, "0 space  "},          {{0x2C}, "0 Print"}};
  for (const std::string layout : {"us", "de", "fr", "fr bepo", "ru", "us,ru -option grp:toggle"}) {
    listen();
    const std::string before = (set_layout(layout), key_maps()), state_before = state();
    {
      DesktopInput input;
      heard();
      for (const auto& [keys, name] : cases) {
        for (const std::uint32_t half : {0U, platform::KEYEVENTF_KEYUP}) {
          for (const auto key : keys) input.keybd_event(key, 0, platform::KEYEVENTF_EXTENDEDKEY | half, 0);
        }
        EXPECT_EQ(heard(), (keys.size() > 1 ? "^|" : "") + name) << layout;
        EXPECT_EQ(state(), state_before) << layout << ' ' << name;
      }
    }
    EXPECT_EQ(key_maps(), before) << layout;
  }
}

TEST_F(KeyEvents, WhatIsDownComesUpAtTheEnd) {
  set_layout("us,ru -option grp:toggle");
  std::optional<DesktopInput> input(std::in_place);
  const auto press = [&] {
    for (const int key : {0x11, 0x58, 0xA6}) input->keybd_event(static_cast<std::uint8_t>(key), 0, 0, 0);
    EXPECT_TRUE(state().starts_with("3 down")) << state();
  };
  press();
  input->release_all();
  EXPECT_EQ(state(), "0 down, locked 0, group 1");
  press();
  // The release goes to the key that was pressed, wherever its letter may be by now.
  set_layout("fr");
  input.reset();
  EXPECT_EQ(state(), "0 down, locked 0, group 0");
}

TEST_F(KeyEvents, TheStateOfTheKeyboardIsReadAndSet) {
  stage::User user(server);
  DesktopInput input;
  const auto expect = [&](const std::map<int, int>& bytes) {
    const platform::KeyboardState state = input.GetKeyboardState();
    for (int key = 0; key < 256; ++key) {
      const auto byte = bytes.find(key);
      EXPECT_EQ(state[static_cast<std::size_t>(key)], byte == bytes.end() ? 0 : byte->second) << "key " << key;
    }
  };
  expect({});
  for (const auto key : {XK_Control_R, XK_q, XK_Caps_Lock}) user.key_down(key);
  expect({{0x11, 0x80}, {0xA3, 0x80}, {'Q', 0x80}, {0x14, 0x81}});
  for (const auto key : {XK_Control_R, XK_q, XK_Caps_Lock}) user.key_up(key);
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
