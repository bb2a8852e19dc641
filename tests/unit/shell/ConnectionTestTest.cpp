#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "shell/commands/ConnectionTest.h"
#include "shell/commands/SupportReport.h"
#include "tests/unit/shell/SessionCommandTest.h"
#include "util/Cures.h"

namespace ostrel {
namespace {

using platform::Answer;
using std::chrono::seconds;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

constexpr TextView kBusy = u"A request is in work: try again when it has ended";

// Below the message, a blank line and what to do.
Text WithCure(TextView message, std::int32_t number) {
  return Text(message) + u"\r\n\r\n" + Text(CureText(CureOf::kGateway, number));
}

class ConnectionTestTest : public SessionCommandTest {
 protected:
  void Run() { Test.mnuFileTest_Click(); }

  // The one message of a test whose session fails to begin with this reduced number.
  Text MessageFor(std::uint32_t number, const Text& description = u"as the test wants it") {
    Window.Messages.clear();
    QuickBooks.Fail(u"BeginSession", 0x80040000u + number, description);
    Run();
    EXPECT_THAT(Window.Messages, SizeIs(1)) << number;
    EXPECT_FALSE(IsOpen()) << number;
    EXPECT_FALSE(Gate.IsBusy()) << number;
    EXPECT_FALSE(HasShown()) << number;
    return Window.Messages.empty() ? Text() : Window.Messages[0];
  }

  ConnectionTest Test{
      Settings, {Gate, Session, Query, Idle}, CompanyFile, Window, Dialogs, Report, Trace, Clock};
};

TEST_F(ConnectionTestTest, ReportsTheProductInTheErrorDialog) {
  Run();

  EXPECT_EQ(Forms.Only().sCaption, u"Quickbooks Connection Status:");
  EXPECT_EQ(Forms.Only().sText,
            u"Ostrel is functioning correctly.\r\nQuickbooks QuickBooks Premier Edition 2008 "
            u"18.0\r\n");
  EXPECT_TRUE(Forms.Only().bOpen);
  EXPECT_THAT(Window.Messages, IsEmpty());
}

TEST_F(ConnectionTestTest, OpensTheSessionAsRequestsDo) {
  Run();

  ASSERT_THAT(QuickBooks.Calls, SizeIs(3));
  EXPECT_EQ(QuickBooks.Calls[0], u"OpenConnection(ostrel, Ostrel)");
  EXPECT_EQ(
      QuickBooks.Calls[1],
      u"BeginSession(C:\\a.qbw, " + ToText(static_cast<std::int64_t>(FileMode::kDoNotCare)) + u")");
  EXPECT_TRUE(IsOpen());
}

TEST_F(ConnectionTestTest, UsesASessionThatIsOpen) {
  Run();
  QuickBooks.Calls.clear();

  Run();

  EXPECT_THAT(QuickBooks.Calls, SizeIs(1));
}

TEST_F(ConnectionTestTest, PutsTheIdleCloseOff) {
  Run();

  EXPECT_EQ(Idle.dCloseAt, Clock.SteadyNow() + seconds(300));
}

TEST_F(ConnectionTestTest, LeavesTheIdleCloseWithoutATimeout) {
  Settings.iDisconnectTimeout = 0;

  Run();

  EXPECT_EQ(Idle.dCloseAt, platform::SteadyPoint{});
}

TEST_F(ConnectionTestTest, EndsByCancelWithoutACompanyFile) {
  Settings.sQBFileName.clear();
  Dialogs.iAnswer = Answer::kCancel;

  Run();

  EXPECT_THAT(Dialogs.Questions, ElementsAre(u"Do you want to set a Default Quickbooks Database?"));
  EXPECT_THAT(QuickBooks.Calls, IsEmpty());
  EXPECT_THAT(Dialogs.FileQuestions, IsEmpty());
  EXPECT_FALSE(HasShown());
}

TEST_F(ConnectionTestTest, ChoosesTheCompanyFileFirst) {
  Settings.sQBFileName.clear();
  Dialogs.iAnswer = Answer::kYes;
  Dialogs.FileAnswer = u"C:\\b.qbw";

  Run();

  EXPECT_EQ(QuickBooks.sCompanyFile, u"C:\\b.qbw");
  EXPECT_NE(Ini().find("FileName=C:\\b.qbw"), std::string::npos);
}

TEST_F(ConnectionTestTest, TakesTheCompanyFileThatIsOpen) {
  Settings.sQBFileName.clear();
  Dialogs.iAnswer = Answer::kNo;

  Run();

  EXPECT_THAT(Dialogs.FileQuestions, IsEmpty());
  EXPECT_THAT(QuickBooks.Calls, Contains(testing::Truly([](const Text& call) {
                return call.starts_with(u"BeginSession(, ");
              })));
  EXPECT_TRUE(HasShown());
}

TEST_F(ConnectionTestTest, AsksNothingWithACompanyFile) {
  Run();

  EXPECT_THAT(Dialogs.Questions, IsEmpty());
}

TEST_F(ConnectionTestTest, TellsThatThereIsNoPermission) {
  EXPECT_EQ(
      MessageFor(1050),
      WithCure(u"This application does not have permission to access this QuickBooks company data "
               u"file. The QuickBooks administrator can grant access permission through the "
               u"Integrated Application preferences\r\nQB Database: C:\\a.qbw\r\n\r\nPlease Start "
               u"Quickbooks manually, and then run the test again.",
               1050));
}

TEST_F(ConnectionTestTest, TellsThatAutomaticLoginIsNotAllowed) {
  EXPECT_EQ(
      MessageFor(1053),
      WithCure(
          u"This application is not allowed to log into this QuickBooks company data file "
          u"automatically. The QuickBooks administrator can grant permission for automatic login "
          u"through the Integrated Application preferences\r\nQB Database: C:\\a.qbw\r\n\r\n"
          u"Please Start Quickbooks manually, and then run the test again.",
          1053));
}

TEST_F(ConnectionTestTest, TellsToStartQuickBooks) {
  EXPECT_EQ(MessageFor(1056),
            WithCure(u"Please Start Quickbooks manually, and then run the test again.", 1056));
}

TEST_F(ConnectionTestTest, TellsThatQuickBooksDidNotStart) {
  Settings.sQBFileName.clear();
  Dialogs.iAnswer = Answer::kNo;

  EXPECT_EQ(
      MessageFor(1046),
      WithCure(
          u"Unable to Start Quickbooks. Verify the QB Database file path, or start Quickbooks\r\n"
          u"QB Database: ",
          1046));
}

TEST_F(ConnectionTestTest, TellsThatTheCompanyFileIsAnother) {
  EXPECT_EQ(
      MessageFor(1034),
      WithCure(u"Company File open does not match the Company file we are trying to update.\r\n"
               u"QB Database: C:\\a.qbw",
               1034));
}

TEST_F(ConnectionTestTest, TellsThatTheCompanyFileCannotBeOpened) {
  QuickBooks.Fail(u"BeginSession", 0x80004005u);

  Run();

  EXPECT_THAT(Window.Messages,
              ElementsAre(WithCure(
                  u"Unable to Open the Quickbooks Database, or it is the wrong version.\r\n"
                  u" QB FileName: C:\\a.qbw",
                  2)));
}

TEST_F(ConnectionTestTest, TellsThatQuickBooksIsNotInstalled) {
  QuickBooks.bInstalled = false;

  Run();

  EXPECT_THAT(
      Window.Messages,
      ElementsAre(WithCure(u"Invalid or Corrupted Install.  Missing the Quickbooks SDK.", 3)));
  EXPECT_FALSE(IsOpen());
}

TEST_F(ConnectionTestTest, TellsTheNumberAndTextOfAnyOtherError) {
  const Text message = MessageFor(1099, u"strange");

  EXPECT_EQ(message, u"Unknown Error: 1099\r\n" + Session.ErrorDescription(1099));
  EXPECT_THAT(message,
              testing::Truly([](const Text& text) { return ostrel::Contains(text, u"strange"); }));
}

TEST_F(ConnectionTestTest, TellsWhatToDoBelowTheMessage) {
  EXPECT_TRUE(MessageFor(1056).ends_with(
      u"run the test again.\r\n\r\nRun the connection test again, and allow access in QuickBooks "
      u"when it asks."));
}

TEST_F(ConnectionTestTest, TellsWhatToDoAboutAnErrorWithoutAMessageOfItsOwn) {
  const Text message = MessageFor(1060, u"starting");

  EXPECT_EQ(message, WithCure(u"Unknown Error: 1060\r\n" + Session.ErrorDescription(1060), 1060));
}

TEST_F(ConnectionTestTest, LetsRequestsInBeforeItTellsAFailure) {
  bool busy = true;
  bool open = true;
  Window.DuringMessage = [&] {
    busy = Gate.IsBusy();
    open = IsOpen();
  };

  MessageFor(1056);

  EXPECT_FALSE(busy);
  EXPECT_FALSE(open);
}

TEST_F(ConnectionTestTest, ReportsAnUnknownProduct) {
  QuickBooks.sResponse = u"<QBXML>\n</QBXML>";

  Run();

  EXPECT_EQ(Forms.Only().sCaption, u"Quickbooks Validation Error:");
  EXPECT_EQ(Forms.Only().sText,
            u"Unable to determane the Version of Quickbooks you are using.\r\n" + SupportRequest() +
                u"\r\n<QBXML>\r\n</QBXML>");
  EXPECT_FALSE(IsOpen());
}

TEST_F(ConnectionTestTest, ReportsAQueryThatFailed) {
  QuickBooks.Fail(u"ProcessRequest", 0x80040401u);

  Run();

  EXPECT_EQ(Forms.Only().sCaption, u"Quickbooks Validation Error:");
  EXPECT_TRUE(Forms.Only().sText.ends_with(Session.ErrorDescription(0x401)));
  EXPECT_FALSE(IsOpen());
}

TEST_F(ConnectionTestTest, ReportsAQuickBooksThatIsGone) {
  Run();
  QuickBooks.Fail(u"ProcessRequest", 0x800706BAu);
  Run();
  const Text gone = Forms.Only().sCaption;
  QuickBooks.Failures.clear();
  Run();

  EXPECT_EQ(gone, u"Quickbooks Validation Error:");
  EXPECT_EQ(Forms.Only().sCaption, u"Quickbooks Connection Status:");
}

TEST_F(ConnectionTestTest, HoldsThePassWhileItUsesTheSession) {
  std::vector<bool> busy;
  QuickBooks.DuringCall = [&](TextView) { busy.push_back(Gate.IsBusy()); };

  Run();

  EXPECT_FALSE(busy.empty());
  EXPECT_THAT(busy, testing::Each(true));
  EXPECT_FALSE(Gate.IsBusy());
}

TEST_F(ConnectionTestTest, IsRefusedWhileARequestIsInWork) {
  const auto pass = Gate.TryEnter();

  Run();

  EXPECT_THAT(Trace.Status, ElementsAre(kBusy));
  EXPECT_THAT(QuickBooks.Calls, IsEmpty());
}

TEST_F(ConnectionTestTest, ChangesNoSetting) {
  MessageFor(1050);

  EXPECT_EQ(Settings.sQBFileName, u"C:\\a.qbw");
  EXPECT_EQ(Ini(), "");
}

}  // namespace
}  // namespace ostrel
