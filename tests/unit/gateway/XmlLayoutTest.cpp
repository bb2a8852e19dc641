#include <gtest/gtest.h>

#include <filesystem>
#include <vector>

#include "gateway/WholeFile.h"
#include "gateway/XmlLayout.h"
#include "platform/EventLoop.h"
#include "platform/Files.h"
#include "platform/SystemError.h"
#include "tests/support/MemoryLimit.h"
#include "tests/support/ScratchFolder.h"

namespace ostrel {
namespace {

Text Formatted(Text text) {
  FormatXmlText(text);
  return text;
}

// The bytes of the response file.
std::string Written(TextView response) {
  const ScratchFolder folder;
  EXPECT_TRUE(WriteResponseFile(response, folder.Path(u"a.osl")));
  EXPECT_EQ(folder.EntryCount(), 1u);
  return folder.Read(u"a.osl");
}

// Both lay out alike, but for the line breaks they remove.
void ExpectLayout(TextView text, const std::string& lines) {
  EXPECT_EQ(ToUtf8(Formatted(Text(text))), lines);
  EXPECT_EQ(Written(text), lines);
}

TEST(XmlLayout, IndentsNestedTagsByThreeBlanks) {
  ExpectLayout(u"<QBXML><QBXMLMsgsRs><HostQueryRs></HostQueryRs></QBXMLMsgsRs></QBXML>",
               "<QBXML>\r\n"
               "   <QBXMLMsgsRs>\r\n"
               "      <HostQueryRs></HostQueryRs>\r\n"
               "   </QBXMLMsgsRs>\r\n"
               "</QBXML>\r\n");
}

TEST(XmlLayout, PrintsAnElementOfTextOnOneLine) {
  ExpectLayout(u"<A><B>text</B><C>more</C></A>",
               "<A>\r\n"
               "   <B>text</B>\r\n"
               "   <C>more</C>\r\n"
               "</A>\r\n");
}

TEST(XmlLayout, PrintsTheLastElementOnceWhenItHoldsOnlyText) {
  ExpectLayout(u"<A>text</A>", "<A>text</A>\r\n");
  ExpectLayout(u"<X/><A>text</A>", "<X/>\r\n<A>text</A>\r\n");
}

TEST(XmlLayout, DoesNotIndentBelowAnEmptyElement) {
  ExpectLayout(u"<A><B/><C x=\"1\"/><D /></A>",
               "<A>\r\n"
               "   <B/>\r\n"
               "   <C x=\"1\"/>\r\n"
               "   <D />\r\n"
               "</A>\r\n");
}

// Required: what stands before an end tag counts as an element of text, an empty element without a
// blank too. What follows stays one level too deep.
TEST(XmlLayout, PrintsAnEndTagBehindAnEmptyElementWithoutABlank) {
  ExpectLayout(u"<A><B><C/></B><D /></A>",
               "<A>\r\n"
               "   <B>\r\n"
               "      <C/></B>\r\n"
               "      <D />\r\n"
               "   </A>\r\n");
}

// Required: the end tag and all that follows stand one level too shallow.
TEST(XmlLayout, ShiftsTheRestLeftAfterAnElementOfAttributesAndText) {
  ExpectLayout(u"<A><B><C x=\"1\">text</C><D>t</D></B></A>",
               "<A>\r\n"
               "   <B>\r\n"
               "      <C x=\"1\">text\r\n"
               "   </C>\r\n"
               "   <D>t</D>\r\n"
               "</B>\r\n"
               "</A>\r\n");
}

TEST(XmlLayout, LooksForAttributesInTheStartTagOnly) {
  ExpectLayout(u"<A><B>text with blanks</B></A>",
               "<A>\r\n"
               "   <B>text with blanks</B>\r\n"
               "</A>\r\n");
}

TEST(XmlLayout, DoesNotIndentBelowTheTwoKnownDeclarations) {
  ExpectLayout(
      u"<?xml version=\"1.0\" ?>"
      u"<!DOCTYPE QBXML PUBLIC '-//INTUIT//DTD QBXML QBD 1.0//EN' ><A><B /></A>",
      "<?xml version=\"1.0\" ?>\r\n"
      "<!DOCTYPE QBXML PUBLIC '-//INTUIT//DTD QBXML QBD 1.0//EN' >\r\n"
      "<A>\r\n"
      "   <B />\r\n"
      "</A>\r\n");
}

// Required: a prolog in any other form counts as a start tag.
TEST(XmlLayout, IndentsBelowAPrologInAnotherForm) {
  for (const TextView prolog : {u"<?xml version='1.0' ?>", u"<?xml version=\"1.0\"?>"}) {
    ExpectLayout(Text(prolog) + u"<A><B /></A>", ToUtf8(prolog) +
                                                     "\r\n"
                                                     "   <A>\r\n"
                                                     "      <B />\r\n"
                                                     "   </A>\r\n");
  }
}

TEST(XmlLayout, DropsWhatComesBeforeTheFirstTag) {
  ExpectLayout(u"before\n<A></A>", "<A></A>\r\n");
}

TEST(XmlLayout, PrintsNothingOfATextWithoutTags) {
  ExpectLayout(u"no tags at all", "");
  ExpectLayout(u"", "");
}

TEST(XmlLayout, PrintsWhatIsNoXml) {
  ExpectLayout(u"<", "<\r\n");
  ExpectLayout(u"<<", "<\r\n   <\r\n");
  ExpectLayout(u"</A", "</A\r\n");
  ExpectLayout(u"<A", "<A\r\n");
}

TEST(XmlLayout, NeverIndentsBelowZero) {
  ExpectLayout(u"</A></B></C><D><E /></D>", "</A>\r\n</B>\r\n</C>\r\n<D>\r\n   <E />\r\n</D>\r\n");
}

TEST(XmlLayout, PrintsAnAttributeMarkAsALineBreak) {
  ExpectLayout(u"<A>\u00FEone\u00FEtwo</A><B>\u00FE</B>",
               "<A>\r\none\r\ntwo</A>\r\n<B>\r\n</B>\r\n");
}

TEST(XmlLayout, RemovesLineFeeds) {
  ExpectLayout(u"<A>\n<\n/\nA\n>", "<A></A>\r\n");
  ExpectLayout(u"<?xml version=\"1.0\" ?>\n<A>\n\n</A>\n",
               "<?xml version=\"1.0\" ?>\r\n<A></A>\r\n");
}

TEST(XmlLayout, LosesCrLfInTheHistory) {
  EXPECT_EQ(Formatted(u"<A/>\r\n<B>one\r\ntwo</B>\r\n"), u"<A/>\r\n<B>onetwo</B>\r\n");
  EXPECT_EQ(Formatted(u"<A>1\r\r\n\n2\r3\n</A>"), u"<A>1\r2\r3</A>\r\n");
}

// Required: the response writer removes the LF alone, and then "/>" no longer ends the part.
TEST(XmlLayout, KeepsTheCarriageReturnInAResponseFile) {
  EXPECT_EQ(Written(u"<A/>\r\n<B>t</B>\r\n<C/>"), "<A/>\r\r\n   <B>t</B>\r\r\n   <C/>\r\n");
}

TEST(XmlLayout, KeepsTwoPartsWithLineBreaksApart) {
  EXPECT_EQ(Formatted(u"<A>\none\n</A\n><B>\ntwo\n</B\n>"), u"<A>one</A>\r\n<B>two</B>\r\n");
}

TEST(XmlLayout, BoundsTheIndentationOfEndlessNesting) {
  Text text;
  for (int i = 0; i < 200'000; ++i) text += u"<a>";

  const Text laidOut = Formatted(text);

  EXPECT_LT(laidOut.size(), 16u * 1024 * 1024 + 10 * text.size());
  EXPECT_TRUE(laidOut.starts_with(u"<a>\r\n   <a>\r\n      <a>\r\n"));
  EXPECT_TRUE(laidOut.ends_with(u"\r\n<a>\r\n"));
}

TEST(XmlLayout, NeedsMemoryForTheTextAndHalfOfItOnce) {
  const Text text = u"<A>" + Text(100'000, u'x') + u"</A>";
  Text laidOut = text;
  {
    const MemoryLimit limit(text.size() * sizeof(char16_t) * 3 / 2 + 100);
    EXPECT_NO_THROW(FormatXmlText(laidOut));
  }

  EXPECT_EQ(laidOut == text + u"\r\n", true);
}

TEST(ResponseFile, ReplacesAnEarlierOne) {
  const ScratchFolder folder;
  folder.Write(u"a.osl", std::string(1000, 'x'));

  EXPECT_TRUE(WriteResponseFile(u"<A/>", folder.Path(u"a.osl")));

  EXPECT_EQ(folder.Read(u"a.osl"), "<A/>\r\n");
  EXPECT_EQ(folder.EntryCount(), 1u);
}

TEST(ResponseFile, IsWrittenInTheCodePage) {
  EXPECT_EQ(Written(u"<A>\u00E4\u4E0A</A>"), "<A>\xE4?</A>\r\n");
}

TEST(ResponseFile, CannotBeWrittenWithoutItsFolder) {
  const ScratchFolder folder;

  EXPECT_FALSE(WriteResponseFile(u"<A/>", folder.Path(u"none\\a.osl")));

  EXPECT_EQ(folder.EntryCount(), 0u);
}

TEST(ResponseFile, LeavesNothingBehindWhenItsPlaceIsTaken) {
  const ScratchFolder folder;
  folder.MakeFolder(u"a.osl");

  EXPECT_FALSE(WriteResponseFile(u"<A/>", folder.Path(u"a.osl")));

  EXPECT_EQ(folder.EntryCount(), 1u);
}

TEST(ResponseFile, GoesIntoAnOpenFileFromItsStart) {
  const ScratchFolder folder;
  WholeFile file(folder.Path(u"a.osl"));
  ASSERT_TRUE(file.Open() && file.Reserve(4096));

  EXPECT_TRUE(WriteResponseFile(u"<A/>", file));

  EXPECT_FALSE(folder.Has(u"a.osl"));
  EXPECT_TRUE(file.PutInPlace());
  EXPECT_EQ(folder.Read(u"a.osl"), "<A/>\r\n");
  EXPECT_EQ(folder.EntryCount(), 1u);
}

// The file that could not be written to can be after its first piece.
TEST(ResponseFile, IsNotWholeWhenAPieceIsMissing) {
  const ScratchFolder folder;
  WholeFile file(folder.Path(u"a.osl"));
  platform::Timer open(std::chrono::milliseconds(1), [&] { file.Open(); });
  open.SetEnabled(true);
  Text response;
  for (int i = 0; i < 50'000; ++i) response += u"<Element>text</Element>";

  EXPECT_FALSE(WriteResponseFile(response, file));
}

// Several pieces that can be written, and then one line that there is no memory for.
Text TooLongAtItsEnd() {
  Text response;
  for (int i = 0; i < 20'000; ++i) response += u"<Element>text</Element>";
  return response + u"<Long>" + Text(1'000'000, u'x') + u"</Long>";
}

TEST(ResponseFile, IsNotWholeWhenTheLayoutRunsOutOfMemory) {
  const ScratchFolder folder;
  const Text response = TooLongAtItsEnd();
  WholeFile file(folder.Path(u"a.osl"));
  ASSERT_TRUE(file.Open());

  const MemoryLimit limit(1'000'000);
  EXPECT_FALSE(WriteResponseFile(response, file));

  // Looked at from outside: nobody else can open it.
  const auto path = std::filesystem::path(folder.Path()) / "a.osl.part";
  EXPECT_GT(std::filesystem::file_size(path), 200'000u);
}

TEST(ResponseFile, IsNotPutInItsPlaceWhenTheLayoutRunsOutOfMemory) {
  const ScratchFolder folder;
  const Text response = TooLongAtItsEnd();
  {
    const MemoryLimit limit(1'000'000);
    EXPECT_FALSE(WriteResponseFile(response, folder.Path(u"a.osl")));
  }
  EXPECT_EQ(folder.EntryCount(), 0u);

  EXPECT_TRUE(WriteResponseFile(response, folder.Path(u"a.osl")));
}

TEST(ResponseFile, CannotBeWrittenWithoutMemoryForItsName) {
  const ScratchFolder folder;
  const Text path = folder.Path(u"a.osl");
  const MemoryLimit limit(16);

  EXPECT_FALSE(WriteResponseFile(u"<A/>", path));
}

TEST(WholeFile, IsNotWrittenOverWhatAnotherProgramHasOpen) {
  const ScratchFolder folder;
  folder.Write(u"a.osl.part", "in work");
  platform::File other;
  ASSERT_EQ(other.Open(folder.Path(u"a.osl.part"), platform::FileAccess::kReadWrite,
                       platform::FileCreation::kOpenExisting),
            0);
  WholeFile file(folder.Path(u"a.osl"));

  EXPECT_FALSE(file.Open());

  EXPECT_EQ(file.Error(), platform::kSharingViolation);
  other.Close();
  EXPECT_EQ(folder.Read(u"a.osl.part"), "in work");
}

TEST(WholeFile, HasAnotherNameBesideItsPlaceWhenItIsGivenOne) {
  const ScratchFolder folder;
  {
    WholeFile file(folder.Path(u"a.osl"), folder.Path(u"beside"));
    ASSERT_TRUE(file.Open() && file.Write(u"text"));
    const bool isBeside = folder.Has(u"beside");

    EXPECT_TRUE(isBeside && file.Rename(folder.Path(u"finished")));
    EXPECT_EQ(folder.Read(u"finished"), "text");
    EXPECT_EQ(folder.EntryCount(), 1u);
  }
  EXPECT_EQ(folder.EntryCount(), 0u);
}

TEST(WholeFile, StartsAnewWithWhatHasBeenWritten) {
  const ScratchFolder folder;
  WholeFile file(folder.Path(u"a.osl"));
  ASSERT_TRUE(file.Open() && file.Write(u"given up") && file.Close());

  EXPECT_TRUE(file.Open() && file.Write(u"new") && file.PutInPlace());

  EXPECT_EQ(folder.Read(u"a.osl"), "new");
}

TEST(WholeFile, IsPutInPlaceOnceThatIsFree) {
  const ScratchFolder folder;
  folder.MakeFolder(u"a.osl");
  WholeFile file(folder.Path(u"a.osl"));
  ASSERT_TRUE(file.Open() && file.Write(u"text"));
  const bool atOnce = file.PutInPlace();
  const int error = file.Error();

  std::filesystem::remove(std::filesystem::path(folder.Path()) / "a.osl");

  EXPECT_FALSE(atOnce);
  EXPECT_NE(error, 0);
  EXPECT_TRUE(file.PutInPlace());
  EXPECT_EQ(folder.Read(u"a.osl"), "text");
}

TEST(WholeFile, StaysBesideItsPlaceWhenItIsKept) {
  const ScratchFolder folder;
  {
    WholeFile file(folder.Path(u"a.osl"));
    ASSERT_TRUE(file.Open() && file.Write(u"text"));
    file.Keep();
  }

  EXPECT_EQ(folder.Read(u"a.osl.part"), "text");
}

TEST(ResponseFile, IsWrittenInPiecesOf65536Characters) {
  const ScratchFolder folder;
  const auto path = std::filesystem::path(folder.Path()) / "a.osl.part";
  Text response;
  for (int i = 0; i < 2'000; ++i) response += u"<Element>" + Text(43, u'x') + u"</Element>";
  std::vector<std::uintmax_t> sizes;
  platform::Timer look(std::chrono::milliseconds(1),
                       [&] { sizes.push_back(std::filesystem::file_size(path)); });
  look.SetEnabled(true);
  look.TickSoon();

  EXPECT_TRUE(WriteResponseFile(response, folder.Path(u"a.osl")));

  ASSERT_FALSE(sizes.empty());
  EXPECT_EQ(sizes.front(), 65'536u);
}

// Long enough for several pieces; events run between them and see no half file.
TEST(ResponseFile, AppearsWhole) {
  const ScratchFolder folder;
  Text response;
  for (int i = 0; i < 50'000; ++i) response += u"<Element>text</Element>";
  int looks = 0;
  bool seen = false;
  platform::Timer look(std::chrono::milliseconds(1), [&] {
    ++looks;
    seen = seen || folder.Has(u"a.osl");
  });
  look.SetEnabled(true);

  EXPECT_TRUE(WriteResponseFile(response, folder.Path(u"a.osl")));

  EXPECT_GT(looks, 0);
  EXPECT_FALSE(seen);
  EXPECT_EQ(folder.Read(u"a.osl").size(), response.size() + 50'000 * 2);
}

}  // namespace
}  // namespace ostrel
