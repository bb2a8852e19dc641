#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "gateway/HostQuery.h"
#include "tests/unit/doubles/FakeClock.h"
#include "tests/unit/doubles/FakeRequestProcessor.h"
#include "tests/unit/doubles/FakeTrace.h"

namespace ostrel {
namespace {

using doubles::FakeClock;
using doubles::FakeQuickBooks;
using doubles::FakeTrace;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

Text Reply(TextView productName, TextView majorVersion) {
  return u"<QBXML><HostRet><ProductName>" + Text(productName) + u"</ProductName><MajorVersion>" +
         Text(majorVersion) + u"</MajorVersion><MinorVersion>3</MinorVersion></HostRet></QBXML>";
}

class HostQueryTest : public ::testing::Test {
 protected:
  HostQueryTest() {
    std::int32_t errorNumber = 0;
    session.OpenConnectionAndBeginSession(u"ostrel", u"Ostrel", u"C:\\a.qbw", 0, errorNumber);
    quickBooks.Calls.clear();
  }

  bool RunWith(TextView productName, TextView majorVersion = u"18") {
    quickBooks.sResponse = Reply(productName, majorVersion);
    return hostQuery.Run(response, false);
  }

  FakeQuickBooks quickBooks;
  qbxml session{quickBooks.Factory()};
  IdleClose idleClose;
  FakeTrace trace;
  FakeClock clock;
  HostQuery hostQuery{session, idleClose, trace, clock};
  Text response;
};

TEST_F(HostQueryTest, SendsTheQuery) {
  hostQuery.Run(response, false);

  EXPECT_THAT(quickBooks.Calls, ElementsAre(u"ProcessRequest(ticket, "
                                            u"<?xml version=\"1.0\"?><?qbxml version=\"3.0\" ?>\r\n"
                                            u"<QBXML>\r\n"
                                            u"<QBXMLMsgsRq onError=\"continueOnError\">\r\n"
                                            u"<HostQueryRq requestID=\"99\" />\r\n"
                                            u"</QBXMLMsgsRq>\r\n"
                                            u"</QBXML>)"));
}

TEST_F(HostQueryTest, ReadsVersionAndProduct) {
  EXPECT_TRUE(RunWith(u"QuickBooks Premier Edition 2008", u"18"));

  EXPECT_EQ(response, Reply(u"QuickBooks Premier Edition 2008", u"18"));
  EXPECT_EQ(hostQuery.iQBMajorVersion, 18);
  EXPECT_EQ(hostQuery.iQBMinorVersion, 3);
  EXPECT_EQ(hostQuery.sQBProductName, u"QuickBooks Premier Edition 2008");
  EXPECT_EQ(hostQuery.iQBProductCode, 2);
  EXPECT_EQ(hostQuery.iQBProductYear, 2008);
}

TEST_F(HostQueryTest, CallsAProductUnknownThatHasNoName) {
  RunWith(u"QuickBooks Pro 2008");
  quickBooks.sResponse = u"<QBXML/>";

  EXPECT_TRUE(hostQuery.Run(response, false));

  EXPECT_EQ(hostQuery.sQBProductName, u"Unknown");
  EXPECT_EQ(hostQuery.iQBMajorVersion, 0);
  EXPECT_EQ(hostQuery.iQBMinorVersion, 0);
  EXPECT_EQ(hostQuery.iQBProductCode, 0);
  EXPECT_EQ(hostQuery.iQBProductYear, 0);
}

TEST_F(HostQueryTest, ReadsTheFirstValueUpToTheNextTagOrTheEnd) {
  quickBooks.sResponse = u"<MajorVersion>7<MajorVersion>8</MajorVersion><ProductName>Online";

  hostQuery.Run(response, false);

  EXPECT_EQ(hostQuery.iQBMajorVersion, 7);
  EXPECT_EQ(hostQuery.sQBProductName, u"Online");
}

TEST_F(HostQueryTest, TakesAVersionThatIsNoNumberAs0) {
  for (const Text version : {u"", u"x", u"12x", u"99999", u"\u0661"}) {
    RunWith(u"QuickBooks Pro", version);
    EXPECT_EQ(hostQuery.iQBMajorVersion, 0) << ToUtf8(version);
  }
}

TEST_F(HostQueryTest, ClassifiesProducts) {
  const std::pair<TextView, int> products[] = {
      {u"QuickBooks Pro 2008", 1},       {u"QuickBooks Premier 2008", 2},
      {u"QuickBooks Enterprise 8.0", 3}, {u"QuickBooks Online Edition", 4},
      {u"QuickBooks Wholesale 2008", 5}, {u"QuickBooks Simple Start", 0},
      {u"QuickBooks premier 2008", 0},   {u"QuickBooks Online Pro", 4},
      {u"Premier Wholesale Edition", 5}, {u"Enterprise Premier", 2},
  };

  for (const auto& [name, code] : products) {
    RunWith(name);
    EXPECT_EQ(hostQuery.iQBProductCode, code) << ToUtf8(name);
  }
}

// Required: "Pro" is looked for before "Premier" and "Enterprise".
TEST_F(HostQueryTest, TakesProfessionalForPro) {
  RunWith(u"QuickBooks Premier Professional Services 2008");

  EXPECT_EQ(hostQuery.iQBProductCode, 1);
}

TEST_F(HostQueryTest, FindsTheYear) {
  const std::pair<TextView, int> products[] = {
      {u"Pro 2000", 2000}, {u"Pro 2010", 2010},       {u"Pro 2010 for 2003", 2003},
      {u"Pro 5.0", 2005},  {u"Enterprise 9.0", 2009}, {u"Pro 9.0 of 2004", 2004},
      {u"Pro", 0},         {u"Pro 2011", 0},          {u"Pro 1999", 0},
  };

  for (const auto& [name, year] : products) {
    RunWith(name);
    EXPECT_EQ(hostQuery.iQBProductYear, year) << ToUtf8(name);
  }
}

TEST_F(HostQueryTest, KnowsEachYear) {
  for (int year = 2000; year <= 2010; ++year) {
    RunWith(u"Pro " + ToText(std::int64_t{year}));
    EXPECT_EQ(hostQuery.iQBProductYear, year);
  }
}

TEST_F(HostQueryTest, BelievesTheMajorVersionMoreThanTheName) {
  RunWith(u"Premier 2008", u"19");
  EXPECT_EQ(hostQuery.iQBProductYear, 2009);

  RunWith(u"Premier 2008", u"15");
  EXPECT_EQ(hostQuery.iQBProductYear, 2005);
}

TEST_F(HostQueryTest, HasNoYearForAnUnknownProduct) {
  RunWith(u"Simple Start 2008", u"19");

  EXPECT_EQ(hostQuery.iQBProductYear, 0);
}

TEST_F(HostQueryTest, ClosesTheSessionOnFailure) {
  quickBooks.Fail(u"ProcessRequest", 0x80040402, u"unexpected");
  idleClose.bAutoClose = false;

  EXPECT_FALSE(hostQuery.Run(response, false));

  EXPECT_EQ(response, u"Error 1026 1026 unexpected (ProcessRequest:1026)");
  EXPECT_FALSE(session.IsConnected());
  EXPECT_EQ(idleClose.dCloseAt, clock.SteadyNow());
  EXPECT_FALSE(idleClose.bAutoClose);
  EXPECT_THAT(trace.StatusFiles, ElementsAre(response));
  EXPECT_THAT(trace.HistoryFiles, IsEmpty());
}

TEST_F(HostQueryTest, KeepsWhatItKnewOnFailure) {
  RunWith(u"QuickBooks Pro 2008");
  quickBooks.Fail(u"ProcessRequest", 0x80040402);

  hostQuery.Run(response, false);

  EXPECT_EQ(hostQuery.sQBProductName, u"QuickBooks Pro 2008");
  EXPECT_EQ(hostQuery.iQBProductCode, 1);
}

TEST_F(HostQueryTest, WritesAFailureIntoTheHistory) {
  quickBooks.Fail(u"ProcessRequest", 0x80040400);

  hostQuery.Run(response, true);

  EXPECT_THAT(trace.HistoryFiles,
              ElementsAre(u"Error: QuickBooks found an error when parsing the provided XML text "
                          u"stream."));
}

TEST_F(HostQueryTest, WritesItsFindingsIntoTheHistory) {
  quickBooks.sResponse = Reply(u"QuickBooks Pro 2008", u"18.x");

  hostQuery.Run(response, true);

  EXPECT_THAT(trace.HistoryFiles,
              ElementsAre(u"<MajorVersion>: 18.x\u00FE<MinorVersion>: 3\u00FE"
                          u"QBVersion <ProductName>: QuickBooks Pro 2008\u00FE" +
                          Text(39, u'=') +
                          u"\u00FEMajorVersion: 0\u00FEMinorVersion: 3\u00FE"
                          u"ProductCode: 1\u00FEProductYear: 2008\u00FE" +
                          Text(51, u'=')));
  EXPECT_THAT(trace.StatusFiles, IsEmpty());
}

TEST_F(HostQueryTest, LeavesNoTraceWithHistoryOff) {
  RunWith(u"QuickBooks Pro 2008");

  EXPECT_THAT(trace.HistoryFiles, IsEmpty());
  EXPECT_THAT(trace.StatusFiles, IsEmpty());
  EXPECT_THAT(trace.Status, IsEmpty());
}

}  // namespace
}  // namespace ostrel
