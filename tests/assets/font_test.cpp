// The font that goes with the program: every text that a profile in code page 1252 can hold must show in it.
#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <fstream>
#include <iterator>
#include <map>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

// Printable characters of code page 1252 from 0x80 to 0x9F; the rest of the page equals Latin-1.
constexpr std::uint16_t windows_block[] = {0x20AC, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030,
                                           0x0160, 0x2039, 0x0152, 0x017D, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
                                           0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x017E, 0x0178};

// What of a TrueType file these tests read. Fields are big-endian; offsets are those of the OpenType standard.
class truetype {
 public:
  explicit truetype(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    data_.assign(std::istreambuf_iterator<char>(in), {});
    const int tables = u16(4);
    for (int i = 0; i < tables; ++i) {
      const std::size_t entry = 12 + 16 * static_cast<std::size_t>(i);
      tables_[data_.substr(entry, 4)] = u32(entry + 8);
    }
    read_character_map();
  }

  // The glyph of a character, 0 where there is none.
  int glyph(std::uint16_t character) const {
    const auto found = glyphs_.find(character);
    return found == glyphs_.end() ? 0 : found->second;
  }

  // Outline of a glyph as stored.
  std::string outline(int glyph) const {
    const bool wide = u16(table("head") + 50) != 0;
    const auto at = [&](int index) {
      const auto i = static_cast<std::size_t>(index);
      return wide ? u32(table("loca") + 4 * i) : 2U * static_cast<std::size_t>(u16(table("loca") + 2 * i));
    };
    return data_.substr(table("glyf") + at(glyph), at(glyph + 1) - at(glyph));
  }

  // Whether a glyph has no contours: stored as nothing or as a header that counts none.
  bool blank(int glyph) const { return outline(glyph).empty() || s16_of(outline(glyph), 0) == 0; }

  // Lowest and highest y of a glyph that is no blank, in font units.
  int bottom(int glyph) const { return s16_of(outline(glyph), 4); }
  int top(int glyph) const { return s16_of(outline(glyph), 8); }

  int advance(int glyph) const {
    const int last = u16(table("hhea") + 34) - 1;  // glyphs past the last metric share it
    return u16(table("hmtx") + 4 * static_cast<std::size_t>(glyph < last ? glyph : last));
  }

  int ascent() const { return s16(table("hhea") + 4); }
  int descent() const { return s16(table("hhea") + 6); }
  int windows_ascent() const { return u16(table("OS/2") + 74); }
  int windows_descent() const { return u16(table("OS/2") + 76); }
  bool marked_as_fixed_pitch() const { return u32(table("post") + 12) != 0; }

  // All Windows-platform values of one entry of the name table, as ASCII.
  std::set<std::string> name(int id) const {
    std::set<std::string> values;
    const std::size_t names = table("name");
    for (std::size_t i = 0; i < static_cast<std::size_t>(u16(names + 2)); ++i) {
      const std::size_t record = names + 6 + 12 * i;
      if (u16(record) != 3 || u16(record + 6) != id) continue;
      std::string text;
      const std::size_t start = names + static_cast<std::size_t>(u16(names + 4) + u16(record + 10));
      for (std::size_t c = 0; c < static_cast<std::size_t>(u16(record + 8)); c += 2) text += data_.at(start + c + 1);
      values.insert(text);
    }
    return values;
  }

 private:
  static int s16_of(const std::string& bytes, std::size_t at) {
    return static_cast<std::int16_t>(static_cast<unsigned char>(bytes.at(at)) << 8 |
                                     static_cast<unsigned char>(bytes.at(at + 1)));
  }
  int s16(std::size_t at) const { return s16_of(data_, at); }
  int u16(std::size_t at) const { return static_cast<std::uint16_t>(s16(at)); }
  std::size_t u32(std::size_t at) const {
    return static_cast<std::size_t>(u16(at)) << 16 | static_cast<std::size_t>(u16(at + 2));
  }
  std::size_t table(const std::string& tag) const {
    const auto found = tables_.find(tag);
    if (found == tables_.end()) throw std::runtime_error("no table " + tag);
    return found->second;
  }

  // The Windows Unicode subtable in format 4, the one that every toolkit reads.
  void read_character_map() {
    const std::size_t cmap = table("cmap");
    for (std::size_t i = 0; i < static_cast<std::size_t>(u16(cmap + 2)); ++i) {
      const std::size_t record = cmap + 4 + 8 * i;
      const std::size_t sub = cmap + u32(record + 4);
      if (u16(record) != 3 || u16(record + 2) != 1 || u16(sub) != 4) continue;
      const auto segments = static_cast<std::size_t>(u16(sub + 6));  // twice their number
      for (std::size_t s = 0; s < segments; s += 2) {
        const std::size_t ends = sub + 14;
        const std::size_t starts = ends + segments + 2;
        const std::size_t deltas = starts + segments;
        const std::size_t offsets = deltas + segments;
        const int start = u16(starts + s);
        for (int c = start; c <= u16(ends + s) && c != 0xFFFF; ++c) {
          const int offset = u16(offsets + s);
          const std::size_t at = offsets + s + static_cast<std::size_t>(offset + 2 * (c - start));
          const int stored = offset == 0 ? c : u16(at);
          if (stored != 0) glyphs_[static_cast<std::uint16_t>(c)] = (stored + u16(deltas + s)) & 0xFFFF;
        }
      }
    }
  }

  std::string data_;
  std::map<std::string, std::size_t> tables_;
  std::map<std::uint16_t, int> glyphs_;
};

std::vector<std::uint16_t> printable_1252() {
  std::vector<std::uint16_t> all(std::begin(windows_block), std::end(windows_block));
  for (std::uint16_t c = 0x20; c < 0x7F; ++c) all.push_back(c);
  for (std::uint16_t c = 0xA0; c <= 0xFF; ++c) all.push_back(c);
  return all;
}

TEST(Font, BearsTheNameTheFormsAskFor) {
  const truetype font(FONT_FILE);
  EXPECT_EQ(font.name(1), std::set<std::string>{"OCR A Extended"});
  EXPECT_EQ(font.name(4), std::set<std::string>{"OCR A Extended"});
  EXPECT_EQ(font.name(6), std::set<std::string>{"OCRAExtended"});
  ASSERT_EQ(font.name(13).size(), 1U);
  EXPECT_NE(font.name(13).begin()->find("Public domain"), std::string::npos);
}

TEST(Font, ShowsEveryCharacterOfTheCodePageWithoutClipping) {
  const truetype font(FONT_FILE);
  EXPECT_EQ(font.ascent(), font.windows_ascent());
  EXPECT_EQ(-font.descent(), font.windows_descent());
  const int width = font.advance(font.glyph('M'));
  for (const std::uint16_t c : printable_1252()) {
    SCOPED_TRACE(testing::Message() << "character " << std::hex << c);
    const int glyph = font.glyph(c);
    ASSERT_NE(glyph, 0);
    EXPECT_EQ(font.advance(glyph), width);
    const bool space = c == 0x20 || c == 0xA0;
    ASSERT_EQ(font.blank(glyph), space);
    if (space) continue;
    EXPECT_LE(font.top(glyph), font.ascent());
    EXPECT_GE(font.bottom(glyph), font.descent());
  }
}

TEST(Font, CanBeEmboldened) {
  // Qt draws no bold for a face that bears this mark, and the title is bold.
  EXPECT_FALSE(truetype(FONT_FILE).marked_as_fixed_pitch());
}

TEST(Font, TellsAccentedLettersFromPlainOnesAndFromEachOther) {
  const truetype font(FONT_FILE);
  // Each row: a letter and its accented forms, as French writes them.
  const std::u16string rows[] = {u"aàâä", u"eéèêë", u"iîï", u"oôö", u"uùûü", u"yÿ", u"cç",
                                 u"AÀÂÄ", u"EÉÈÊË", u"IÎÏ", u"OÔÖ", u"UÙÛÜ", u"YŸ", u"CÇ"};
  for (const std::u16string& row : rows) {
    std::set<std::string> shapes;
    const int plain = font.glyph(row[0]);
    for (const char16_t letter : row) {
      SCOPED_TRACE(testing::Message() << "character " << std::hex << static_cast<int>(letter));
      const int glyph = font.glyph(letter);
      EXPECT_TRUE(shapes.insert(font.outline(glyph)).second);
      if (letter == row[0]) continue;
      const bool below = letter == u'ç' || letter == u'Ç';
      const bool dotted = row[0] == u'i';  // loses its dot to the accent
      if (below) {
        EXPECT_LT(font.bottom(glyph), font.bottom(plain));
      } else if (!dotted) {
        EXPECT_GT(font.top(glyph), font.top(plain));
      }
    }
  }
}

}  // namespace
