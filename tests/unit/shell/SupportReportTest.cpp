#include <gtest/gtest.h>

#include "shell/commands/SupportReport.h"
#include "shell/forms/Version.h"
#include "tests/unit/doubles/FakeClock.h"
#include "tests/unit/doubles/FakeRequestProcessor.h"
#include "tests/unit/doubles/FakeTrace.h"

namespace ostrel {
namespace {

class SupportReportTest : public testing::Test {
 protected:
  SupportReportTest() {
    Settings.sIniFile = u"C:\\osl.ini";
    Settings.sQBFileName = u"C:\\a.qbw";
    Settings.lCommType = 3;
    Settings.bSocketServer = true;
    Settings.lSocketPort = 5000;
    Settings.sProcessPath = u"c:\\in";
  }

  AppSettings Settings;
  doubles::FakeQuickBooks QuickBooks;
  doubles::FakeTrace Trace;
  doubles::FakeClock Clock;
  IdleClose Idle;
  qbxml Session{QuickBooks.Factory()};
  HostQuery Query{Session, Idle, Trace, Clock};
};

TEST_F(SupportReportTest, BeginsWithTheProgram) {
  EXPECT_TRUE(SupportReport(Settings, Query)
                  .starts_with(u"Ostrel Server:\r\n"
                               u"=========================================\r\n"
                               u"Version: " +
                               ProgramVersion() + u"\r\n"));
}

TEST_F(SupportReportTest, TellsHowTheProgramIsSetUp) {
  EXPECT_TRUE(SupportReport(Settings, Query)
                  .ends_with(u"\r\nSettings File: C:\\osl.ini\r\nCommunication Type: 3\r\n"
                             u"Socket: True, port 5000\r\nFolder: False, c:\\in\r\n"
                             u"QB Database: C:\\a.qbw\r\n"));
}

TEST_F(SupportReportTest, NamesQuickBooksOnceItIsKnown) {
  Query.sQBProductName = u"QuickBooks Pro 2008";
  Query.iQBMajorVersion = 18;

  EXPECT_TRUE(
      SupportReport(Settings, Query).ends_with(u"Quickbooks: QuickBooks Pro 2008 18.0\r\n"));
}

TEST(SupportRequest, SaysWhereToSendTheReport) {
  EXPECT_EQ(SupportRequest(),
            u"Please Contact Pellmor Systems to help resolve this issue.  They may want you to "
            u"email (" +
                Text(kSupportAddress) + u") the information listed below:");
}

}  // namespace
}  // namespace ostrel
