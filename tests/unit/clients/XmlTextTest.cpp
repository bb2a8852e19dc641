#include <gtest/gtest.h>

#include "clients/XmlText.h"

namespace ostrel {
namespace {

TEST(EscapedForXml, WritesPlainAscii) {
  EXPECT_EQ(EscapedForXml(u"a<b>&\"c\"'\u00E9\u20AC\x7F\r\n"),
            u"a&lt;b&gt;&amp;&quot;c&quot;&apos;&#233;&#8364;&#127;&#13;&#10;");
}

TEST(EscapedForXml, WritesACharacterOfTwoHalvesAsOne) {
  EXPECT_EQ(EscapedForXml(u"\U0001F600!"), u"&#128512;!");
}

TEST(EscapedForXml, HidesTheCommandWords) {
  EXPECT_EQ(EscapedForXml(u"QBFILENAME: OPENQB: CLOSEQB: QUICKBOOKSINFO"),
            u"QBFILENAME&#58; OPENQB&#58; CLOSEQB&#58; QUICKBOOKSINF&#79;");
}

TEST(EscapedForXml, RefusesWhatXmlCannotCarry) {
  EXPECT_EQ(EscapedForXml(u"a\u001Fb"), std::nullopt);
  EXPECT_EQ(EscapedForXml(Text(1, u'\0')), std::nullopt);
  EXPECT_EQ(EscapedForXml(Text(1, char16_t{0xD800})), std::nullopt);
}

TEST(FailedMessages, AreThoseWithAnError) {
  const auto failed = FailedMessages(
      "<QBXML><QBXMLMsgsRs><ARs requestID=\"1\" statusCode=\"0\" statusSeverity=\"Info\" />"
      "<BRs statusCode=\"3100\" statusSeverity=\"Error\" statusMessage=\"a > b\"><C/></BRs>"
      "<DRs statusCode=\"1\" statusSeverity=\"Warn\"/>"
      "<ERs statusMessage=\"\" statusSeverity=\"Error\" statusCode=\"3140\"/></QBXMLMsgsRs>");

  ASSERT_EQ(failed.size(), 2u);
  EXPECT_EQ(failed[0].element + failed[0].code + failed[0].message, "BRs3100a > b");
  EXPECT_EQ(failed[1].element + failed[1].code, "ERs3140");
}

TEST(FailedMessages, AreNotFoundInData) {
  EXPECT_TRUE(FailedMessages("<ARs><Name>statusSeverity=\"Error\"</Name></ARs>").empty());
  EXPECT_TRUE(FailedMessages("<Name statusSeverity=\"Error\">").empty());
  EXPECT_TRUE(FailedMessages("").empty());
  EXPECT_TRUE(FailedMessages("<ARs statusSeverity=\"Err").empty());
}

}  // namespace
}  // namespace ostrel
