#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "simulator/xml/PlainXml.h"
#include "simulator/xml/XmlReader.h"
#include "simulator/xml/XmlWriter.h"

namespace ostrel::simulator {
namespace {

constexpr std::size_t kPlenty = 1000;

std::string Levels(std::size_t count) {
  std::string xml;
  for (std::size_t i = 0; i < count; ++i) xml += "<a>";
  for (std::size_t i = 0; i < count; ++i) xml += "</a>";
  return xml;
}

std::string Written(const Element& root) {
  XmlWriter xml(XmlForm::kFile);
  xml.Prolog();
  xml.Write(root);
  return xml.Take();
}

bool IsPlain(std::string_view xml) {
  Element root;
  return ReadPlainXml(xml, kPlenty, root);
}

bool AreEqual(const Element& one, const Element& other) {
  const auto sameAttribute = [](const Attribute& a, const Attribute& b) {
    return a.name == b.name && a.value == b.value;
  };
  return one.name == other.name && one.text == other.text &&
         std::ranges::equal(one.attributes, other.attributes, sameAttribute) &&
         std::ranges::equal(one.children, other.children, AreEqual);
}

// What is taken for plain is read as the parser reads it.
void ExpectAsParsed(std::string_view xml) {
  Element plain;
  if (!ReadPlainXml(xml, kPlenty, plain)) return;
  XmlDocument parsed;
  ASSERT_EQ(ReadXmlText(FromUtf8(xml), kPlenty, parsed), XmlFault::kNone) << xml;
  EXPECT_TRUE(parsed.instructions.empty()) << xml;
  EXPECT_TRUE(AreEqual(plain, parsed.root)) << xml;
}

TEST(PlainXml, ReadsWhatTheWriterWrites) {
  const std::string text = "\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80 <&>\"' ]] \r\n\t end ";
  Element root{.name = "Company", .attributes = {{"name", text}, {"empty", ""}}};
  root.Add("Name", text);
  root.Add("Empty");
  root.Add("Group").Add("Inner-1.x_", " ");

  Element read;

  ASSERT_TRUE(ReadPlainXml(Written(root), kPlenty, read));
  EXPECT_TRUE(AreEqual(read, root));
}

TEST(PlainXml, LeavesEverythingElseToTheParser) {
  for (const std::string_view xml : {"",
                                     " ",
                                     "text",
                                     "<a>",
                                     "<a",
                                     "<a></b>",
                                     "<a></aa>",
                                     "<a/><b/>",
                                     "<a/>text",
                                     "<a b></a>",
                                     "<a b='1'/>",
                                     "<a b=\"1\" b=\"2\"/>",
                                     "<a b=\"<\"/>",
                                     "<a b=\"\n\"/>",
                                     "<a>&unknown;</a>",
                                     "<a>&#65;</a>",
                                     "<a>&</a>",
                                     "<a><![CDATA[x]]></a>",
                                     "<a>]]></a>",
                                     "<!-- x --><a/>",
                                     "<a><!-- x --></a>",
                                     "<x:a/>",
                                     "<a x:b=\"1\"/>",
                                     "<a xmlns=\"u\"/>",
                                     " <?xml version='1.0'?><a/>",
                                     "<?b c?><a/>",
                                     "<!DOCTYPE a><a/>",
                                     "<a>text<b/></a>",
                                     "<a><b/>text</a>",
                                     "<1a/>",
                                     "<-a/>",
                                     "<a>\r\n</a>",
                                     "<a>\x01</a>",
                                     "<a>\x80</a>",
                                     "<a>\xC0\x80</a>",
                                     "<a>\xE0\x80\x80</a>",
                                     "<a>\xED\xA0\x80</a>",
                                     "<a>\xEF\xBF\xBE</a>",
                                     "<a>\xEF\xBF\xBF</a>",
                                     "<a>\xF0\x80\x80\x80</a>",
                                     "<a>\xF4\x90\x80\x80</a>",
                                     "<a>\xC3</a>",
                                     "<a>\xE2\x82</a>",
                                     "\xEF\xBB\xBF<a/>",
                                     "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?><a/>"}) {
    EXPECT_FALSE(IsPlain(xml)) << xml;
  }
}

TEST(PlainXml, TakesTheOutermostCharactersOfEachLength) {
  for (const std::string_view character :
       {"\x7F", "\xC2\x80", "\xDF\xBF", "\xE0\xA0\x80", "\xED\x9F\xBF", "\xEE\x80\x80",
        "\xEF\xBF\xBD", "\xF0\x90\x80\x80", "\xF4\x8F\xBF\xBF"}) {
    const std::string xml = "<a>" + std::string(character) + "</a>";

    EXPECT_TRUE(IsPlain(xml)) << xml;
    ExpectAsParsed(xml);
  }
}

TEST(PlainXml, ReadsAsTheParserDoesWhateverByteIsChanged) {
  const std::string xml =
      "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<A x=\"1&amp;\" y=\"\">\n  <B>\xE2\x82\xAC &lt;"
      "</B>\n  <C> <D /> </C>\n  <E> </E>\n</A>\n";
  ASSERT_TRUE(IsPlain(xml));
  constexpr char kBytes[] =
      "\t\n\r !\"#&'-/019:;<=>?AB[]x\x7F\x80\xAC\xC3\xE2\xF0\xFF";  // and the zero behind them
  for (std::size_t at = 0; at < xml.size(); ++at) {
    ExpectAsParsed(std::string(xml).erase(at, 1));
    for (const char byte : kBytes) {
      ExpectAsParsed(std::string(xml).replace(at, 1, 1, byte));
      ExpectAsParsed(std::string(xml).insert(at, 1, byte));
    }
  }
}

TEST(PlainXml, KeepsTheLimits) {
  EXPECT_TRUE(IsPlain(Levels(kMaxXmlDepth)));
  EXPECT_FALSE(IsPlain(Levels(kMaxXmlDepth + 1)));
  EXPECT_TRUE(IsPlain("<a>" + std::string(kMaxXmlTextBytes, 'x') + "</a>"));
  EXPECT_FALSE(IsPlain("<a>" + std::string(kMaxXmlTextBytes + 1, 'x') + "</a>"));
  EXPECT_FALSE(IsPlain("<a>" + std::string(kMaxXmlTextBytes + 1, ' ') + "<b/></a>"));
  Element root;
  EXPECT_TRUE(ReadPlainXml("<a><b/><c/></a>", 3, root));
  EXPECT_FALSE(ReadPlainXml("<a><b/><c/></a>", 2, root));
}

}  // namespace
}  // namespace ostrel::simulator
