#include "platform/words.h"

#include <gtest/gtest.h>

namespace {

using Words = std::vector<std::string>;

TEST(Words, AreSplitAsAShellSplitsThem) {
  struct Case {
    std::string line;
    std::optional<Words> words;
  };
  const std::vector<Case> cases{
      {"", Words{}},
      {" \t\n ", Words{}},
      {"  one two\tthree ", Words{"one", "two", "three"}},
      {R"(a "b c" 'd e')", Words{"a", "b c", "d e"}},
      {R"(a"b c"d'e f'g)", Words{"ab cde fg"}},
      {R"("" '' x)", Words{"", "", "x"}},
      {R"(a\ b \"c\" \'d\' \\)", Words{"a b", "\"c\"", "'d'", "\\"}},
      {R"("\"\\\$\`\a" '\"')", Words{R"("\$`\a)", R"(\")"}},
      {R"('a"b' "c'd")", Words{"a\"b", "c'd"}},
      {"$HOME * > x; y & `z`", Words{"$HOME", "*", ">", "x;", "y", "&", "`z`"}},
      {"~ ~/a ~b a~ a/~/b ~", Words{"/h", "/h/a", "~b", "a~", "a/~/b", "/h"}},
      {R"('~' "~/a" \~/b ~"/c")", Words{"~", "~/a", "~/b", "~/c"}},
      {"'open", std::nullopt},
      {"\"open", std::nullopt},
      {R"("open\")", std::nullopt},
      {"end\\", std::nullopt},
      {"\"end\\", std::nullopt},
  };
  for (const auto& [line, words] : cases) EXPECT_EQ(platform::split_words(line, "/h"), words) << line;
}

}  // namespace
