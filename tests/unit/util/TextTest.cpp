#include <gtest/gtest.h>

#include <limits>

#include "util/Text.h"

namespace ostrel {
namespace {

TEST(Text, AsciiIsACharacterAByte) {
  EXPECT_EQ(FromAscii("ERROR: 99"), u"ERROR: 99");
  EXPECT_EQ(FromAscii({"a\0b", 3}), TextView(u"a\0b", 3));
  EXPECT_EQ(FromAscii("\xFE"), u"\u00FE");
}

TEST(Text, Utf8OfEveryLengthIsRead) {
  EXPECT_EQ(FromUtf8("a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80"), u"a\u00E9\u20AC\U0001F600");
}

TEST(Text, Utf8OfEveryLengthIsWritten) {
  EXPECT_EQ(ToUtf8(u"a\u00E9\u20AC\U0001F600"), "a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80");
}

TEST(Text, Utf8AtTheEdgesOfItsLengthsComesBack) {
  for (const char32_t c :
       {0x0u, 0x7Fu, 0x80u, 0x7FFu, 0x800u, 0xD7FFu, 0xE000u, 0xFFFFu, 0x10000u, 0x10FFFFu}) {
    Text text;
    if (c < 0x10000) {
      text.push_back(static_cast<char16_t>(c));
    } else {
      text.push_back(static_cast<char16_t>(0xD800 + ((c - 0x10000) >> 10)));
      text.push_back(static_cast<char16_t>(0xDC00 + ((c - 0x10000) & 0x3FF)));
    }

    EXPECT_EQ(FromUtf8(ToUtf8(text)), text) << std::hex << static_cast<std::uint32_t>(c);
  }
}

TEST(Text, IllFormedUtf8BecomesReplacementCharacters) {
  EXPECT_EQ(FromUtf8("a\xFFz"), u"a\uFFFDz");        // no lead byte
  EXPECT_EQ(FromUtf8("\x80"), u"\uFFFD");            // a tail alone
  EXPECT_EQ(FromUtf8("\xC3"), u"\uFFFD");            // cut short
  EXPECT_EQ(FromUtf8("\xC3z"), u"\uFFFDz");          // a tail missing
  EXPECT_EQ(FromUtf8("\xC0\x80"), u"\uFFFD\uFFFD");  // longer than needed
  EXPECT_EQ(FromUtf8("\xE0\x80\x80"), u"\uFFFD\uFFFD\uFFFD");
  EXPECT_EQ(FromUtf8("\xED\xA0\x80"), u"\uFFFD\uFFFD\uFFFD");            // half a pair
  EXPECT_EQ(FromUtf8("\xF4\x90\x80\x80"), u"\uFFFD\uFFFD\uFFFD\uFFFD");  // beyond the last
}

TEST(Text, HalfAPairIsWrittenAsAReplacementCharacter) {
  const Text high = {0xD83D};
  const Text low = {0xDE00};

  EXPECT_EQ(ToUtf8(high), "\xEF\xBF\xBD");
  EXPECT_EQ(ToUtf8(low + high), "\xEF\xBF\xBD\xEF\xBF\xBD");
  EXPECT_EQ(ToUtf8(high + u"a"),
            "\xEF\xBF\xBD"
            "a");
}

TEST(Text, WholeNumbersAreDecimal) {
  EXPECT_EQ(ToText(std::int64_t{0}), u"0");
  EXPECT_EQ(ToText(std::int64_t{-7}), u"-7");
  EXPECT_EQ(ToText(std::numeric_limits<std::int64_t>::min()), u"-9223372036854775808");
}

TEST(Text, FloatsAreShortAndWithoutExponent) {
  EXPECT_EQ(ToText(1024.0f), u"1024");
  EXPECT_EQ(ToText(0.5f), u"0.5");
  EXPECT_EQ(ToText(-1.0f), u"-1");
  EXPECT_EQ(ToText(16777216.0f), u"16777216");
}

TEST(Text, FloatsOfEverySizeHaveRoom) {
  EXPECT_EQ(ToText(std::numeric_limits<float>::max()).size(), 39u);
  EXPECT_TRUE(ToText(std::numeric_limits<float>::denorm_min()).starts_with(u"0.000"));
}

TEST(Text, BooleansAreWords) {
  EXPECT_EQ(BooleanWord(true), u"True");
  EXPECT_EQ(BooleanWord(false), u"False");
}

TEST(Text, CaseChangesLatinLettersOnly) {
  EXPECT_EQ(LowerCase(u"%AppPath%\\CAF\u00C9 \u00D7 @[`{"), u"%apppath%\\caf\u00E9 \u00D7 @[`{");
  EXPECT_EQ(UpperCase(u"caf\u00E9 \u00F7 \u00DF \u00FF @[`{"),
            u"CAF\u00C9 \u00F7 \u00DF \u0178 @[`{");
  EXPECT_EQ(LowerCase(u"\u0416"), u"\u0416");
}

TEST(Text, EveryLetterOfTheCodePageHasItsCase) {
  const Text capitals =
      u"ABCDEFGHIJKLMNOPQRSTUVWXYZ\u0160\u0152\u017D\u0178\u00C0\u00C1\u00C2\u00C3\u00C4\u00C5"
      u"\u00C6"
      u"\u00C7\u00C8\u00C9\u00CA\u00CB\u00CC\u00CD\u00CE\u00CF\u00D0\u00D1\u00D2\u00D3\u00D4\u00D5"
      u"\u00D6\u00D8\u00D9\u00DA\u00DB\u00DC\u00DD\u00DE";
  const Text small =
      u"abcdefghijklmnopqrstuvwxyz\u0161\u0153\u017E\u00FF\u00E0\u00E1\u00E2\u00E3\u00E4\u00E5"
      u"\u00E6"
      u"\u00E7\u00E8\u00E9\u00EA\u00EB\u00EC\u00ED\u00EE\u00EF\u00F0\u00F1\u00F2\u00F3\u00F4\u00F5"
      u"\u00F6\u00F8\u00F9\u00FA\u00FB\u00FC\u00FD\u00FE";

  EXPECT_EQ(LowerCase(capitals), small);
  EXPECT_EQ(UpperCase(small), capitals);
  EXPECT_EQ(LowerCase(small), small);
  EXPECT_EQ(UpperCase(capitals), capitals);
}

TEST(Text, WhatIsNoLetterHasNoCase) {
  Text others;
  for (char16_t c = 0; c < 0x200; ++c) {
    const bool isMapped =
        LowerCase(Text(1, c)) != Text(1, c) || UpperCase(Text(1, c)) != Text(1, c);
    if (!isMapped) others.push_back(c);
  }

  EXPECT_EQ(others.size(), 0x200u - 2 * (26 + 4 + 30));
  for (const char16_t c : {u'@', u'[', u'`', u'{', u'\u00BF', u'\u00D7', u'\u00DF', u'\u00F7'}) {
    EXPECT_NE(others.find(c), Text::npos) << static_cast<int>(c);
  }
}

TEST(Text, ControlCharactersAreTheTwoSetsAndDelete) {
  for (const char16_t c : {u'\0', u'\t', u'\u001F', u'\u007F', u'\u0080', u'\u009F'}) {
    EXPECT_TRUE(IsControl(c)) << static_cast<int>(c);
  }
  for (const char16_t c : {u' ', u'~', u'\u00A0', u'\u00FE', u'\u20AC'}) {
    EXPECT_FALSE(IsControl(c)) << static_cast<int>(c);
  }
}

TEST(Text, OnlyBlanksAreTrimmed) {
  EXPECT_EQ(TrimBlanks(u"  a b  "), u"a b");
  EXPECT_EQ(TrimBlanks(u"\ta\r\n"), u"\ta\r\n");
  EXPECT_EQ(TrimBlanks(u"   "), u"");
  EXPECT_EQ(TrimBlanks(u""), u"");
}

TEST(Text, FindsACharacterAtEveryPlace) {
  for (const char16_t wanted : {u'\n', u'\u00FE', u'\u8000', u'\uFFFF', u'\0'}) {
    for (std::size_t place = 0; place < 40; ++place) {
      Text text(40, static_cast<char16_t>(wanted + 1));
      if (place > 0) text[place - 1] = static_cast<char16_t>(wanted - 1);
      text[place] = wanted;
      if (place + 2 < text.size()) text[place + 2] = wanted;

      EXPECT_EQ(FindCharacter(text, wanted), place);
      EXPECT_EQ(FindCharacter(text, wanted, place), place);
      EXPECT_EQ(FindCharacter(text, wanted, place + 1), text.find(wanted, place + 1));
    }
  }
}

TEST(Text, FindsNoCharacterThatIsNotThere) {
  EXPECT_EQ(FindCharacter(Text(100, u'a'), u'b'), Text::npos);
  EXPECT_EQ(FindCharacter(u"", u'b'), Text::npos);
  EXPECT_EQ(FindCharacter(u"b", u'b', 1), Text::npos);
  EXPECT_EQ(FindCharacter(u"b", u'b', 100), Text::npos);
}

TEST(Text, ContainsFindsParts) {
  EXPECT_TRUE(Contains(u"<?qbxml version", u"qbxml"));
  EXPECT_TRUE(Contains(u"a", u""));
  EXPECT_FALSE(Contains(u"QBXML", u"qbxml"));
}

TEST(Text, ReplacesEveryOccurrenceOnceFromTheLeft) {
  EXPECT_EQ(ReplaceAll(u"a\r\nb\r\n", kCrLf, u"\u00FE"), u"a\u00FEb\u00FE");
  EXPECT_EQ(ReplaceAll(u"aaa", u"aa", u"b"), u"ba");
  EXPECT_EQ(ReplaceAll(u"a", u"a", u"aa"), u"aa");
  EXPECT_EQ(ReplaceAll(u"abc", u"", u"x"), u"abc");
  EXPECT_EQ(ReplaceAll(u"", u"a", u"x"), u"");
}

}  // namespace
}  // namespace ostrel
