// Texts arrive as they were written, and leave the keyboard as it was.
#include <X11/keysym.h>

#include <optional>

#include "desktop/input.h"
#include "platform/sendkeys.h"
#include "platform/text.h"
#include "tests/desktop_input/fixture.h"

namespace {

using desktop::DesktopInput;

const std::string prose = "Bonjour, ça va ? œuvre 12 € 漢字 éàèùç @#|\\[x]'\"<>";

// `count` characters from `first` on.
std::string row_of(char32_t first, int count) {
  std::string text;
  for (int i = 0; i < count; ++i) platform::append_code_point(text, first + static_cast<char32_t>(i));
  return text;
}

class Typing : public KeyTest {};

TEST_F(Typing, ATextArrivesUnderEveryLayoutAndTheLayoutStays) {
  for (const std::string layout : {"us", "fr", "fr bepo", "ru", "us,ru"}) {
    set_layout(layout);
    const std::string before = key_maps();
    listen();
    {
      DesktopInput input;
      input.SendKeys(prose + "{{}{}}{~}{^}{%}{+}{(}{)}~", false);
      EXPECT_EQ(typed(), prose + "{}~^%+()\n") << layout;
      EXPECT_EQ(keys_down(), std::vector<int>()) << layout;
      input.SendKeys("Щ" + prose, true);
      EXPECT_EQ(typed(), "Щ" + prose) << layout;
    }
    EXPECT_EQ(key_maps(), before) << layout;
  }
}

TEST_F(Typing, KeysAndModifiersArriveAsWritten) {
  listen();
  struct Case {
    std::string text;
    std::vector<std::string> keys;
    int modifiers;
  };
  const std::vector<Case> cases{
      {"{TAB}{BS}{F16}{LEFT 2}", {"0 Tab", "0 BackSpace", "0 F16", "0 Left", "0 Left"}, 0},
      {"{ADD}{DIVIDE}", {"0 KP_Add +", "0 KP_Divide /"}, 0},
      {"+a+b", {"1 A A", "1 B B"}, 2},
      {"%({TAB 2}){TAB}", {"8 Tab", "8 Tab", "0 Tab"}, 1},
      {"^+{END}%{F4}", {"5 End", "8 F4"}, 3},
      {"+(a^(bc)d)", {"1 A A", "5 B", "5 C", "1 D D"}, 2},
      {"{BREAK}", {"4 Break"}, 1},
      {"a{b", {}, 0},
  };
  for (const std::string layout : {"us", "fr", "us,ru"}) {
    set_layout(layout);
    DesktopInput input;
    for (const auto& [text, keys, modifiers] : cases) {
      input.SendKeys(text, false);
      EXPECT_EQ(heard(), keys) << layout << ' ' << text;
      EXPECT_EQ(modifiers_heard(), modifiers) << layout << ' ' << text;
    }
  }
}

TEST_F(Typing, LocksNeitherDistortATextNorAreChangedByIt) {
  test_support::User user(server);
  listen();
  for (const std::string layout : {"us", "fr"}) {
    set_layout(layout);
    DesktopInput input;
    for (const unsigned long lock : {XK_Caps_Lock, XK_Num_Lock}) {
      user.type(lock);
      const std::string before = locked();
      EXPECT_NE(before, "locked 0, group 0");
      heard();
      input.SendKeys(prose, false);
      EXPECT_EQ(typed(), prose) << layout;
      EXPECT_EQ(locked(), before);
      user.type(lock);
    }
    // A lock key in the text is another matter: it is struck, and the text still arrives as written.
    heard();
    input.SendKeys("aé{CAPSLOCK}bÉ", false);
    EXPECT_EQ(typed(), "aé<Caps_Lock>bÉ") << layout;
    EXPECT_EQ(locked(), "locked 2, group 0");
    input.SendKeys("{CAPSLOCK}", false);
    EXPECT_EQ(locked(), "locked 0, group 0");
  }
}

TEST_F(Typing, ModifiersThatTheUserHoldsAreLetGoOf) {
  test_support::User user(server);
  listen();
  DesktopInput input;
  for (const unsigned long modifier : {XK_Shift_L, XK_Control_L, XK_ISO_Level3_Shift}) {
    user.key_down(modifier);
    heard();
    input.SendKeys("abÇ1", false);
    EXPECT_EQ(typed(), "abÇ1");
    user.key_up(modifier);
    EXPECT_EQ(keys_down(), std::vector<int>());
    // The next time it works as ever.
    user.key_down(modifier);
    input.SendKeys("ab", false);
    user.key_up(modifier);
    EXPECT_EQ(typed(), "ab");
  }
}

TEST_F(Typing, MoreForeignCharactersThanThereAreSpareKeys) {
  const std::string before = key_maps();
  for (const std::string behaviour : {"pings", "lazy", "deaf"}) {
    listen(behaviour);
    std::optional<DesktopInput> input(std::in_place);
    // Forty, then some of them again, then others straight behind.
    for (const std::string& text : {row_of(0x4E00, 40), row_of(0x4E10, 10) + row_of(0x0430, 5), row_of(0x1200, 19)}) {
      input->SendKeys(text, false);
      input->SendKeys("a", false);
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
  set_layout("us");
  {
    DesktopInput input;
    input.SendKeys("ça", false);
    EXPECT_EQ(typed(), "ça");
    set_layout("de");
    input.SendKeys("çzyß", false);
    EXPECT_EQ(typed(), "çzyß");
    set_layout("fr");
    input.SendKeys("çqé漢", false);
    EXPECT_EQ(typed(), "çqé漢");
    set_layout("de");
  }
  EXPECT_EQ(key_maps(), german);
}

}  // namespace
