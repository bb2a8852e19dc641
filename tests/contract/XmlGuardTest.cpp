#include <gtest/gtest.h>

#include <string>

#include "platform/XmlGuard.h"

namespace ostrel::platform {
namespace {

XmlHazard HazardOf(std::string_view xml) { return XmlGuard().Look(xml); }

std::string Attributes(std::size_t count) {
  std::string text;
  for (std::size_t i = 0; i < count; ++i) text += " a='='";
  return text;
}

std::string Namespaces(std::size_t count) {
  std::string text;
  for (std::size_t i = 0; i < count; ++i) text += "<a xmlns:p=''>";
  return text;
}

TEST(XmlGuard, FindsNothingInAnOrdinaryText) {
  EXPECT_EQ(HazardOf("<?xml version='1.0'?><!-- [ --><a b='<'>c = [d]<![CDATA[<e f='g'>]]></a>"),
            XmlHazard::kNone);
}

TEST(XmlGuard, FindsADocumentTypeWithDeclarations) {
  EXPECT_EQ(HazardOf("<!DOCTYPE a []>"), XmlHazard::kInternalSubset);
  EXPECT_EQ(HazardOf("<?a?><!--b--> <!DOCTYPE a SYSTEM '>' ["), XmlHazard::kInternalSubset);
}

TEST(XmlGuard, TakesADocumentTypeWithoutDeclarationsAndTellsWhereItStands) {
  const std::string xml = "<?a?>\n<!DOCTYPE a PUBLIC '[>' \"'\">\n<a/>";
  XmlGuard guard;

  EXPECT_EQ(guard.Look(std::string_view(xml)), XmlHazard::kNone);

  EXPECT_EQ(guard.TypeBegin(), xml.find("<!"));
  EXPECT_EQ(guard.TypeEnd(), xml.find("\n<a/>"));
}

TEST(XmlGuard, TellsOfNoDocumentTypeWhereThereIsNone) {
  XmlGuard guard;

  guard.Look(std::string_view("<a><!-- <!DOCTYPE a> --></a>"));

  EXPECT_EQ(guard.TypeEnd(), 0u);
}

TEST(XmlGuard, CountsTheAttributesOfEachTag) {
  EXPECT_EQ(HazardOf("<a" + Attributes(kMaxXmlAttributes) + "/><a" + Attributes(2) + "/>"),
            XmlHazard::kNone);
  EXPECT_EQ(HazardOf("<a" + Attributes(kMaxXmlAttributes + 1) + "/>"), XmlHazard::kAttributes);
}

TEST(XmlGuard, CountsNoAttributesOutsideTags) {
  const std::string many(3 * kMaxXmlAttributes, '=');

  for (const char* text : {"<a>#</a>", "<a b='#'/>", "<?a #?>", "<!--#-->", "<![CDATA[#]]>"}) {
    std::string xml = text;
    xml.replace(xml.find('#'), 1, many);
    EXPECT_EQ(HazardOf(xml), XmlHazard::kNone) << text;
  }
}

TEST(XmlGuard, CountsTheNamespacesOfTheWholeText) {
  EXPECT_EQ(HazardOf(Namespaces(kMaxXmlNamespaces)), XmlHazard::kNone);
  EXPECT_EQ(HazardOf(Namespaces(kMaxXmlNamespaces + 1)), XmlHazard::kNamespaces);
  EXPECT_EQ(HazardOf("<a xxmlnsx=''>" + Namespaces(kMaxXmlNamespaces)), XmlHazard::kNamespaces);
}

// Each of these ends where it ends, and not before: what stands behind it is seen.
TEST(XmlGuard, FindsWhatStandsBehindOtherMarkup) {
  for (const char* before : {"<!-->-->", "<!-- - -- -->", "<?>?>", "<?a ? > ?\?>", "<![CDATA[]>]]>",
                             "<![CDATA[]]]>", "<a b=\"'>\">", "</a>", "<a/>", "text > ] - ?"}) {
    EXPECT_EQ(HazardOf(std::string(before) + "<!DOCTYPE a ["), XmlHazard::kInternalSubset)
        << before;
  }
}

TEST(XmlGuard, FindsWhatComesInPieces) {
  const std::string xml = "<!-- --><a" + Attributes(kMaxXmlAttributes + 1) + "/>";
  XmlGuard guard;

  for (const char& c : xml) guard.Look(std::string_view(&c, 1));

  EXPECT_EQ(guard.Look(std::string_view()), XmlHazard::kAttributes);
}

TEST(XmlGuard, FindsTheSameInTextsAndInWideBytes) {
  const std::u16string text = u"<!DOCTYPE a [";
  const std::string bytes(reinterpret_cast<const char*>(text.data()), 2 * text.size());

  EXPECT_EQ(XmlGuard().Look(std::u16string_view(text)), XmlHazard::kInternalSubset);
  EXPECT_EQ(HazardOf(bytes), XmlHazard::kInternalSubset);
}

}  // namespace
}  // namespace ostrel::platform
