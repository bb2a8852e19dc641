#include <gtest/gtest.h>

#include "simulator/kinds/Fields.h"
#include "simulator/xml/XmlReader.h"
#include "tests/unit/simulator/Conversation.h"

namespace ostrel::simulator {
namespace {

constexpr std::string_view kColours[] = {"Red", "Blue"};
constexpr Field kInner[] = {{.name = "Deep", .maxLength = 3, .required = kAnyUse}};
constexpr Field kFields[] = {
    {.name = "Name", .maxLength = 5, .required = kAnyUse},
    {.name = "Flag", .type = FieldType::kBoolean},
    {.name = "Many", .repeated = true},
    {.name = "Left", .choice = 1},
    {.name = "Right", .choice = 2},
    {.name = "Count", .type = FieldType::kCount},
    {.name = "Colour", .values = kColours},
    {.name = "Group", .type = FieldType::kGroup, .children = kInner},
};

Element Message(TextView content) {
  XmlDocument document;
  EXPECT_EQ(ReadXmlText(u"<M>" + Text(content) + u"</M>", 100, document), XmlFault::kNone);
  return document.root;
}

bool Passes(TextView content) {
  const std::uint32_t failure = FailureOf([&] { CheckFields(Message(content), kFields, {}); });
  EXPECT_TRUE(failure == 0 || failure == 0x80040400);
  return failure == 0;
}

TEST(Fields, TakeWhatTheTableHolds) {
  EXPECT_TRUE(Passes(u"<Name>x</Name>"));
  EXPECT_TRUE(
      Passes(u"<Name>x</Name><Flag>true</Flag><Many>1</Many><Many>2</Many><Left>a</Left>"
             u"<Count>7</Count><Colour>Blue</Colour><Group><Deep>y</Deep></Group>"));
}

TEST(Fields, RefuseUnknownElements) {
  EXPECT_FALSE(Passes(u"<Name>x</Name><Other/>"));
  EXPECT_FALSE(Passes(u"<Name>x</Name><name>x</name>"));
}

TEST(Fields, RefuseElementsOutOfOrder) {
  EXPECT_FALSE(Passes(u"<Flag>true</Flag><Name>x</Name>"));
  EXPECT_FALSE(Passes(u"<Name>x</Name><Many>1</Many><Flag>1</Flag><Many>2</Many>"));
}

TEST(Fields, RefuseAMissingOrEmptyRequiredElement) {
  EXPECT_FALSE(Passes(u""));
  EXPECT_FALSE(Passes(u"<Name></Name>"));
  EXPECT_FALSE(Passes(u"<Name>  </Name>"));
  EXPECT_FALSE(Passes(u"<Name>x</Name><Group/>"));
}

TEST(Fields, RefuseRepetitionOfWhatStandsOnce) {
  EXPECT_FALSE(Passes(u"<Name>x</Name><Name>y</Name>"));
}

TEST(Fields, RefuseTwoChoicesTogether) {
  EXPECT_TRUE(Passes(u"<Name>x</Name><Right>b</Right>"));
  EXPECT_FALSE(Passes(u"<Name>x</Name><Left>a</Left><Right>b</Right>"));
}

TEST(Fields, RefuseValuesThatAreNotOfTheType) {
  for (const TextView count : {u"0", u"-1", u"x", u"", u"1.5", u"1000000000"}) {
    EXPECT_FALSE(Passes(u"<Name>x</Name><Count>" + Text(count) + u"</Count>")) << ToUtf8(count);
  }
  EXPECT_FALSE(Passes(u"<Name>x</Name><Flag>yes</Flag>"));
  EXPECT_FALSE(Passes(u"<Name>x</Name><Colour>Green</Colour>"));
}

TEST(Fields, RefuseAttributesAndStrayTexts) {
  EXPECT_FALSE(Passes(u"<Name x='1'>x</Name>"));
  EXPECT_FALSE(Passes(u"stray<Name>x</Name>"));
  EXPECT_FALSE(Passes(u"<Name><b/></Name>"));
  EXPECT_FALSE(Passes(u"<Name>x</Name><Group>stray<Deep>y</Deep></Group>"));
}

std::optional<Status> Normalized(TextView content) {
  Element message = Message(content);
  return Normalize(message, kFields, kAdd);
}

TEST(Fields, FindTheFirstTextThatIsTooLong) {
  const auto none = Normalized(u"<Name>12345</Name>");
  const auto name = Normalized(u"<Name> 123456 </Name>");
  const auto deep = Normalized(u"<Name>1</Name><Group><Deep>1234</Deep></Group>");

  EXPECT_FALSE(none);
  ASSERT_TRUE(name);
  EXPECT_EQ(name->code, 3070);
  EXPECT_EQ(name->message, "The string \"123456\" in the field \"Name\" is too long.");
  ASSERT_TRUE(deep);
  EXPECT_EQ(deep->message, "The string \"1234\" in the field \"Deep\" is too long.");
}

TEST(Fields, CountCharactersAsUtf16Does) {
  EXPECT_EQ(CharacterCount("a\xC3\xA9\xE2\x82\xAC"), 3u);
  EXPECT_EQ(CharacterCount("\xF0\x9F\x98\x80"), 2u);
}

}  // namespace
}  // namespace ostrel::simulator
