#include "platform/text.h"

#include <gtest/gtest.h>

namespace platform {
namespace {

TEST(CodePage, EveryByteComesBack) {
  std::string all;
  for (int byte = 1; byte < 256; ++byte) all.push_back(static_cast<char>(byte));
  EXPECT_EQ(to_cp1252(from_cp1252(all)), all);
  EXPECT_EQ(from_cp1252("\x80\x9C\xE9"), "€œé");
}

TEST(CodePage, KeepsWhatItLacks) {
  EXPECT_EQ(to_cp1252("a漢😀"), "a{U+6F22}{U+1F600}");
  EXPECT_EQ(from_cp1252("a{U+6F22}{U+1F600}"), "a漢😀");
  EXPECT_FALSE(fits_cp1252("漢"));
  EXPECT_TRUE(fits_cp1252("Œuvre à 12 €"));
  // Only what the code page lacks is turned back: these stand as they were typed.
  for (const char* text :
       {"{U+0041}", "{U+20AC}", "{U+}", "{U+XYZW}", "{U+6F22", "{U+D800}", "{U+1234567}", "{U+6f22}", "{U+06F22}"}) {
    EXPECT_EQ(from_cp1252(text), text);
  }
}

TEST(UpperCase, CoversFrenchLetters) {
  EXPECT_EQ(upper_case("été cœur ÿ ß ÷ 漢"), "ÉTÉ CŒUR Ÿ ß ÷ 漢");
  EXPECT_TRUE(equal_ignoring_case("Actionassocié", "ACTIONASSOCIÉ"));
  EXPECT_FALSE(equal_ignoring_case("Pos", "Pos2"));
  EXPECT_FALSE(equal_ignoring_case("Poste", "Pos"));
}

TEST(CodePoints, ABrokenByteIsNotLost) {
  for (const std::string bytes : {"\xC3", "\xE9t\xE9", "\xF5\x80\x80\x80", "\xC0\xAF", "\xED\xA0\x80"}) {
    std::size_t position = 0;
    std::size_t count = 0;
    while (position < bytes.size()) next_code_point(bytes, position), ++count;
    EXPECT_EQ(position, bytes.size());
    EXPECT_EQ(count, bytes.size()) << "each taken by itself";
  }
}

}  // namespace
}  // namespace platform
