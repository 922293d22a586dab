// The font that goes with the program: every text that a profile in code page 1252 can hold must show in it.
#include <gtest/gtest.h>

#include <QFontDatabase>
#include <QGuiApplication>
#include <QPainterPath>
#include <QRawFont>
#include <QtEndian>

namespace {

// In font units, each as large as a pixel.
class Font : public testing::Test {
 protected:
  Font() { font.loadFromFile(FONT_FILE, font_units, QFont::PreferNoHinting); }
  // A field of two bytes in a table of the file.
  int field(const char* table, int at) const {
    return qFromBigEndian<qint16>(font.fontTable(table).mid(at, 2).constData());
  }
  quint32 glyph(char16_t letter) const { return font.glyphIndexesForString(QChar(letter)).value(0); }
  QRectF box(char16_t letter) const { return font.pathForGlyph(glyph(letter)).boundingRect(); }

  static constexpr int font_units = 2048;
  std::string words[3] = {"font_test", "-platform", "offscreen"};
  char* arguments[4] = {words[0].data(), words[1].data(), words[2].data(), nullptr};
  int count = 3;
  QGuiApplication application{count, arguments};
  QRawFont font;
};

TEST_F(Font, BearsTheNameTheFormsAskForAndCanBeEmboldened) {
  const QStringList families = QFontDatabase::applicationFontFamilies(QFontDatabase::addApplicationFont(FONT_FILE));
  EXPECT_EQ(families, QStringList{"OCR A Extended"});
  QByteArray names = font.fontTable("name");
  EXPECT_TRUE(names.replace('\0', "").contains("Public domain"));
  // Qt draws no bold for a face that is marked as monospaced, and the title is bold.
  EXPECT_TRUE(field("post", 12) == 0 && field("post", 14) == 0);
}

TEST_F(Font, ShowsEveryCharacterOfTheCodePageWithoutClipping) {
  // Ascent and descent as one system and as the others read them.
  EXPECT_EQ(field("hhea", 4), field("OS/2", 74));
  EXPECT_EQ(-field("hhea", 6), field("OS/2", 76));
  std::u16string all = u"€‚ƒ„…†‡ˆ‰Š‹ŒŽ‘’“”•–—˜™š›œžŸ";
  for (char16_t c = 0x20; c <= 0xFF; ++c) {
    if (c < 0x7F || c >= 0xA0) all += c;
  }
  const qreal width = font.advancesForGlyphIndexes({glyph(u'M')}).value(0).x();
  for (const char16_t c : all) {
    SCOPED_TRACE(testing::Message() << "character " << std::hex << static_cast<int>(c));
    ASSERT_NE(glyph(c), 0U);
    EXPECT_EQ(font.advancesForGlyphIndexes({glyph(c)}).value(0).x(), width);
    EXPECT_EQ(box(c).isEmpty(), c == 0x20 || c == 0xA0);
    EXPECT_TRUE(-box(c).top() <= font.ascent() && box(c).bottom() <= font.descent());
  }
}

TEST_F(Font, TellsAccentedLettersFromPlainOnesAndFromEachOther) {
  for (const std::u16string row : {u"aàâä", u"eéèêë", u"iîï", u"oôö", u"uùûü", u"yÿ", u"cç", u"AÀÂÄ", u"EÉÈÊË", u"IÎÏ",
                                   u"OÔÖ", u"UÙÛÜ", u"YŸ", u"CÇ"}) {
    for (std::size_t n = 1; n < row.size(); ++n) {
      SCOPED_TRACE(testing::Message() << "character " << std::hex << static_cast<int>(row[n]));
      for (std::size_t m = 0; m < n; ++m) {
        EXPECT_NE(font.pathForGlyph(glyph(row[n])), font.pathForGlyph(glyph(row[m]))) << m;
      }
      const bool below = row[0] == u'c' || row[0] == u'C';
      const bool dotted = row[0] == u'i';  // loses its dot to the accent
      EXPECT_TRUE(below ? box(row[n]).bottom() > box(row[0]).bottom()
                        : dotted || box(row[n]).top() < box(row[0]).top());
    }
  }
}

}  // namespace
