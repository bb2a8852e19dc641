#include <gtest/gtest.h>

#include "gateway/ValidationReport.h"

namespace ostrel {
namespace {

using platform::ParseFault;

// The report's last line.
Text ExcerptOf(const Text& report) { return report.substr(report.rfind(u"\r\n") + 2); }

Text Excerpt(std::int32_t line, std::int32_t linepos, TextView text) {
  ParseFault fault;
  fault.errorCode = 1;
  fault.line = line;
  fault.linepos = linepos;
  return ExcerptOf(DescribeFault(fault, text));
}

// 0123456789 over and over: what stands at a position can be read off.
Text Digits(std::size_t count) {
  Text digits;
  for (std::size_t i = 0; i < count; ++i) digits.push_back(static_cast<char16_t>(u'0' + i % 10));
  return digits;
}

TEST(ValidationReport, TellsTheFaultLineByLine) {
  const ParseFault fault{-7, u"why", u"<source>", 12, 2, 345};

  EXPECT_EQ(DescribeFault(fault, u"first\r\n0123456789"),
            u"Reason: why\r\nscrText: <source>\r\nLinePos: 12\r\nLine: 2\r\nFilePos: 345\r\n"
            u"123456789");
}

TEST(ValidationReport, KeepsTheLineBreaksOfTheReason) {
  const ParseFault fault{-7, u"\none\r\n\r\ntwo\r\n", u"", 0, 0, 0};

  EXPECT_TRUE(DescribeFault(fault, u"")
                  .starts_with(u"Reason: \none\r\n\r\ntwo\r\n\r\nscrText: \r\nLinePos: 0\r\n"));
}

TEST(ValidationReport, ShowsALineFromTenCharactersBeforeTheFault) {
  const Text line = Digits(300);

  EXPECT_EQ(Excerpt(3, 25, u"a\r\nb\r\n" + line + u"\r\nc"), line.substr(14, 100));
}

TEST(ValidationReport, ShowsWhatThereIsOfAShortLine) {
  EXPECT_EQ(Excerpt(1, 25, Digits(30)), Digits(30).substr(14));
  EXPECT_EQ(Excerpt(1, 25, Digits(14)), u"");
}

TEST(ValidationReport, StartsWithTheLineForAnEarlyFault) {
  for (const std::int32_t linepos : {-5, 0, 1, 10, 11}) {
    EXPECT_EQ(Excerpt(1, linepos, u"abcdef"), u"abcdef") << linepos;
  }
}

TEST(ValidationReport, ShowsNothingOfALineThatIsNotThere) {
  for (const std::int32_t line : {-1, 0, 3}) EXPECT_EQ(Excerpt(line, 1, u"a\r\nb"), u"") << line;
}

TEST(ValidationReport, BreaksLinesAtCrLfOnly) { EXPECT_EQ(Excerpt(2, 1, u"a\nb\r\nc"), u"c"); }

TEST(ValidationReport, RemovesTheQbxmlInstructionInItsFourFormsAndAnyCase) {
  EXPECT_EQ(PrepareForValidation(u"<?xml?><?qbxml version=\"3.0\"?>|<?qbxml version='3.0'?>|"
                                 u"<?QBXML Version=\"3.0\" ?>|<?qbXML version='3.0' ?>|"),
            u"<?xml?>||||");
}

TEST(ValidationReport, KeepsOtherQbxmlInstructions) {
  const Text request = u"<?xml?><?qbxml version=\"2.0\"?><?qbxml  version='3.0'?>";

  EXPECT_EQ(PrepareForValidation(request), request);
}

TEST(ValidationReport, ReadsAttributeMarksAsLineBreaks) {
  EXPECT_EQ(PrepareForValidation(u"<?xml?>\u00FE<a/>"), u"<?xml?>\r\n<a/>");
}

TEST(ValidationReport, AddsAPrologWhereThereIsNone) {
  EXPECT_EQ(PrepareForValidation(u"<a/>"), u"<?xml version='1.0' ?>\r\n<a/>");
  EXPECT_EQ(PrepareForValidation(u"<a/><?xml?>"), u"<a/><?xml?>");
}

}  // namespace
}  // namespace ostrel
