#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <new>
#include <optional>
#include <stdexcept>
#include <vector>

#include "gateway/qbxml.h"
#include "tests/unit/doubles/FakeRequestProcessor.h"
#include "util/Wire.h"

namespace ostrel {
namespace {

using doubles::FakeQuickBooks;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class qbxmlTest : public ::testing::Test {
 protected:
  qbxmlTest() {
    session.emplace(quickBooks.Factory());
    session->UpdateStatus = [this](TextView text) { events.emplace_back(text); };
    session->Loading = [this] { events.emplace_back(u"[Loading]"); };
    session->Loaded = [this] { events.emplace_back(u"[Loaded]"); };
  }

  std::int32_t Open() {
    return session->OpenConnectionAndBeginSession(u"ostrel", u"Ostrel", u"C:\\a.qbw", 0,
                                                  errorNumber);
  }

  // A session that is open and has told and called nothing yet.
  void BeOpen() {
    ASSERT_EQ(Open(), 0);
    events.clear();
    quickBooks.Calls.clear();
  }

  FakeQuickBooks quickBooks;
  std::vector<Text> events;
  std::optional<qbxml> session;
  std::int32_t errorNumber = -1;
  Text response;
};

TEST_F(qbxmlTest, IsClosedWhenNew) {
  EXPECT_FALSE(session->IsConnected());
  EXPECT_FALSE(session->bSessionBegun);
  EXPECT_EQ(quickBooks.iProcessorsCreated, 0);
}

TEST_F(qbxmlTest, OpensTheConnectionAndBeginsTheSession) {
  EXPECT_EQ(Open(), 0);

  EXPECT_EQ(errorNumber, 0);
  EXPECT_THAT(quickBooks.Calls,
              ElementsAre(u"OpenConnection(ostrel, Ostrel)", u"BeginSession(C:\\a.qbw, 2)"));
  EXPECT_TRUE(session->IsConnected());
  EXPECT_TRUE(session->bSessionBegun);
  EXPECT_EQ(session->sTicket, u"ticket");
}

TEST_F(qbxmlTest, TellsWhatItDoesWhileItOpens) {
  Open();

  EXPECT_THAT(events,
              ElementsAre(u"Openning Connection", u"Connection Open", u"Loading Company file",
                          u"[Loading]", u"[Loaded]", u"Session begun with C:\\a.qbw"));
}

TEST_F(qbxmlTest, IsConnectedWhileTheCompanyFileLoads) {
  bool connected = false;
  session->Loading = [&] { connected = session->IsConnected() && !session->bSessionBegun; };

  Open();

  EXPECT_TRUE(connected);
}

TEST_F(qbxmlTest, AsksForTheAccessThatTheFileModeNames) {
  ASSERT_EQ(session->OpenConnection(u"ostrel", u"Ostrel", errorNumber), 0);
  quickBooks.Calls.clear();

  for (const int fileMode : {0, 1, 2, 3, -1}) {
    session->BeginSession(u"a", static_cast<std::int16_t>(fileMode), errorNumber);
  }

  EXPECT_THAT(quickBooks.Calls,
              ElementsAre(u"BeginSession(a, 2)", u"BeginSession(a, 0)", u"BeginSession(a, 1)",
                          u"BeginSession(a, 2)", u"BeginSession(a, 2)"));
}

TEST_F(qbxmlTest, ReportsAFailedConnectionAndStaysClosed) {
  quickBooks.Fail(u"OpenConnection", 0x80040408, u"no start");

  EXPECT_EQ(Open(), 0x408);

  EXPECT_EQ(errorNumber, 0x408);
  EXPECT_EQ(session->sLastError, u"no start");
  EXPECT_EQ(session->lLastError, 0x408);
  EXPECT_THAT(events, ElementsAre(u"Openning Connection"));
  EXPECT_THAT(quickBooks.Calls, ElementsAre(u"OpenConnection(ostrel, Ostrel)"));
  EXPECT_FALSE(session->IsConnected());
}

TEST_F(qbxmlTest, ReportsAFailedSessionAndStaysConnectedUntilClosed) {
  quickBooks.Fail(u"BeginSession", 0x8004041A, u"no permission");

  EXPECT_EQ(Open(), 1050);

  EXPECT_EQ(errorNumber, 1050);
  EXPECT_EQ(session->sLastError, u"no permission");
  EXPECT_TRUE(session->IsConnected());
  EXPECT_FALSE(session->bSessionBegun);

  session->EndSessionAndCloseConnection();
  EXPECT_FALSE(session->IsConnected());
}

TEST_F(qbxmlTest, EndsTheLoadingNoticeWhenLoadingFailed) {
  quickBooks.Fail(u"BeginSession", 0x80040403);

  Open();

  EXPECT_THAT(events, ElementsAre(u"Openning Connection", u"Connection Open",
                                  u"Loading Company file", u"[Loading]", u"[Loaded]"));
}

TEST_F(qbxmlTest, KeepsTheLastErrorWhenItClosesAfterAFailure) {
  quickBooks.Fail(u"BeginSession", 0x8004041A, u"no permission");
  quickBooks.Fail(u"CloseConnection", 0x80040402, u"unexpected");
  Open();

  session->EndSessionAndCloseConnection();

  EXPECT_EQ(session->sLastError, u"no permission");
  EXPECT_EQ(session->lLastError, 1050);
}

// Required: the two members have texts of their own.
TEST_F(qbxmlTest, SaysThatTheSdkIsMissing) {
  quickBooks.bInstalled = false;

  EXPECT_EQ(Open(), 3);
  EXPECT_EQ(errorNumber, 3);
  EXPECT_EQ(session->lLastError, 3);
  EXPECT_EQ(session->sLastError, u"Quickbooks SDK Missing.  Invalid Install");

  EXPECT_EQ(session->OpenConnection(u"ostrel", u"Ostrel", errorNumber = 0), 3);
  EXPECT_EQ(errorNumber, 3);
  EXPECT_EQ(session->sLastError, u"Quickbooks SDK missing.  Invalid Install.");

  EXPECT_THAT(events, IsEmpty());
  EXPECT_FALSE(session->bProcessorCreated);
}

TEST_F(qbxmlTest, OpensOnceTheSdkIsInstalled) {
  quickBooks.bInstalled = false;
  Open();
  quickBooks.bInstalled = true;

  EXPECT_EQ(Open(), 0);

  EXPECT_EQ(session->sLastError, u"");
}

TEST(qbxmlFactory, CountsAsMissingSdkWhateverItRaisesOrReturns) {
  std::int32_t errorNumber = 0;

  qbxml raising([]() -> std::unique_ptr<RequestProcessor> { throw std::bad_alloc(); });
  EXPECT_EQ(raising.OpenConnection(u"", u"", errorNumber), 3);

  qbxml empty([] { return std::unique_ptr<RequestProcessor>(); });
  EXPECT_EQ(empty.OpenConnection(u"", u"", errorNumber), 3);
}

TEST_F(qbxmlTest, KeepsOneProcessorForItsLife) {
  Open();
  session->EndSessionAndCloseConnection();
  Open();

  EXPECT_EQ(quickBooks.iProcessorsCreated, 1);
}

TEST_F(qbxmlTest, EndsTheSessionAndClosesTheConnection) {
  BeOpen();

  session->EndSessionAndCloseConnection();

  EXPECT_THAT(quickBooks.Calls, ElementsAre(u"EndSession(ticket)", u"CloseConnection()"));
  EXPECT_THAT(events, ElementsAre(u"Disconnecting from Quickbooks", u"Closing Quickbooks."));
  EXPECT_FALSE(session->IsConnected());
  EXPECT_FALSE(session->bSessionBegun);
}

TEST_F(qbxmlTest, ClosesNothingWhenClosed) {
  session->EndSessionAndCloseConnection();

  EXPECT_THAT(events, IsEmpty());
  EXPECT_THAT(quickBooks.Calls, IsEmpty());
}

TEST_F(qbxmlTest, IsClosedEvenWhenQuickBooksRefusesToClose) {
  BeOpen();
  quickBooks.Fail(u"EndSession", 0x80040402);
  quickBooks.Fail(u"CloseConnection", 0x80040402);

  session->EndSessionAndCloseConnection();

  EXPECT_FALSE(session->IsConnected());
  EXPECT_FALSE(session->bSessionBegun);
  EXPECT_EQ(session->lLastError, 0);
}

TEST_F(qbxmlTest, NotesWhyASessionOrAConnectionCouldNotBeEnded) {
  BeOpen();
  quickBooks.Fail(u"EndSession", 0x80040402, u"unexpected");
  quickBooks.Fail(u"CloseConnection", 0x8004040F, u"not open");

  session->EndSession();
  EXPECT_EQ(session->sLastError, u"unexpected");
  EXPECT_EQ(session->lLastError, 0x402);
  session->CloseConnection();

  EXPECT_EQ(session->sLastError, u"not open");
  EXPECT_EQ(session->lLastError, 0x40F);
  EXPECT_FALSE(session->bSessionBegun);
  EXPECT_FALSE(session->IsConnected());
}

// Required: the end closes the connection; whoever wants the session ended does that before.
TEST_F(qbxmlTest, ClosesTheConnectionWhenItIsDestroyed) {
  BeOpen();

  session.reset();

  EXPECT_THAT(quickBooks.Calls, ElementsAre(u"CloseConnection()"));
  EXPECT_EQ(quickBooks.iProcessorsAlive, 0);
}

TEST_F(qbxmlTest, PassesTheRequestOnAndTheResponseBack) {
  BeOpen();
  quickBooks.sResponse = u"<reply/>";

  EXPECT_EQ(session->ProcessRequest(u"<request/>", response), 0);

  EXPECT_EQ(response, u"<reply/>");
  EXPECT_THAT(quickBooks.Calls, ElementsAre(u"ProcessRequest(ticket, <request/>)"));
  EXPECT_THAT(events, ElementsAre(u"Processing Request", u"Request Processed"));
}

TEST_F(qbxmlTest, MarksTheTextOfAFailedRequest) {
  BeOpen();
  quickBooks.Fail(u"ProcessRequest", 0x80040400, u"bad XML");
  response = u"of another request";

  EXPECT_EQ(session->ProcessRequest(u"<", response), 1024);

  EXPECT_EQ(response, u"");
  EXPECT_EQ(session->lLastError, 1024);
  EXPECT_EQ(session->sLastError, u"bad XML (ProcessRequest:1024)");
  EXPECT_TRUE(session->IsConnected());
}

TEST_F(qbxmlTest, ForgetsTheLastErrorWithTheNextRequest) {
  BeOpen();
  quickBooks.Fail(u"ProcessRequest", 0x80040400);
  session->ProcessRequest(u"<", response);
  quickBooks.Failures.clear();

  session->ProcessRequest(u"<a/>", response);

  EXPECT_EQ(session->lLastError, 0);
  EXPECT_EQ(session->sLastError, u"");
}

TEST_F(qbxmlTest, RejectsARequestBeforeItIsOpen) {
  EXPECT_EQ(session->ProcessRequest(u"<a/>", response), 0x40F);

  EXPECT_EQ(session->sLastError,
            u"The OpenConnection method has not been called. (ProcessRequest:1039)");
}

TEST_F(qbxmlTest, NamesTheOpenCompanyFile) {
  BeOpen();

  EXPECT_EQ(session->CompanyFileName(), u"C:\\a.qbw");
}

TEST_F(qbxmlTest, HasNoCompanyFileBeforeASession) {
  EXPECT_THAT(ToUtf8(session->CompanyFileName()),
              ::testing::StartsWith("Connection to Quickbooks Failed.  SessionId:  "));
  EXPECT_EQ(session->lLastError, 0);
}

TEST_F(qbxmlTest, SaysWhyTheCompanyFileCannotBeNamedAndForgetsIt) {
  BeOpen();
  quickBooks.Fail(u"GetCurrentCompanyFileName", 0x8004040B, u"no name");

  EXPECT_EQ(session->CompanyFileName(),
            u"Connection to Quickbooks Failed.  SessionId: ticket no name");
  EXPECT_EQ(session->lLastError, 0);
  EXPECT_EQ(session->sLastError, u"");
}

TEST_F(qbxmlTest, BeginsTheSessionEvenWhenTheFileCannotBeNamed) {
  quickBooks.Fail(u"GetCurrentCompanyFileName", 0x8004040B, u"no name");

  EXPECT_EQ(Open(), 0);

  EXPECT_TRUE(session->bSessionBegun);
  EXPECT_EQ(events.back(),
            u"Session begun with Connection to Quickbooks Failed.  SessionId: ticket no name");
}

// Numbers that reduce to 0 or less would pass for success.
TEST_F(qbxmlTest, NeverLetsAFailureLookLikeSuccess) {
  BeOpen();
  for (const std::uint32_t hresult : {0x80020009u, 0x80040000u, 0x80004005u, 0x80000000u}) {
    quickBooks.Fail(u"ProcessRequest", hresult, u"why");
    EXPECT_EQ(session->ProcessRequest(u"<a/>", response), 2) << hresult;
  }

  EXPECT_EQ(session->lLastError, 2);
  EXPECT_EQ(session->sLastError, u"why (0x80000000) (ProcessRequest:2)");
}

TEST_F(qbxmlTest, ReducesNumbersOfOthersAsItsOwn) {
  BeOpen();
  quickBooks.Fail(u"ProcessRequest", 0x80070005);

  EXPECT_EQ(session->ProcessRequest(u"<a/>", response), 0x30005);
}

TEST_F(qbxmlTest, ReportsWhateverElseIsRaised) {
  BeOpen();

  quickBooks.Respond = [](TextView) -> Text { throw std::bad_alloc(); };
  EXPECT_EQ(session->ProcessRequest(u"<a/>", response), 7);
  EXPECT_EQ(session->sLastError, u"Out of memory (ProcessRequest:7)");

  quickBooks.Respond = [](TextView) -> Text { throw std::runtime_error("x"); };
  EXPECT_EQ(session->ProcessRequest(u"<a/>", response), 51);
  EXPECT_EQ(session->sLastError, u"Internal error (ProcessRequest:51)");
}

class QuickBooksGone : public qbxmlTest, public ::testing::WithParamInterface<std::uint32_t> {};
INSTANTIATE_TEST_SUITE_P(Numbers, QuickBooksGone,
                         ::testing::Values(0x800706BA, 0x800706BE, 0x800706BF, 0x80010007,
                                           0x80010012, 0x80010108, 0x800401FD));

TEST_P(QuickBooksGone, InMidSessionLeavesNothingOpenAndOpensAfresh) {
  BeOpen();
  quickBooks.Fail(u"ProcessRequest", GetParam(), u"gone");

  EXPECT_GT(session->ProcessRequest(u"<a/>", response), 0);
  EXPECT_FALSE(session->IsConnected());
  EXPECT_FALSE(session->bSessionBegun);
  EXPECT_EQ(quickBooks.iProcessorsAlive, 0);

  quickBooks.Failures.clear();
  EXPECT_EQ(Open(), 0);
  EXPECT_EQ(session->ProcessRequest(u"<a/>", response), 0);
  EXPECT_EQ(quickBooks.iProcessorsCreated, 2);
}

TEST_P(QuickBooksGone, WhileItOpensLeavesNothingOpenAndOpensAfresh) {
  for (const Text operation : {u"OpenConnection", u"BeginSession"}) {
    quickBooks.Fail(operation, GetParam());
    EXPECT_GT(Open(), 0);
    session->EndSessionAndCloseConnection();
    quickBooks.Failures.clear();

    EXPECT_EQ(Open(), 0);
    session->EndSessionAndCloseConnection();
  }
}

TEST_P(QuickBooksGone, WhileItClosesLeavesNothingOpenAndOpensAfresh) {
  BeOpen();
  quickBooks.Fail(u"EndSession", GetParam());
  session->EndSessionAndCloseConnection();
  quickBooks.Failures.clear();

  EXPECT_FALSE(session->IsConnected());
  EXPECT_EQ(Open(), 0);
  EXPECT_EQ(quickBooks.iProcessorsCreated, 2);
}

TEST_P(QuickBooksGone, RightAfterTheSessionWasBegunLeavesNothingOpen) {
  quickBooks.Fail(u"GetCurrentCompanyFileName", GetParam());

  Open();

  EXPECT_FALSE(session->IsConnected());
  EXPECT_FALSE(session->bSessionBegun);
}

TEST_F(qbxmlTest, KeepsTheRealNumberOfADisconnectedObject) {
  BeOpen();
  quickBooks.Fail(u"ProcessRequest", 0x80010108, u"disconnected");

  EXPECT_EQ(session->ProcessRequest(u"<a/>", response), 2);

  EXPECT_EQ(session->sLastError, u"disconnected (0x80010108) (ProcessRequest:2)");
  EXPECT_EQ(events.back(), u"Quickbooks is gone.");
}

// Events run during a call; one of them may find QuickBooks gone before the call itself does.
TEST_F(qbxmlTest, KeepsTheProcessorAliveUnderACallThatIsOutstanding) {
  BeOpen();
  quickBooks.Fail(u"GetCurrentCompanyFileName", 0x800706BA);
  quickBooks.DuringCall = [&](TextView operation) {
    if (operation != u"ProcessRequest") return;
    session->CompanyFileName();
    EXPECT_EQ(quickBooks.iProcessorsAlive, 1);
  };

  EXPECT_EQ(session->ProcessRequest(u"<a/>", response), 0);

  EXPECT_EQ(quickBooks.iProcessorsAlive, 0);
}

TEST_F(qbxmlTest, IsNotDisturbedByListenersThatRaise) {
  session->UpdateStatus = [](TextView) { throw std::runtime_error("status"); };
  session->Loading = [] { throw std::runtime_error("loading"); };
  session->Loaded = [] { throw std::runtime_error("loaded"); };

  EXPECT_EQ(Open(), 0);
  EXPECT_EQ(session->ProcessRequest(u"<a/>", response), 0);
}

TEST(qbxmlEvents, NeedNoListener) {
  FakeQuickBooks quickBooks;
  qbxml session(quickBooks.Factory());
  std::int32_t errorNumber = 0;

  EXPECT_EQ(session.OpenConnectionAndBeginSession(u"a", u"b", u"c", 0, errorNumber), 0);
}

TEST_F(qbxmlTest, DescribesNumbersItKnows) {
  EXPECT_EQ(session->ErrorDescription(1024),
            u"QuickBooks found an error when parsing the provided XML text stream.");
  EXPECT_EQ(session->ErrorDescription(static_cast<std::int32_t>(0x80040408)),
            u"Could not start QuickBooks.");
}

TEST_F(qbxmlTest, DescribesOtherNumbersByTheLastError) {
  session->lLastError = 1027;
  session->sLastError = u"last text";

  EXPECT_EQ(session->ErrorDescription(0), u"Error 0 1027 last text");
  EXPECT_EQ(session->ErrorDescription(1027), u"Error 1027 1027 last text");
  EXPECT_EQ(session->ErrorDescription(static_cast<std::int32_t>(0x80040430)),
            u"Error -2147220432 1027 last text");
}

TEST_F(qbxmlTest, ReportsTheFaultOfARequestThatIsNoXml) {
  Text report;

  EXPECT_FALSE(session->XMLValidate(u"<QBXML><Open></QBXML>", report));

  EXPECT_THAT(ToUtf8(report), ::testing::StartsWith("Reason: "));
  EXPECT_THAT(ToUtf8(report), ::testing::HasSubstr("\r\nscrText: "));
}

TEST_F(qbxmlTest, GivesUpTheOperationThatIsOutstanding) {
  BeOpen();
  quickBooks.DuringCall = [&](TextView) { session->GiveUp(); };

  EXPECT_EQ(session->ProcessRequest(u"<q/>", response), ErrorNumber::kCannotUseCompanyFile);

  EXPECT_EQ(session->sLastError,
            u"The call to QuickBooks was given up. (0x80010002) (ProcessRequest:2)");
  EXPECT_THAT(events, ElementsAre(u"Processing Request", u"Quickbooks was given up."));
}

TEST_F(qbxmlTest, CanBeGivenUpWhileQuickBooksStarts) {
  quickBooks.DuringCall = [&](TextView operation) {
    if (operation == u"Create") session->GiveUp();
  };
  std::int32_t number = 0;

  EXPECT_EQ(session->OpenConnectionAndBeginSession(u"ostrel", u"Ostrel", u"", 0, number),
            ErrorNumber::kCannotUseCompanyFile);

  EXPECT_TRUE(session->sLastError.starts_with(kGivenUpText));
  EXPECT_FALSE(session->bProcessorCreated);
  EXPECT_EQ(quickBooks.iProcessorsAlive, 0);
}

TEST_F(qbxmlTest, ForgetsTheProcessorThatWasGivenUpAndOpensAfresh) {
  BeOpen();
  quickBooks.DuringCall = [&](TextView) { session->GiveUp(); };
  session->ProcessRequest(u"<q/>", response);
  quickBooks.DuringCall = nullptr;

  EXPECT_FALSE(session->IsConnected());
  EXPECT_EQ(quickBooks.iProcessorsAlive, 0);
  EXPECT_EQ(Open(), 0);
  EXPECT_EQ(session->ProcessRequest(u"<q/>", response), 0);
}

TEST_F(qbxmlTest, GivesUpTheBeginningOfASession) {
  quickBooks.DuringCall = [&](TextView operation) {
    if (operation == u"BeginSession") session->GiveUp();
  };

  EXPECT_EQ(Open(), ErrorNumber::kCannotUseCompanyFile);

  EXPECT_FALSE(session->IsConnected());
  EXPECT_EQ(session->sLastError, u"The call to QuickBooks was given up. (0x80010002)");
}

TEST_F(qbxmlTest, TakesNoNoticeOfGivingUpNothing) {
  session->GiveUp();
  BeOpen();
  session->GiveUp();

  EXPECT_EQ(session->ProcessRequest(u"<q/>", response), 0);
}

}  // namespace
}  // namespace ostrel
