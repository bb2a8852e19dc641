#include <gtest/gtest.h>

#include <numeric>
#include <set>

#include "util/CodePage.h"
#include "util/Wire.h"

namespace ostrel {
namespace {

using Characters = CodePageTable::Characters;

std::string EveryByte() {
  std::string bytes(256, '\0');
  std::iota(bytes.begin(), bytes.end(), '\0');
  return bytes;
}

Text Decoded(const CodePageTable& table, std::string_view bytes) {
  Text text;
  table.AppendBytesAsText(text, bytes);
  return text;
}

std::string Encoded(const CodePageTable& table, TextView text) {
  std::string bytes;
  table.AppendTextAsBytes(bytes, text);
  return bytes;
}

// Bytes 0xC0 to 0xFF are the Cyrillic letters, as in Windows-1251; the rest does not matter here.
Characters Cyrillic() {
  Characters characters;
  std::iota(characters.begin(), characters.end(), u'\0');
  std::iota(characters.begin() + 0xC0, characters.end(), u'\u0410');
  return characters;
}

// Byte 0xE7 is character 254 and byte 254 a black square, as in code page 850.
Characters WithMarkElsewhere() {
  Characters characters;
  std::iota(characters.begin(), characters.end(), u'\0');
  characters[0xE7] = 254;
  characters[0xFE] = u'\u25A0';
  return characters;
}

void ExpectOneCharacterAByte(const CodePageTable& table) {
  const Text text = Decoded(table, EveryByte());

  EXPECT_EQ(std::set<char16_t>(text.begin(), text.end()).size(), 256u);
  EXPECT_EQ(text[254], kAttributeMark);
  EXPECT_EQ(text[31], kEndOfDataMark);
  EXPECT_EQ(Encoded(table, text), EveryByte());
}

TEST(CodePage, EveryByteIsOneCharacterAndBack) {
  const Text text = BytesToText(EveryByte());

  EXPECT_EQ(text.size(), 256u);
  EXPECT_EQ(text[254], kAttributeMark);
  EXPECT_EQ(TextToBytes(text), EveryByte());
}

TEST(CodePage, ThisHoldsForAnyTable) {
  Characters allTheSame;
  allTheSame.fill(u'x');

  ExpectOneCharacterAByte(CodePageTable(std::nullopt));
  ExpectOneCharacterAByte(CodePageTable(Cyrillic()));
  ExpectOneCharacterAByte(CodePageTable(WithMarkElsewhere()));
  ExpectOneCharacterAByte(CodePageTable(allTheSame));
}

TEST(CodePage, WithoutATableItIsWindows1252) {
  const CodePageTable table(std::nullopt);

  EXPECT_EQ(Decoded(table, "\x80\x85\x9F\xA0\xE9\xFF"), u"\u20AC\u2026\u0178\u00A0\u00E9\u00FF");
  EXPECT_EQ(Decoded(table, "\x81\x8D\x8F\x90\x9D"), u"\u0081\u008D\u008F\u0090\u009D");
  EXPECT_EQ(Encoded(table, u"\u20AC \u00E9"), "\x80 \xE9");
}

TEST(CodePage, ACharacterOutsideBecomesAQuestionMark) {
  const CodePageTable table(std::nullopt);

  EXPECT_EQ(Encoded(table, u"a\u0416b\u6F22\uFFFFc"), "a?b??c");
  EXPECT_EQ(Encoded(table, u"\u0080"), "?");  // byte 0x80 is the euro sign
  EXPECT_EQ(Encoded(table, u"\U0001F600"), "??");
}

TEST(CodePage, AnotherCodePageHasItsOwnLettersExceptTheMark) {
  const CodePageTable table(Cyrillic());

  EXPECT_EQ(Decoded(table, "\xC0\xFD\xFE\xFF"), u"\u0410\u044D\u00FE\u044F");
  EXPECT_EQ(Encoded(table, u"\u0410\u044E\u00E9"), "\xC0??");  // the mark took the place of one
}

TEST(CodePage, TheByteThatHeldTheMarkGetsWhatTheMarkDisplaced) {
  const CodePageTable table(WithMarkElsewhere());

  EXPECT_EQ(Decoded(table, "\xE7\xFE"), u"\u25A0\u00FE");
  EXPECT_EQ(Encoded(table, u"\u25A0\u00FE"), "\xE7\xFE");
}

TEST(CodePage, ASecondByteOfACharacterGetsOneForPrivateUse) {
  Characters twice;
  std::iota(twice.begin(), twice.end(), u'\0');
  twice[0xC1] = twice[0xC0] = u'x';  // which byte 0x78 is
  const CodePageTable table(twice);

  EXPECT_EQ(Decoded(table, "x\xC0\xC1"), u"x\uF7C0\uF7C1");
  EXPECT_EQ(Encoded(table, u"x\uF7C0\uF7C1"), "x\xC0\xC1");
}

TEST(CodePage, TheCharacterOfTheMarkStandsForNoOtherByte) {
  Characters characters;
  std::iota(characters.begin(), characters.end(), u'\0');
  characters[0xC0] = characters[0xC1] = 254;
  const CodePageTable table(characters);

  EXPECT_EQ(Encoded(table, u"\u00FE"), "\xFE");
  EXPECT_EQ(Decoded(table, "\xFE"), u"\u00FE");
  EXPECT_EQ(Encoded(table, Decoded(table, "\xC0\xC1")), "\xC0\xC1");
}

TEST(CodePage, SevenBitBytesKeepTheirNumbersInAnyTable) {
  Characters shifted;
  std::iota(shifted.begin(), shifted.end(), u'\u0400');

  EXPECT_EQ(Decoded(CodePageTable(shifted), "<?qbxml?>\x1F"), u"<?qbxml?>\u001F");
}

// Long runs take another way through the conversion than short ones.
TEST(CodePage, ACharacterAnywhereInALongRunIsConverted) {
  const CodePageTable table(std::nullopt);
  for (std::size_t at = 0; at < 200; ++at) {
    std::string bytes(200, 'a');
    Text text(200, u'a');
    bytes[at] = '\x80';
    text[at] = u'\u20AC';

    EXPECT_EQ(Decoded(table, bytes), text);
    EXPECT_EQ(Encoded(table, text), bytes);
  }
}

TEST(CodePage, MarksInALongRunStayMarks) {
  const CodePageTable table(std::nullopt);
  std::string bytes(200, 'a');
  Text text(200, u'a');
  for (std::size_t at = 0; at < 200; at += 35) {
    bytes[at] = '\xFE';
    text[at] = kAttributeMark;
  }

  EXPECT_EQ(Decoded(table, bytes), text);
  EXPECT_EQ(Encoded(table, text), bytes);
}

TEST(CodePage, LengthsAroundABlockComeOutWhole) {
  for (std::size_t length = 0; length < 200; ++length) {
    const std::string bytes(length, 'x');

    EXPECT_EQ(TextToBytes(BytesToText(bytes)), bytes);
  }
}

TEST(CodePage, AppendingKeepsWhatIsThere) {
  Text text = u"before ";
  std::string bytes = "before ";

  AppendBytesAsText(text, "after\xFE");
  AppendTextAsBytes(bytes, u"after\u00FE");

  EXPECT_EQ(text, u"before after\u00FE");
  EXPECT_EQ(bytes, "before after\xFE");
}

TEST(CodePage, NothingIsAppendedOfNothing) {
  EXPECT_EQ(BytesToText({}), u"");
  EXPECT_EQ(TextToBytes({}), "");
}

}  // namespace
}  // namespace ostrel
