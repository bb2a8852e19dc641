#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <new>

#include "gateway/RequestHandler.h"
#include "platform/Files.h"
#include "platform/SystemError.h"
#include "tests/support/ScratchFolder.h"
#include "tests/unit/doubles/FakeClock.h"
#include "tests/unit/doubles/FakeRequestProcessor.h"
#include "tests/unit/doubles/FakeTrace.h"
#include "util/Cures.h"

namespace ostrel {
namespace {

using doubles::FakeClock;
using doubles::FakeQuickBooks;
using doubles::FakeTrace;
using std::chrono::seconds;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::StartsWith;

constexpr TextView kHostReply =
    u"<QBXML><HostRet><ProductName>QuickBooks Pro 2008</ProductName>"
    u"<MajorVersion>18</MajorVersion></HostRet></QBXML>";
constexpr TextView kProlog = u"<?xml version='1.0' ?>\r\n";

// What the status line of a failed request ends in.
Text Cured(std::int32_t number) { return WhatToDo(CureText(CureOf::kGateway, number)); }

class RequestHandlerTest : public ::testing::Test {
 protected:
  RequestHandlerTest() {
    settings.sQBFileName = u"C:\\a.qbw";
    settings.iDisconnectTimeout = 300;
    quickBooks.Respond = [this](TextView request) {
      received.emplace_back(request);
      return ostrel::Contains(request, u"HostQueryRq") ? Text(kHostReply) : quickBooks.sResponse;
    };
  }

  ~RequestHandlerTest() override { quickBooks.DuringCall = nullptr; }

  float Process(Text request) { return handler.ProcessRequest(request, response); }

  // A session that is open; QuickBooks has received nothing since.
  void BeOpen() {
    ASSERT_EQ(Process(u"<a/>"), 0);
    quickBooks.Calls.clear();
    trace.Status.clear();
    received.clear();
  }

  // The request as QuickBooks receives it when the session is open.
  Text ReceivedFor(TextView request) {
    BeOpen();
    Process(Text(request));
    return received.empty() ? Text(u"nothing") : received.back();
  }

  FakeQuickBooks quickBooks;
  qbxml session{quickBooks.Factory()};
  GatewaySettings settings;
  IdleClose idleClose;
  FakeTrace trace;
  FakeClock clock;
  HostQuery hostQuery{session, idleClose, trace, clock};
  RequestHandler handler{settings, session, hostQuery, idleClose, trace, clock};
  std::vector<Text> received;
  Text response;
};

TEST_F(RequestHandlerTest, OpensTheSessionWithTheFirstRequest) {
  EXPECT_EQ(Process(u"<a/>"), 0);

  EXPECT_THAT(quickBooks.Calls,
              ElementsAre(u"OpenConnection(ostrel, Ostrel)", u"BeginSession(C:\\a.qbw, 2)",
                          u"ProcessRequest(ticket, " + Text(HostQuery::kRequest) + u")",
                          u"ProcessRequest(ticket, " + Text(kProlog) + u")"));
  EXPECT_TRUE(session.IsConnected());
  EXPECT_EQ(hostQuery.iQBProductCode, 1);
}

TEST_F(RequestHandlerTest, KeepsTheSessionOpenForTheNextRequest) {
  Process(u"HEADER\r\n<a/>");
  quickBooks.Calls.clear();

  Process(u"HEADER\r\n<b/>");

  EXPECT_THAT(quickBooks.Calls, ElementsAre(u"ProcessRequest(ticket, " + Text(kProlog) + u"<b/>)"));
}

TEST_F(RequestHandlerTest, RemovesTheHeaderLine) {
  EXPECT_EQ(ReceivedFor(u"QB.ROUTINE\r\n<?xml version=\"1.0\"?>\r\n<a/>"),
            u"<?xml version=\"1.0\"?>\r\n<a/>");
}

TEST_F(RequestHandlerTest, UsesARequestOfTheOlderRoutinesWhole) {
  EXPECT_EQ(ReceivedFor(u"<?xml version=\"1.0\"?>\r\n<a/>"), u"<?xml version=\"1.0\"?>\r\n<a/>");
  EXPECT_EQ(ReceivedFor(u"<?qbxml version=\"3.0\"?>\r\n<a/>"),
            Text(kProlog) + u"<?qbxml version=\"3.0\"?>\r\n<a/>");
}

TEST_F(RequestHandlerTest, TakesAnyOtherFirstLineForTheHeader) {
  EXPECT_EQ(ReceivedFor(u"<?XML?>\r\n<a/>"), Text(kProlog) + u"<a/>");
  EXPECT_EQ(ReceivedFor(u" <?xml?>\r\n<a/>"), Text(kProlog) + u"<a/>");
  EXPECT_EQ(ReceivedFor(u"\r\n<a/>"), Text(kProlog) + u"<a/>");
}

TEST_F(RequestHandlerTest, LooksForThePrologEverywhere) {
  EXPECT_EQ(ReceivedFor(u"HEADER\r\n<a><?xml?></a>"), u"<a><?xml?></a>");
}

TEST_F(RequestHandlerTest, TurnsAttributeMarksIntoLineBreaks) {
  EXPECT_EQ(ReceivedFor(u"HEADER\u00FE<a>\u00FE</a>\u00FE"), Text(kProlog) + u"<a>\r\n</a>\r\n");
}

TEST_F(RequestHandlerTest, SendsThePrologAloneForAnEmptyRequest) {
  EXPECT_EQ(ReceivedFor(u""), kProlog);
  EXPECT_EQ(ReceivedFor(u"a header alone"), kProlog);
  EXPECT_EQ(ReceivedFor(u"a header alone\r\n"), kProlog);
}

TEST_F(RequestHandlerTest, TrimsBlanksOffTheResponse) {
  quickBooks.sResponse = u"  <reply> </reply>\r\n  ";

  EXPECT_EQ(Process(u"<a/>"), 0);

  EXPECT_EQ(response, u"<reply> </reply>\r\n");
}

TEST_F(RequestHandlerTest, ForgetsTheResponseOfAnotherRequest) {
  BeOpen();
  quickBooks.Fail(u"ProcessRequest", 0x80040421);
  response = u"of another request";

  EXPECT_EQ(Process(u"<a/>"), 0x421);

  EXPECT_EQ(response, u"");
}

// --- the commands

TEST_F(RequestHandlerTest, SelectsTheCompanyFile) {
  EXPECT_EQ(Process(u"QBFILENAME: C:\\My & Co\\b.qbw "), 0);

  EXPECT_EQ(settings.sQBFileName, u"C:\\My & Co\\b.qbw");
  // Kept: the name is not escaped, clients compare it.
  EXPECT_EQ(response,
            u"<QBXML><QBXMLMsgsRs><QBFileNameRs requestID=\"99\" statusCode=\"0\" "
            u"statusSeverity=\"Info\" statusMessage=\"Status OK\"><QBFileNameRet><QBFileName>"
            u"C:\\My & Co\\b.qbw"
            u"</QBFileName></QBFileNameRet></QBFileNameRs></QBXMLMsgsRs></QBXML>");
  EXPECT_THAT(received, IsEmpty());
}

TEST_F(RequestHandlerTest, TakesTheCompanyFileFromTheFirstLine) {
  for (const TextView lineBreak : {u"\r\n", u"\r", u"\n", u"\u00FE"}) {
    Process(u"QBFILENAME: C:\\b.qbw" + Text(lineBreak) + u"more\r\nlines");
    EXPECT_EQ(settings.sQBFileName, u"C:\\b.qbw");
  }
}

// Required: blanks are trimmed before the other lines are cut off.
TEST_F(RequestHandlerTest, KeepsBlanksBetweenTheCompanyFileAndALineBreak) {
  Process(u"QBFILENAME:C:\\b.qbw  \r\n");

  EXPECT_EQ(settings.sQBFileName, u"C:\\b.qbw  ");
}

// Required: the first colon of the whole request counts, whosever it is.
TEST_F(RequestHandlerTest, TakesTheCompanyFileFromBehindTheFirstColon) {
  Process(u"A:B QBFILENAME:C:\\b.qbw");

  EXPECT_EQ(settings.sQBFileName, u"B QBFILENAME:C:\\b.qbw");
}

TEST_F(RequestHandlerTest, SelectsNoCompanyFileByAnEmptyName) {
  EXPECT_EQ(Process(u"QBFILENAME:"), 0);

  EXPECT_EQ(settings.sQBFileName, u"");
}

TEST_F(RequestHandlerTest, SelectsTheDefaultCompanyFile) {
  const ScratchFolder folder;
  folder.Write(u"osl.ini", "[Quickbooks]\r\nFileName=C:\\default.qbw\r\n");
  settings.sIniFile = folder.Path(u"osl.ini");

  for (const TextView word : {u"DEFAULT", u"default", u"DeFault"}) {
    settings.sQBFileName.clear();
    EXPECT_EQ(Process(u"QBFILENAME: " + Text(word)), 0);
    EXPECT_EQ(settings.sQBFileName, u"C:\\default.qbw");
  }
  EXPECT_TRUE(ostrel::Contains(response, u"<QBFileName>C:\\default.qbw</QBFileName>"));
}

TEST_F(RequestHandlerTest, KeepsTheCompanyFileWhenTheSettingsCannotBeRead) {
  const ScratchFolder folder;
  settings.sIniFile = folder.Path(u"osl.ini");
  folder.Write(u"osl.ini", "[Quickbooks]\r\nFileName=C:\\default.qbw\r\n");
  BeOpen();
  platform::File holder;
  ASSERT_EQ(holder.Open(settings.sIniFile, platform::FileAccess::kReadWrite,
                        platform::FileCreation::kOpenExisting),
            0);

  EXPECT_EQ(Process(u"QBFILENAME:DEFAULT"), 75);

  EXPECT_EQ(response, u"The settings file cannot be read: " +
                          platform::SystemErrorText(platform::kSharingViolation));
  EXPECT_EQ(settings.sQBFileName, u"C:\\a.qbw");
  EXPECT_TRUE(session.IsConnected());
  EXPECT_THAT(trace.Status, ElementsAre(u"Request failed: 75 " + response + Cured(75)));
}

TEST_F(RequestHandlerTest, RefusesADefaultCompanyFileWithTooLongAName) {
  const ScratchFolder folder;
  settings.sIniFile = folder.Path(u"osl.ini");
  folder.Write(u"osl.ini", "[Quickbooks]\r\nFileName=" + std::string(100, 'x') + "\r\n");

  EXPECT_EQ(Process(u"QBFILENAME:DEFAULT"), 75);

  EXPECT_EQ(response, u"The company file name in the settings is longer than 99 characters");
  EXPECT_EQ(settings.sQBFileName, u"C:\\a.qbw");
}

TEST_F(RequestHandlerTest, RefusesACompanyFileNameWithAControlCharacter) {
  for (const TextView name : {u"C:\\b\u001F.qbw", u"C:\\b.qbw\u001F", u"\tC:\\b.qbw", u"b\u007F"}) {
    trace.Status.clear();
    EXPECT_EQ(Process(u"QBFILENAME:" + Text(name)), 52);

    EXPECT_EQ(response, u"The company file name holds a control character");
    EXPECT_EQ(settings.sQBFileName, u"C:\\a.qbw");
    EXPECT_THAT(trace.Status, ElementsAre(u"Request failed: 52 " + response + u"." + Cured(52)));
  }
}

TEST_F(RequestHandlerTest, RefusesADefaultCompanyFileWithAControlCharacter) {
  const ScratchFolder folder;
  settings.sIniFile = folder.Path(u"osl.ini");
  folder.Write(u"osl.ini", "[Quickbooks]\r\nFileName=C:\\b\x1F.qbw\r\n");

  EXPECT_EQ(Process(u"QBFILENAME:DEFAULT"), 52);

  EXPECT_EQ(settings.sQBFileName, u"C:\\a.qbw");
}

TEST_F(RequestHandlerTest, SelectsNothingWhenThereIsNoDefault) {
  const ScratchFolder folder;
  settings.sIniFile = folder.Path(u"osl.ini");

  EXPECT_EQ(Process(u"QBFILENAME:DEFAULT"), 0);

  EXPECT_EQ(settings.sQBFileName, u"");
}

TEST_F(RequestHandlerTest, ClosesTheSessionForAnotherCompanyFile) {
  BeOpen();

  Process(u"QBFILENAME:C:\\A.QBW");

  EXPECT_FALSE(session.IsConnected());
  EXPECT_THAT(quickBooks.Calls, ElementsAre(u"EndSession(ticket)", u"CloseConnection()"));

  Process(u"<a/>");
  EXPECT_THAT(quickBooks.Calls, Contains(u"BeginSession(C:\\A.QBW, 2)"));
}

TEST_F(RequestHandlerTest, KeepsTheSessionForTheSameCompanyFile) {
  BeOpen();

  Process(u"QBFILENAME:C:\\a.qbw");

  EXPECT_TRUE(session.IsConnected());
}

TEST_F(RequestHandlerTest, TellsWhatQuickBooksItIs) {
  EXPECT_EQ(Process(u"QUICKBOOKSINFO"), 0);

  EXPECT_EQ(response,
            u"<QBXML><HostRet><QBFileName>C:\\a.qbw</QBFileName><OstrelServer><ProductCode>1"
            u"</ProductCode><ProductYear>2008</ProductYear></OstrelServer>"
            u"<ProductName>QuickBooks Pro 2008</ProductName>"
            u"<MajorVersion>18</MajorVersion></HostRet></QBXML>");
  EXPECT_EQ(received.back(), HostQuery::kRequest);
  EXPECT_TRUE(idleClose.bAutoClose);
}

TEST_F(RequestHandlerTest, NamesTheFileThatIsOpenInQuickBooks) {
  settings.sQBFileName.clear();
  quickBooks.sCompanyFile = u"C:\\open.qbw";

  Process(u"QUICKBOOKSINFO");

  EXPECT_TRUE(ostrel::Contains(response, u"<QBFileName>C:\\open.qbw</QBFileName><OstrelServer>"));
}

TEST_F(RequestHandlerTest, AddsTheProductToEveryProductName) {
  BeOpen();
  quickBooks.Respond = [](TextView) { return u"<ProductName>a<ProductName>b"; };
  const Text product =
      u"<QBFileName>C:\\a.qbw</QBFileName><OstrelServer><ProductCode>1</ProductCode>"
      u"<ProductYear>2008</ProductYear></OstrelServer><ProductName>";

  Process(u"QUICKBOOKSINFO");

  EXPECT_EQ(response, product + u"a" + product + u"b");
}

TEST_F(RequestHandlerTest, LeavesTheReplyOfAClientsHostQueryAlone) {
  Process(u"HEADER\r\n<HostQueryRq/>");

  EXPECT_EQ(response, kHostReply);
}

TEST_F(RequestHandlerTest, PinsTheSessionOpen) {
  EXPECT_EQ(Process(u"OPENQB:"), 0);

  EXPECT_FALSE(idleClose.bAutoClose);
  EXPECT_TRUE(session.IsConnected());
  EXPECT_TRUE(ostrel::Contains(response, u"</QBFileName><OstrelServer>"));
}

TEST_F(RequestHandlerTest, ClosesTheSession) {
  Process(u"OPENQB:");
  clock.Advance(seconds(5));

  EXPECT_EQ(Process(u"CLOSEQB:"), 0);

  EXPECT_EQ(response,
            u"<QBXML><QBXMLMsgsRs><CloseQBRs requestID=\"99\" statusCode=\"0\" "
            u"statusSeverity=\"Info\" statusMessage=\"Status OK\"><CloseQBRet>OK</CloseQBRet>"
            u"</CloseQBRs></QBXMLMsgsRs></QBXML>");
  EXPECT_FALSE(session.IsConnected());
  EXPECT_TRUE(idleClose.bAutoClose);
  EXPECT_EQ(idleClose.dCloseAt, clock.SteadyNow());
}

TEST_F(RequestHandlerTest, ServesACloseWhenNothingIsOpen) {
  EXPECT_EQ(Process(u"CLOSEQB:"), 0);

  EXPECT_TRUE(ostrel::Contains(response, u"<CloseQBRet>OK</CloseQBRet>"));
  EXPECT_THAT(quickBooks.Calls, IsEmpty());
}

// Required: a command counts wherever it stands.
TEST_F(RequestHandlerTest, FindsACommandInsideAComment) {
  Process(u"HEADER\r\n<a><!-- OPENQB: --></a>");

  EXPECT_EQ(received.back(), HostQuery::kRequest);
  EXPECT_FALSE(idleClose.bAutoClose);
}

TEST_F(RequestHandlerTest, PrefersTheCommandsInTheirOrder) {
  Process(u"CLOSEQB: OPENQB: QUICKBOOKSINFO QBFILENAME:x");
  EXPECT_TRUE(ostrel::Contains(response, u"<QBFileNameRet>"));

  Process(u"CLOSEQB: OPENQB: QUICKBOOKSINFO");
  EXPECT_TRUE(idleClose.bAutoClose);
  EXPECT_EQ(received.back(), HostQuery::kRequest);

  Process(u"CLOSEQB: OPENQB:");
  EXPECT_FALSE(idleClose.bAutoClose);
}

TEST_F(RequestHandlerTest, KnowsCommandsInUpperCaseOnly) {
  EXPECT_EQ(ReceivedFor(u"HEADER\r\n<closeqb: quickbooksinfo/>"),
            Text(kProlog) + u"<closeqb: quickbooksinfo/>");
}

// --- the idle close

TEST_F(RequestHandlerTest, PushesTheIdleCloseAheadAfterARequest) {
  BeOpen();
  clock.Advance(seconds(100));
  quickBooks.DuringCall = [&](TextView) { clock.Advance(seconds(7)); };

  Process(u"<a/>");

  EXPECT_EQ(idleClose.dCloseAt, clock.SteadyNow() + seconds(300));
}

TEST_F(RequestHandlerTest, PushesTheIdleCloseAheadBeforeItOpens) {
  const auto start = clock.SteadyNow();
  platform::SteadyPoint whileOpening;
  quickBooks.DuringCall = [&](TextView operation) {
    if (operation == u"OpenConnection") whileOpening = idleClose.dCloseAt;
  };

  Process(u"<a/>");

  EXPECT_EQ(whileOpening, start + seconds(300));
}

TEST_F(RequestHandlerTest, PushesTheIdleCloseAheadForACompanyFile) {
  Process(u"QBFILENAME:x");

  EXPECT_EQ(idleClose.dCloseAt, clock.SteadyNow() + seconds(300));
}

TEST_F(RequestHandlerTest, LeavesTheIdleCloseAloneWithoutATimeout) {
  settings.iDisconnectTimeout = 0;

  Process(u"<a/>");
  Process(u"QBFILENAME:x");

  EXPECT_EQ(idleClose.dCloseAt, platform::SteadyPoint());
}

// --- failures

TEST_F(RequestHandlerTest, TellsTheClientToTestTheConnectionWhenItCannotOpen) {
  quickBooks.Fail(u"BeginSession", 0x8004041A, u"no permission");

  EXPECT_EQ(Process(u"<a/>"), 1050);

  EXPECT_EQ(response,
            u"You must Test the Quickbooks Connection from the Ostrel server before you can "
            u"interact with the Quickbooks data.");
  EXPECT_THAT(trace.Status, Contains(u"Settings incomplete: run 'Test Connection'."));
  EXPECT_FALSE(session.IsConnected());
  EXPECT_THAT(received, IsEmpty());
}

TEST_F(RequestHandlerTest, TellsTheClientToTestTheConnectionWithoutQuickBooks) {
  quickBooks.bInstalled = false;

  EXPECT_EQ(Process(u"<a/>"), 3);

  EXPECT_TRUE(response.starts_with(u"You must Test the Quickbooks Connection"));
  EXPECT_THAT(trace.Status,
              Contains(u"Request failed: 3 Quickbooks SDK Missing.  Invalid Install." + Cured(3)));
}

TEST_F(RequestHandlerTest, WritesNoHistoryWhenItCannotOpen) {
  const ScratchFolder folder;
  settings.bHistory = true;
  settings.sHistPath = folder.Path();
  quickBooks.Fail(u"OpenConnection", 0x80040408);

  EXPECT_EQ(Process(u"<a/>"), 0x408);

  EXPECT_EQ(folder.EntryCount(), 0u);
}

TEST_F(RequestHandlerTest, ReturnsTheNumberOfARejectedRequest) {
  BeOpen();
  quickBooks.Fail(u"ProcessRequest", 0x80040400, u"parse");

  EXPECT_EQ(Process(u"<a>"), 1024);

  EXPECT_EQ(response, u"");
  EXPECT_TRUE(session.IsConnected());
  EXPECT_THAT(trace.Status,
              ElementsAre(u"Request failed: 1024 QuickBooks found an error when parsing the "
                          u"provided XML text stream." +
                          Cured(1024)));
}

TEST_F(RequestHandlerTest, PushesTheIdleCloseAheadAfterARejectedRequestToo) {
  BeOpen();
  quickBooks.Fail(u"ProcessRequest", 0x80040400);
  clock.Advance(seconds(100));

  Process(u"<a>");

  EXPECT_EQ(idleClose.dCloseAt, clock.SteadyNow() + seconds(300));
}

TEST_F(RequestHandlerTest, ReportsOnARequestThatQuickBooksCouldNotParse) {
  settings.bValidateXML = true;
  BeOpen();
  quickBooks.Fail(u"ProcessRequest", 0x80040400);

  EXPECT_EQ(Process(u"HEADER\r\n<a><b></a>"), 1024);

  EXPECT_THAT(ToUtf8(response), StartsWith("Reason: "));
}

TEST_F(RequestHandlerTest, SaysInTheStatusWhatToDoAboutARequestThatWasTakenOff) {
  settings.bValidateXML = true;
  BeOpen();
  quickBooks.Fail(u"ProcessRequest", 0x80040400);

  Process(u"<QBXML/>");

  ASSERT_EQ(trace.Status.size(), 1u);
  EXPECT_TRUE(ostrel::Contains(trace.Status[0], u"What to do: Nothing was left of the request"))
      << ToUtf8(trace.Status[0]);
}

TEST_F(RequestHandlerTest, ReportsOnNoOtherFailure) {
  settings.bValidateXML = true;
  BeOpen();
  quickBooks.Fail(u"ProcessRequest", 0x80040423);

  EXPECT_EQ(Process(u"HEADER\r\n<a><b></a>"), 0x423);

  EXPECT_EQ(response, u"");
}

TEST_F(RequestHandlerTest, SaysInTheStatusWhatQuickBooksSaidOfAnUnknownFailure) {
  BeOpen();
  quickBooks.Fail(u"ProcessRequest", 0x80020009, u"exception");

  EXPECT_EQ(Process(u"<a/>"), 2);

  EXPECT_THAT(
      trace.Status,
      ElementsAre(u"Request failed: 2 exception (0x80020009) (ProcessRequest:2)." + Cured(2)));
}

TEST_F(RequestHandlerTest, OpensAgainWhenQuickBooksWasGone) {
  for (const std::uint32_t hresult : {0x800706BAu, 0x800706BEu, 0x80010108u}) {
    BeOpen();
    quickBooks.Fail(u"ProcessRequest", hresult);
    EXPECT_GT(Process(u"<a/>"), 0);
    quickBooks.Failures.clear();

    EXPECT_EQ(Process(u"<a/>"), 0);
    EXPECT_EQ(response, quickBooks.sResponse);
  }
}

TEST_F(RequestHandlerTest, OpensAgainWhenQuickBooksHasEndedTheSession) {
  for (const std::uint32_t hresult : {0x80040401u, 0x8004040Cu, 0x8004040Du, 0x8004040Fu}) {
    BeOpen();
    quickBooks.Fail(u"ProcessRequest", hresult);
    EXPECT_GT(Process(u"<a/>"), 0);
    EXPECT_FALSE(session.IsConnected());
    quickBooks.Failures.clear();

    EXPECT_EQ(Process(u"<a/>"), 0);
  }
}

TEST_F(RequestHandlerTest, SaysInTheStatusThatTheHostQueryFailed) {
  quickBooks.Fail(u"ProcessRequest", 0x80040402, u"unexpected");

  EXPECT_GT(Process(u"<a/>"), 0);

  EXPECT_THAT(trace.Status, Contains(u"Host query failed: Error 1026 1026 unexpected "
                                     u"(ProcessRequest:1026)"));
  EXPECT_FALSE(session.IsConnected());
}

TEST_F(RequestHandlerTest, RespondsWithANumberWhenMemoryIsShort) {
  BeOpen();
  quickBooks.Respond = [](TextView) -> Text { throw std::bad_alloc(); };

  EXPECT_EQ(Process(u"<a/>"), 7);
}

// --- the history

class HistoryTest : public RequestHandlerTest {
 protected:
  HistoryTest() {
    settings.bHistory = true;
    settings.sHistPath = folder.Path();
    trace.sHistoryHeader = u"Version: 1.2.3\u00FE";
  }

  std::string File() const { return folder.Read(u"1050201090307AM.txt"); }

  ScratchFolder folder;
  const std::string rule = std::string(60, '=') + "\r\n";
};

TEST_F(HistoryTest, TellsOfRequestAndResponse) {
  quickBooks.sResponse = u"<reply>\n</reply>";
  BeOpen();
  quickBooks.DuringCall = [&](TextView) { clock.Advance(seconds(5)); };

  Process(u"HEADER\u00FE<a>\u00FE<b>text</b></a>");

  EXPECT_EQ(File(),
            "Version: 1.2.3\r\n"
            "Raw Data:\r\n"
            "HEADER\r\n<a>\r\n<b>text</b></a>\r\n" +
                rule +
                "<?xml version='1.0' ?>\r\n"
                "   <a>\r\n"
                "      <b>text</b>\r\n"
                "   </a>\r\n"
                "\r\n" +
                rule + "<reply>\r\n</reply>\r\n" + rule +
                // Required: a blank after the first colon, none after the second.
                "Start: 1/5/2010 9:03:07 AM\r\n"
                "End:1/5/2010 9:03:12 AM");
  EXPECT_THAT(trace.Status, Contains(u"Creating Log File: 1050201090307AM.txt"));
}

TEST_F(HistoryTest, KeepsTheLineBreaksOfAReportOnARequestThatCouldNotBeParsed) {
  BeOpen();
  settings.bValidateXML = true;
  quickBooks.Fail(u"ProcessRequest", 0x80040400);

  Process(u"HEADER\r\n<a><b></a>");

  EXPECT_EQ(response.find(u"\r\r\n"), Text::npos);
  EXPECT_EQ(File().find("\r\r\n"), std::string::npos);
  EXPECT_NE(File().find(rule + "Reason: "), std::string::npos);
}

// Required: only that report is spared; line breaks that are CR LF already get a second CR.
TEST_F(HistoryTest, DoublesTheCarriageReturnOfAnyOtherResponse) {
  quickBooks.sResponse = u"<reply>\r\n</reply>";

  Process(u"<a/>");

  EXPECT_NE(File().find("<reply>\r\r\n</reply>\r\n"), std::string::npos);
  EXPECT_EQ(response, u"<reply>\r\n</reply>");
}

TEST_F(HistoryTest, ReplacesAFileOfTheSameName) {
  folder.Write(u"1050201090307AM.txt", std::string(10'000, 'x'));

  Process(u"<a/>");

  EXPECT_EQ(File().find('x', File().find("End:")), std::string::npos);
}

TEST_F(HistoryTest, OfEachRequestOfASecondIsKeptWhenAskedFor) {
  settings.bHistoryEach = true;
  folder.Write(u"1050201090307AM-2.txt", "of an earlier run");
  for (const TextView request : {u"H\r\n<first/>", u"H\r\n<second/>", u"H\r\n<third/>"}) {
    Process(Text(request));
  }

  EXPECT_NE(folder.Read(u"1050201090307AM.txt").find("<first/>"), std::string::npos);
  EXPECT_EQ(folder.Read(u"1050201090307AM-2.txt"), "of an earlier run");
  EXPECT_NE(folder.Read(u"1050201090307AM-3.txt").find("<second/>"), std::string::npos);
  EXPECT_NE(folder.Read(u"1050201090307AM-4.txt").find("<third/>"), std::string::npos);
  EXPECT_EQ(folder.EntryCount(), 4u);
  EXPECT_TRUE(trace.HasStatus(u"Creating Log File: 1050201090307AM-3.txt"));

  clock.Advance(seconds(1));
  Process(u"H\r\n<later/>");
  EXPECT_TRUE(folder.Has(u"1050201090308AM.txt"));
}

TEST_F(HistoryTest, OfEachRequestIsSkippedWhenItsFileCannotBeMade) {
  settings.bHistoryEach = true;
  settings.sHistPath = folder.Path(u"missing");

  EXPECT_EQ(Process(u"<a/>"), 0);

  EXPECT_EQ(folder.EntryCount(), 0u);
  EXPECT_TRUE(trace.HasStatus(u"Creating Log File: 1050201090307AM.txt"));
}

TEST_F(HistoryTest, IsSkippedWhenTheFileCannotBeOpened) {
  settings.sHistPath = folder.Path(u"none");

  EXPECT_EQ(Process(u"<a/>"), 0);

  EXPECT_EQ(response, quickBooks.sResponse);
  EXPECT_EQ(folder.EntryCount(), 0u);
}

TEST_F(HistoryTest, IsNotWrittenForCompanyFileAndClose) {
  Process(u"QBFILENAME:x");
  Process(u"CLOSEQB:");

  EXPECT_EQ(folder.EntryCount(), 0u);
}

TEST_F(HistoryTest, IsWrittenForAHostQueryAndShowsTheCommand) {
  Process(u"QUICKBOOKSINFO");

  EXPECT_NE(File().find("Raw Data:\r\nQUICKBOOKSINFO\r\n"), std::string::npos);
  EXPECT_NE(File().find("<HostQueryRq requestID=\"99\" />"), std::string::npos);
}

TEST_F(HistoryTest, GetsANameThatAFileMayHave) {
  clock.sGeneralDate = u"05.01.2010 *09|03?07";

  Process(u"<a/>");

  EXPECT_TRUE(folder.Has(u"05.01.2010090307.txt"));
}

TEST_F(HistoryTest, IsLeftOutWhenItIsOff) {
  settings.bHistory = false;

  Process(u"<a/>");

  EXPECT_EQ(folder.EntryCount(), 0u);
  EXPECT_THAT(trace.Status, Not(Contains(u"Creating Log File: 1050201090307AM.txt")));
}

TEST_F(HistoryTest, IsWholeOrNotThereWhenItIsSwitchedOnMeanwhile) {
  BeOpen();
  settings.bHistory = false;
  quickBooks.DuringCall = [&](TextView) { settings.bHistory = true; };
  folder.Write(u"1050201090307AM.txt", "earlier");

  Process(u"<a/>");

  EXPECT_EQ(File(), "earlier");
}

}  // namespace
}  // namespace ostrel
