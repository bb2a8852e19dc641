#include <gtest/gtest.h>

#include <ctime>
#include <string>

#include "simulator/xml/XmlReader.h"
#include "tests/support/HostileXml.h"

namespace ostrel::simulator {
namespace {

constexpr std::size_t kEnough = 1000;

XmlFault FaultOf(TextView xml) {
  XmlDocument document;
  return ReadXmlText(xml, kEnough, document);
}

XmlDocument Read(TextView xml) {
  XmlDocument document;
  EXPECT_EQ(ReadXmlText(xml, kEnough, document), XmlFault::kNone);
  return document;
}

Text Much(char16_t character, std::size_t count = 30'000'000) { return Text(count, character); }

// Like the entity bomb known as "a billion laughs".
Text EntityBomb() {
  Text xml = u"<!DOCTYPE a [<!ENTITY a0 \"ha\">";
  for (char16_t level = u'1'; level <= u'9'; ++level) {
    xml += Text(u"<!ENTITY a") + level + u" \"";
    for (int i = 0; i < 10; ++i) xml += Text(u"&a") + static_cast<char16_t>(level - 1) + u";";
    xml += u"\">";
  }
  return xml + u"]><a>&a9;</a>";
}

TEST(XmlReader, ReadsElementsTextsAndAttributes) {
  const Element root = Read(u"<a x='&amp;1&#38;' y=\"&lt;2\"><b>one &amp; two</b><c/></a>").root;

  EXPECT_EQ(root.name, "a");
  ASSERT_NE(root.Find("x"), nullptr);
  EXPECT_EQ(*root.Find("x"), "&1&");
  ASSERT_NE(root.Find("y"), nullptr);
  EXPECT_EQ(*root.Find("y"), "<2");
  EXPECT_EQ(root.ChildText("b"), "one & two");
  ASSERT_NE(root.Child("c"), nullptr);
  EXPECT_EQ(root.Child("d"), nullptr);
}

TEST(XmlReader, KeepsWhiteSpaceOnlyInTexts) {
  const Element root = Read(u"<a>\n  <b> x </b>\n</a>").root;

  EXPECT_EQ(root.text, "");
  EXPECT_EQ(root.ChildText("b"), " x ");
}

TEST(XmlReader, TakesMuchWhiteSpaceBetweenChildren) {
  Text xml = u"<a>";
  for (int i = 0; i < 900; ++i) xml += Text(2000, u' ') + u"<b/>";

  EXPECT_EQ(Read(xml + u"</a>").root.children.size(), 900u);
}

TEST(XmlReader, KeepsTextBesideChildrenForTheCallerToRefuse) {
  EXPECT_EQ(Read(u"<a>stray<b/></a>").root.text, "stray");
}

TEST(XmlReader, ReadsInstructionsBeforeTheRootOnly) {
  const XmlDocument document = Read(u"<?xml version='1.0'?><?qbxml version='3.0'?><a><?b c?></a>");

  ASSERT_EQ(document.instructions.size(), 1u);
  EXPECT_EQ(document.instructions[0].target, "qbxml");
  EXPECT_EQ(document.instructions[0].data, "version='3.0'");
}

TEST(XmlReader, ReadsCharactersOfAllPlanes) {
  EXPECT_EQ(Read(u"<a>\u00E9\u20AC\U0001F600&#233;</a>").root.text,
            "\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80\xC3\xA9");
}

TEST(XmlReader, KeepsPairsTogetherWhereverTheTextIsCutIntoPieces) {
  const Text pairs = ReplaceAll(Text(200'000, u'x'), u"x", u"\U0001F600");

  for (const Text& before : {Text(u"<a>"), Text(u"<a >")}) {
    EXPECT_EQ(Read(before + pairs + u"</a>").root.text.size(), 800'000u);
  }
}

// The first and last of each half of a pair, and their neighbours, at every place where a piece may
// end.
TEST(XmlReader, KeepsTheOutermostPairsTogetherWhereverAPieceEnds) {
  const Text characters = u"\uD7FF\U00010000\U0010FFFF\U000103FF\U0010FC00\uE000";
  constexpr std::size_t kPiece = 64 * 1024;
  for (std::size_t before = kPiece - 14; before < kPiece; ++before) {
    const Text filling(before - 3, u'x');

    EXPECT_EQ(FromUtf8(Read(u"<a>" + filling + characters + u"</a>").root.text),
              filling + characters);
  }
}

TEST(XmlReader, RefusesHalvesOfPairs) {
  for (const Text& halves : {Text{0xD800}, Text{0xDBFF}, Text{0xDC00}, Text{0xDFFF},
                             Text{0xD800, 0xD800}, Text{0xDC00, 0xD800}, Text{0xDBFF, 0xE000}}) {
    EXPECT_EQ(FaultOf(u"<a>" + halves + u"</a>"), XmlFault::kMalformed) << unsigned{halves[0]};
  }
}

// The text is decoded already.
TEST(XmlReader, IgnoresTheEncodingThatATextDeclares) {
  for (const TextView encoding : {u"UTF-16", u"UTF-8", u"ISO-8859-1", u"windows-1252", u"x-none"}) {
    const Text xml = u"<?xml version='1.0' encoding='" + Text(encoding) + u"'?><a>\u00E9</a>";
    EXPECT_EQ(Read(xml).root.text, "\xC3\xA9") << ToUtf8(encoding);
  }
}

TEST(XmlReader, SkipsAByteOrderMark) { EXPECT_EQ(Read(u"\uFEFF<a/>").root.name, "a"); }

TEST(XmlReader, HonoursTheEncodingThatAFileDeclares) {
  XmlDocument document;

  ASSERT_EQ(
      ReadXmlBytes("<?xml version='1.0' encoding='ISO-8859-1'?><a>\xE9</a>", kEnough, document),
      XmlFault::kNone);

  EXPECT_EQ(document.root.text, "\xC3\xA9");
}

TEST(XmlReader, TellsTheLineOnWhichAStartTagEnds) {
  XmlDocument document;
  XmlPlaces places;

  ReadXmlBytes("<a>\n<b\n c='1'><d/></b>\n\n<e/></a>", kEnough, document, &places);

  EXPECT_EQ(places.elements, (std::vector<std::uint32_t>{1, 3, 3, 5}));
  EXPECT_EQ(places.fault, 0u);
}

TEST(XmlReader, TellsTheLineOfAFault) {
  XmlDocument document;
  XmlPlaces places;

  EXPECT_EQ(ReadXmlBytes("<a>\n<b/>\n<c></b>\n</a>", kEnough, document, &places),
            XmlFault::kMalformed);

  EXPECT_EQ(places.fault, 3u);
}

TEST(XmlReader, TellsTheLineOfTheElementThatIsTooMany) {
  XmlDocument document;
  XmlPlaces places;

  EXPECT_EQ(ReadXmlBytes("<a>\n<b/>\n<c/>\n<d/>\n</a>", 3, document, &places), XmlFault::kTooLarge);

  EXPECT_EQ(places.fault, 4u);
}

TEST(XmlReader, RefusesAFileWhoseBytesAreNotOfItsEncoding) {
  XmlDocument document;

  EXPECT_EQ(ReadXmlBytes("<?xml version='1.0' encoding='UTF-8'?><a>\xE9</a>", kEnough, document),
            XmlFault::kMalformed);
}

TEST(XmlReader, RefusesWhatIsNotWellFormed) {
  for (const TextView xml :
       {u"", u" ", u"text", u"<a>", u"<a></b>", u"<a/><b/>", u"<a/>text", u"<a b></a>",
        u"<a b='1' b='2'/>", u"<a>&unknown;</a>", u"<a b='&unknown;'/>", u"<a><![CDATA[</a>",
        u"<!-- <a/>", u"<x:a/>", u" <?xml version='1.0'?><a/>"}) {
    EXPECT_EQ(FaultOf(xml), XmlFault::kMalformed) << ToUtf8(xml);
  }
}

TEST(XmlReader, RefusesCharactersThatXmlDoesNotHave) {
  for (const char16_t c : {u'\0', u'\x01', u'\x1F', u'\xFFFE', u'\xFFFF', u'\xD800', u'\xDFFF'}) {
    EXPECT_EQ(FaultOf(u"<a>" + Text(1, c) + u"</a>"), XmlFault::kMalformed) << unsigned{c};
    EXPECT_EQ(FaultOf(u"<a/>" + Text(1, c)), XmlFault::kMalformed) << unsigned{c};
  }
}

TEST(XmlReader, RefusesEntityDeclarations) {
  EXPECT_EQ(FaultOf(u"<!DOCTYPE a [<!ENTITY e \"x\">]><a/>"), XmlFault::kMalformed);
  EXPECT_EQ(FaultOf(u"<!DOCTYPE a [<!ENTITY % e \"x\">]><a/>"), XmlFault::kMalformed);
  EXPECT_EQ(FaultOf(u"<!DOCTYPE a [<!ENTITY e SYSTEM \"file:///etc/passwd\">]><a>&e;</a>"),
            XmlFault::kMalformed);
  EXPECT_EQ(FaultOf(EntityBomb()), XmlFault::kMalformed);
}

TEST(XmlReader, RefusesAttributeAndElementDeclarations) {
  EXPECT_EQ(FaultOf(u"<!DOCTYPE a [<!ATTLIST a b CDATA \"x\">]><a/>"), XmlFault::kMalformed);
  EXPECT_EQ(FaultOf(u"<!DOCTYPE a [<!ATTLIST a b (x|y) \"x\">]><a/>"), XmlFault::kMalformed);
  EXPECT_EQ(FaultOf(u"<!DOCTYPE a [<!ELEMENT a EMPTY>]><a/>"), XmlFault::kMalformed);
}

TEST(XmlReader, TakesADocumentTypeWithoutDeclarationsAndReadsNothingForIt) {
  EXPECT_EQ(FaultOf(u"<!DOCTYPE a PUBLIC '-//X//Y' 'http://localhost:1/none.dtd'><a/>"),
            XmlFault::kNone);
}

TEST(XmlReader, RefusesDeepNesting) {
  Text open;
  for (int i = 0; i < 10'000; ++i) open += u"<a>";

  EXPECT_EQ(FaultOf(open), XmlFault::kMalformed);
}

TEST(XmlReader, TakesSixtyFourLevelsAndNoMore) {
  const auto nested = [](std::size_t levels) {
    return ReplaceAll(Text(levels, u'o'), u"o", u"<a>") +
           ReplaceAll(Text(levels, u'c'), u"c", u"</a>");
  };

  EXPECT_EQ(FaultOf(nested(64)), XmlFault::kNone);
  EXPECT_EQ(FaultOf(nested(65)), XmlFault::kMalformed);
}

TEST(XmlReader, RefusesMoreElementsThanTheLimit) {
  const auto children = [](std::size_t count) {
    return u"<a>" + ReplaceAll(Text(count, u'o'), u"o", u"<b/>") + u"</a>";
  };

  EXPECT_EQ(FaultOf(children(kEnough - 1)), XmlFault::kNone);
  EXPECT_EQ(FaultOf(children(kEnough)), XmlFault::kTooLarge);
}

TEST(XmlReader, RefusesATextOfMoreThanAMebibyte) {
  EXPECT_EQ(FaultOf(u"<a>" + Text(1024 * 1024, u'x') + u"</a>"), XmlFault::kNone);
  EXPECT_EQ(FaultOf(u"<a>" + Text(1024 * 1024 + 1, u'x') + u"</a>"), XmlFault::kTooLarge);
}

// Each attribute of a tag is compared with all before it.
TEST(XmlReader, RefusesAFloodOfAttributes) {
  Text xml = u"<a";
  for (std::int64_t i = 0; i < 100'000; ++i) xml += u" a" + ToText(i) + u"=''";

  EXPECT_EQ(FaultOf(xml + u"/>"), XmlFault::kMalformed);
}

// Refused before the declarations are parsed: a megabyte of them can take minutes.
TEST(XmlReader, RefusesADocumentTypeWithDeclarations) {
  for (const TextView declarations :
       {u"", u" ", u"<?a?>", u"<!-- -->", u"%p;", u"<!NOTATION n PUBLIC 'x'>"}) {
    const Text within = u"[" + Text(declarations) + u"]><a/>";
    EXPECT_EQ(FaultOf(u"<!DOCTYPE a " + within), XmlFault::kMalformed) << ToUtf8(declarations);
    EXPECT_EQ(FaultOf(u"<!DOCTYPE a PUBLIC '>' \"'\" " + within), XmlFault::kMalformed)
        << ToUtf8(declarations);
  }
}

TEST(XmlReader, RefusesADocumentTypeWithDeclarationsInAnyEncoding) {
  const std::string xml = "<!DOCTYPE a [<!ENTITY e 'x'>]><a/>";
  std::string wide = "\xFF\xFE";
  for (const char c : xml) wide += {c, '\0'};
  XmlDocument document;

  EXPECT_EQ(ReadXmlBytes(wide, kEnough, document), XmlFault::kMalformed);
  EXPECT_EQ(ReadXmlBytes(xml, kEnough, document), XmlFault::kMalformed);
}

TEST(XmlReader, TakesAThousandAttributesInATagAndNoMore) {
  const auto tags = [&](int count) {
    Text xml = u"<a><b";
    for (int i = 0; i < count; ++i) xml += u" c" + ToText(std::int64_t{i}) + u"='=>'";
    return xml + u"/></a>";
  };

  EXPECT_EQ(FaultOf(tags(1000)), XmlFault::kNone);
  EXPECT_EQ(FaultOf(tags(1001)), XmlFault::kMalformed);
}

// Read in a moment, whatever it holds: a megabyte of the worst took minutes.
TEST(XmlReader, IsHeldUpByNoText) {
  for (const HostileXml& hostile : HostileXmlTexts(200'000, "QBXML")) {
    const Text text = FromUtf8(hostile.text);
    XmlDocument document;
    const std::clock_t begun = std::clock();

    ReadXmlText(text, 500'000, document);

    EXPECT_LT(std::clock() - begun, 2 * CLOCKS_PER_SEC) << hostile.name;
  }
}

TEST(XmlReader, RefusesMuchOfNothing) {
  EXPECT_EQ(FaultOf(Much(u' ')), XmlFault::kMalformed);
  EXPECT_EQ(FaultOf(u"<!--" + Much(u'x')), XmlFault::kMalformed);
  EXPECT_EQ(FaultOf(u"<" + Much(u'x')), XmlFault::kMalformed);
  EXPECT_EQ(FaultOf(u"<a b='" + Much(u'x')), XmlFault::kMalformed);
}

TEST(XmlReader, PrintsNothing) {
  testing::internal::CaptureStderr();

  FaultOf(u"<a");
  FaultOf(u"<!DOCTYPE a SYSTEM 'none.dtd' [%x;]><a/>");
  XmlDocument document;
  for (const std::string encoding : {"UTF-8", "UTF-16", "Shift_JIS", "none"}) {
    const std::string start = "<?xml version='1.0' encoding='" + encoding + "'?><a>";
    ReadXmlBytes(start +
                     "\xD9\xD9"
                     "C\xEA" +
                     std::string(10'000, '\xFE') + "</a>",
                 kEnough, document);
  }

  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

}  // namespace
}  // namespace ostrel::simulator
