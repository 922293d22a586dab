#include "platform/sendkeys.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include "platform/text.h"

namespace {

using platform::parse_send_keys;

// Strokes in a line of their own: modifiers as in the notation, a character as itself, a key as <hex>, and after it in
// brackets the modifiers that stay down: "+a[+] +b".
std::string shown(const std::string& text) {
  const auto strokes = parse_send_keys(text);
  if (!strokes) return "invalid";
  const auto signs = [](std::uint8_t bits) {
    return std::string(bits & platform::modifier_shift ? "+" : "") + (bits & platform::modifier_control ? "^" : "") +
           (bits & platform::modifier_alt ? "%" : "");
  };
  std::string line;
  for (const auto& stroke : *strokes) {
    if (!line.empty()) line += ' ';
    line += signs(stroke.modifiers);
    if (stroke.character != 0) platform::append_code_point(line, stroke.character);
    if (stroke.key != 0) {
      constexpr char digits[] = "0123456789ABCDEF";
      line += std::string("<") + digits[stroke.key / 16] + digits[stroke.key % 16] + ">";
    }
    if (stroke.kept != 0) line += "[" + signs(stroke.kept) + "]";
  }
  return line;
}

TEST(SendKeys, ATextIsTheStrokesItSays) {
  const std::pair<std::string, std::string> cases[] = {
      {"", ""},
      {"Ab ç漢😀", "A b   ç 漢 😀"},
      {"[=]", "[ = ]"},
      {"a\r\nb\nc\rd\r\r\n~\t", "a <0D> b <0D> c <0D> d <0D> <0D> <0D> <09>"},
      {"a\x01", "invalid"},
      {"\x7F", "invalid"},
      {"\xC2\x85", "invalid"},
      {"^c%{F4}", "^c %<73>"},
      {"+^%{END}x", "+^%<23> x"},
      {"+(EC)d", "+E[+] +C d"},
      {"+a+b", "+a +b"},
      {"+(a)+(b)", "+a +b"},
      {"+(a^(bc)d)e", "+a[+] +^b[+^] +^c[+] +d e"},
      {"+(a^(b))c", "+a[+] +^b c"},
      {"%({TAB 3})", "%<09>[%] %<09>[%] %<09>"},
      {"%{TAB 2}x", "%<09>[%] %<09> x"},
      {"+~^\r\n", "+<0D> ^<0D>"},
      {"(ab)", "a b"},
      {"+()a", "a"},
      {"% ", "% "},
      {"%", "<12>"},
      {"+^%", "+^<12>"},
      {"+(a^)b", "+a[+] +<11> b"},
      {"+(+)", ""},
      {"{BACKSPACE}{bs}{Bksp}{BREAK}{CAPSLOCK}{CLEAR}", "<08> <08> <08> <03> <14> <0C>"},
      {"{DELETE}{DEL}{INSERT}{INS}{HOME}{END}{PGUP}{PGDN}", "<2E> <2E> <2D> <2D> <24> <23> <21> <22>"},
      {"{LEFT}{UP}{RIGHT}{DOWN}{ENTER}{ESC}{ESCAPE}{TAB}", "<25> <26> <27> <28> <0D> <1B> <1B> <09>"},
      {"{HELP}{PRTSC}{NUMLOCK}{SCROLLLOCK}", "<2F> <2C> <90> <91>"},
      {"{ADD}{SUBTRACT}{MULTIPLY}{DIVIDE}", "<6B> <6D> <6A> <6F>"},
      {"{F1}{f9}{F10}{F16}", "<70> <78> <79> <7F>"},
      {"{LEFT 3}{h  2}", "<25> <25> <25> h h"},
      {"{+}{^}{%}{~}{(}{)}{{}{}}{[}{]}", "+ ^ % ~ ( ) { } [ ]"},
      {"{} 2}{{ 2}{  2}{ }{é}", "} } { {       é"},
      {"{U+6F22}{u+e9 2}{U+D}{U+1F600}", "漢 é é <0D> 😀"}};
  for (const auto& [text, strokes] : cases) EXPECT_EQ(shown(text), strokes) << text;
}

TEST(SendKeys, WhatIsInvalidTypesNothing) {
  std::istringstream texts(
      "a{|a{}|a{b|a}b{|a(b|a)b|+(a|(a))|{ab}|{F0}|{F17}|{F01}|{F}x{F1x}|{LEFT0}|{LEFT x}|"
      "{LEFT -1}|{LEFT 0}|{LEFT 1 2}|{LEFT }|{a 1.5}|{ 10}|{U+}|{U+D800}|{U+110000}|{U+0}|"
      "{U+00000041}|{U+6F2G}|{BACKTAB}|{LEFT 99999999999}");
  for (std::string text; std::getline(texts, text, '|');) EXPECT_EQ(shown(text), "invalid") << text;
}

TEST(SendKeys, TheNumberOfStrokesIsBounded) {
  const std::string limit = std::to_string(platform::send_keys_limit);
  EXPECT_EQ(parse_send_keys("{A " + limit + "}")->size(), platform::send_keys_limit);
  for (const std::string& text :
       {"b{A " + limit + "}", "{A " + limit + "}b", "{A " + limit + "}%", std::string("{A 999999999}{A 4294967295}")}) {
    EXPECT_EQ(parse_send_keys(text), std::nullopt) << text;
  }
  EXPECT_EQ(parse_send_keys(std::string(1'000'000, '(')), std::nullopt);
}

}  // namespace
