// The details that libxml2 tells of a fault.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>

#include "platform/SchemaValidation.h"
#include "tests/support/OrderSchema.h"

namespace ostrel::platform {
namespace {

class SchemaValidationPosixTest : public testing::Test {
 protected:
  ParseFault Validate(TextView xml) const { return ValidateXml(xml, oSchema.Path()); }

  OrderSchema oSchema;
};

TEST_F(SchemaValidationPosixTest, ASchemaFaultHasItsLineTheLinesTextAndThePlaceInTheText) {
  const ParseFault fault =
      Validate(u"<Order>\r\n<Name>Nails</Name>\r\n<Count>three</Count>\r\n</Order>");

  EXPECT_TRUE(Contains(fault.reason, u"'three' is not a valid value")) << ToUtf8(fault.reason);
  EXPECT_EQ(fault.srcText, u"<Count>three</Count>");
  EXPECT_EQ(fault.line, 3);
  EXPECT_EQ(fault.linepos, 21);
  EXPECT_EQ(fault.filepos, 29 + 20);
}

TEST_F(SchemaValidationPosixTest, AFaultOfFormHasItsPlace) {
  const ParseFault fault = Validate(u"<Order>\n  <Name>Nails</Nane>\n</Order>");

  EXPECT_TRUE(Contains(fault.reason, u"Name")) << ToUtf8(fault.reason);
  EXPECT_EQ(fault.line, 2);
  EXPECT_EQ(fault.linepos, 21);
  EXPECT_EQ(fault.filepos, 8 + 20);
}

TEST_F(SchemaValidationPosixTest, ReasonsEndWithoutALineBreak) {
  EXPECT_FALSE(Validate(u"<Order>").reason.ends_with(u'\n'));
}

TEST_F(SchemaValidationPosixTest, ALongLineIsShownAroundTheFault) {
  const Text before = u"<Order><Name>" + Text(5000, u'n') + u"</Name><Count>";
  const ParseFault fault = Validate(before + u"three</Count></Order>");

  EXPECT_LE(fault.srcText.size(), 512u);
  EXPECT_TRUE(Contains(fault.srcText, u"three"));
}

TEST_F(SchemaValidationPosixTest, PositionsCountCharacters) {
  const ParseFault fault =
      Validate(u"<Order><Name>\u00E9\u20AC</Name><Count>three</Count></Order>");

  EXPECT_EQ(fault.linepos, 43);
}

TEST_F(SchemaValidationPosixTest, NothingFollowsACharacterZeroUnseen) {
  const Text xml = Text(u"<Order><Name>Nails</Name><Count>3</Count></Order>") + u'\0' + u"<";

  EXPECT_NE(Validate(xml).errorCode, 0);
}

TEST_F(SchemaValidationPosixTest, AMissingSchemasReasonNamesTheFile) {
  const ParseFault fault = ValidateXml(u"<Order/>", oSchema.Folder().Path(u"missing.xsd"));

  EXPECT_TRUE(Contains(fault.reason, u"missing.xsd"));
}

TEST_F(SchemaValidationPosixTest, AnIncludedSchemaIsNotRead) {
  oSchema.Folder().Write(u"outer.xsd",
                         "<xs:schema xmlns:xs='http://www.w3.org/2001/XMLSchema'>"
                         "<xs:include schemaLocation='orders.xsd'/></xs:schema>");

  const ParseFault fault = ValidateXml(u"<Order><Name>Nails</Name><Count>3</Count></Order>",
                                       oSchema.Folder().Path(u"outer.xsd"));

  EXPECT_NE(fault.errorCode, 0);
}

// Each attribute of a tag is compared with all before it.
TEST_F(SchemaValidationPosixTest, ATagWithAFloodOfAttributesIsRefusedAtOnce) {
  Text xml = u"<Order";
  for (int i = 0; i < 500'000; ++i) xml += u" a" + ToText(std::int64_t{i}) + u"=''";

  EXPECT_TRUE(Contains(Validate(xml + u"/>").reason, u"attributes"));
}

TEST_F(SchemaValidationPosixTest, NothingIsPrinted) {
  testing::internal::CaptureStderr();
  Validate(u"<Order");
  Validate(u"<Order><Bad/></Order>");
  ValidateXml(u"<Order/>", oSchema.Folder().Path(u"missing.xsd"));

  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

}  // namespace
}  // namespace ostrel::platform
