#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "shell/commands/TestRequest.h"
#include "tests/unit/shell/SessionCommandTest.h"

namespace ostrel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class TestRequestTest : public SessionCommandTest {
 protected:
  TestRequest Test{Gate, Handler, Session, Dialogs, Report, Trace};
};

TEST_F(TestRequestTest, OffersTheQuestionForTheProduct) {
  Test.mnuToolsTest_Click();

  EXPECT_THAT(Dialogs.Questions, ElementsAre(u"Request"));
  EXPECT_THAT(Dialogs.TextsOffered, ElementsAre(u"QUICKBOOKSINFO"));
}

TEST_F(TestRequestTest, ShowsTheResponse) {
  Dialogs.TextAnswer = u"<?xml version=\"1.0\"?><QBXML/>";
  QuickBooks.sResponse = u"<QBXML>\nanswer</QBXML>";

  Test.mnuToolsTest_Click();

  EXPECT_EQ(Forms.Only().sCaption, u"Test Request");
  EXPECT_EQ(Forms.Only().sText, u"<QBXML>\r\nanswer</QBXML>");
  EXPECT_TRUE(Forms.Only().bOpen);
}

TEST_F(TestRequestTest, TakesTheGatewaysCommands) {
  Dialogs.TextAnswer = u"QUICKBOOKSINFO";

  Test.mnuToolsTest_Click();

  EXPECT_TRUE(ostrel::Contains(Forms.Only().sText, u"<QBFileName>C:\\a.qbw</QBFileName>"));
}

TEST_F(TestRequestTest, TellsWhyThereIsNoResponse) {
  Dialogs.TextAnswer = u"<QBXML/>";
  Settings.bValidateXML = false;
  QuickBooks.Respond = [](TextView request) -> Text {
    if (ostrel::Contains(request, u"HostQueryRq")) return u"<ProductName>Pro</ProductName>";
    throw RequestProcessorError(static_cast<std::int32_t>(0x80040400), u"no");
  };

  Test.mnuToolsTest_Click();

  EXPECT_EQ(Forms.Only().sText, Session.ErrorDescription(0x400));
}

TEST_F(TestRequestTest, ShowsNothingForAnEmptyResponseThatIsNoError) {
  Dialogs.TextAnswer = u"<?xml version=\"1.0\"?><QBXML/>";
  QuickBooks.sResponse = u"";

  Test.mnuToolsTest_Click();

  EXPECT_EQ(Forms.Only().sText, u"");
  EXPECT_TRUE(Forms.Only().bOpen);
}

TEST_F(TestRequestTest, ShowsTheSentenceOfARefusedRequestAndNotItsNumber) {
  Dialogs.TextAnswer = u"QBFILENAME:a\u0001";

  Test.mnuToolsTest_Click();

  EXPECT_EQ(Forms.Only().sText, u"The company file name holds a control character");
}

TEST_F(TestRequestTest, AsksNothingWhenCancelledOrEmpty) {
  Test.mnuToolsTest_Click();
  Dialogs.TextAnswer = u"";
  Test.mnuToolsTest_Click();

  EXPECT_THAT(QuickBooks.Calls, IsEmpty());
  EXPECT_FALSE(HasShown());
}

TEST_F(TestRequestTest, IsRefusedWhileARequestIsInWork) {
  Dialogs.TextAnswer = u"QUICKBOOKSINFO";
  const auto pass = Gate.TryEnter();

  Test.mnuToolsTest_Click();

  EXPECT_THAT(Trace.Status, ElementsAre(u"A request is in work: try again when it has ended"));
  EXPECT_THAT(QuickBooks.Calls, IsEmpty());
}

TEST_F(TestRequestTest, HoldsThePassWhileTheRequestIsInWork) {
  Dialogs.TextAnswer = u"QUICKBOOKSINFO";
  bool busy = false;
  QuickBooks.DuringCall = [&](TextView) { busy = Gate.IsBusy(); };

  Test.mnuToolsTest_Click();

  EXPECT_TRUE(busy);
  EXPECT_FALSE(Gate.IsBusy());
}

TEST_F(TestRequestTest, GivesThePassBackBeforeTheReportIsShown) {
  Dialogs.TextAnswer = u"QUICKBOOKSINFO";
  bool busy = true;
  Forms.DuringShow = [&] { busy = Gate.IsBusy(); };

  Test.mnuToolsTest_Click();

  EXPECT_FALSE(busy);
}

}  // namespace
}  // namespace ostrel
