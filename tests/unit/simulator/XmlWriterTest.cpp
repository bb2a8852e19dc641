#include <gtest/gtest.h>

#include "simulator/xml/XmlWriter.h"

namespace ostrel::simulator {
namespace {

TEST(XmlWriter, WritesAResponseOneElementALine) {
  XmlWriter xml(XmlForm::kResponse);
  const Attribute attributes[] = {{"x", "1"}, {"y", "a \"b\""}};

  xml.Prolog();
  xml.Open("A", attributes);
  xml.Leaf("B", "text");
  xml.Empty("C", attributes);
  xml.Close();

  EXPECT_EQ(xml.Take(),
            "<?xml version=\"1.0\" ?>\n<A x=\"1\" y=\"a &quot;b&quot;\">\n<B>text</B>\n"
            "<C x=\"1\" y=\"a &quot;b&quot;\" />\n</A>\n");
}

TEST(XmlWriter, WritesAResponseInAscii) {
  XmlWriter xml(XmlForm::kResponse);

  xml.Leaf("A", "<Caf\xC3\xA9 & 'Bar'>\xF0\x9F\x98\x80.");

  EXPECT_EQ(xml.Take(), "<A>&lt;Caf&#233; &amp; &apos;Bar&apos;&gt;&#128512;.</A>\n");
}

TEST(XmlWriter, WritesTheFirstAndTheLastCharacterOfEachRangeInAscii) {
  XmlWriter xml(XmlForm::kResponse);

  xml.Leaf("A",
           "\x7F\xC2\x80\xED\x9F\xBF\xEE\x80\x80\xEF\xBF\xBD\xF0\x90\x80\x80\xF4\x8F\xB0\x80"
           "\xF4\x8F\xBF\xBF");

  EXPECT_EQ(xml.Take(), "<A>\x7F&#128;&#55295;&#57344;&#65533;&#65536;&#1113088;&#1114111;</A>\n");
}

TEST(XmlWriter, WritesAFileIndentedAndInUtf8) {
  XmlWriter xml(XmlForm::kFile);
  Element root{.name = "A"};
  root.Add("B").Add("C", "Caf\xC3\xA9");
  root.Add("D");

  xml.Write(root);

  EXPECT_EQ(xml.Take(), "<A>\n  <B>\n    <C>Caf\xC3\xA9</C>\n  </B>\n  <D />\n</A>\n");
}

// A parser would turn them into blanks or line feeds.
TEST(XmlWriter, WritesLineBreaksSoThatTheyComeBackTheSame) {
  XmlWriter xml(XmlForm::kFile);
  const Attribute attributes[] = {{"x", "1\r\n\t2"}};

  xml.Empty("A", attributes);
  xml.Leaf("B", "1\r\n2");

  EXPECT_EQ(xml.Take(), "<A x=\"1&#13;&#10;&#9;2\" />\n<B>1&#13;\n2</B>\n");
}

TEST(XmlWriter, WritesAnElementUnderAnotherName) {
  XmlWriter xml(XmlForm::kResponse);

  xml.Write(Element{.name = "Customer", .text = "x"}, "CustomerRet");

  EXPECT_EQ(xml.Take(), "<CustomerRet>x</CustomerRet>\n");
}

}  // namespace
}  // namespace ostrel::simulator
