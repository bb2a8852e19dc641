#include "shell/commands/ConnectionTest.h"

#include <algorithm>
#include <iterator>

#include "gateway/RequestGate.h"
#include "shell/commands/SupportReport.h"
#include "util/Cures.h"
#include "util/Wire.h"

namespace ostrel {
namespace {

constexpr TextView kTestAgain = u"Please Start Quickbooks manually, and then run the test again.";

struct OpenFailure {
  std::int32_t iNumber;
  TextView sText;
  TextView sFileLabel = {};  // in front of the company file on a line of its own; empty: none
  bool bTestAgain = false;   // an empty line and kTestAgain follow
};

// By the session's own error numbers.
constexpr OpenFailure kOpenFailures[] = {
    {1050,
     u"This application does not have permission to access this QuickBooks company data file. The "
     u"QuickBooks administrator can grant access permission through the Integrated Application "
     u"preferences",
     u"QB Database: ", true},
    {1053,
     u"This application is not allowed to log into this QuickBooks company data file "
     u"automatically. The QuickBooks administrator can grant permission for automatic login "
     u"through the Integrated Application preferences",
     u"QB Database: ", true},
    {1056, kTestAgain},
    {1046, u"Unable to Start Quickbooks. Verify the QB Database file path, or start Quickbooks",
     u"QB Database: "},
    {ErrorNumber::kCannotUseCompanyFile,
     u"Unable to Open the Quickbooks Database, or it is the wrong version.", u" QB FileName: "},
    {ErrorNumber::kQuickBooksSdkMissing,
     u"Invalid or Corrupted Install.  Missing the Quickbooks SDK."},
    {1034, u"Company File open does not match the Company file we are trying to update.",
     u"QB Database: "},
};

Text Compose(const OpenFailure& failure, TextView file) {
  Text text(failure.sText);
  if (!failure.sFileLabel.empty()) text.append(kCrLf).append(failure.sFileLabel).append(file);
  if (failure.bTestAgain) text.append(kCrLf).append(kCrLf).append(kTestAgain);
  return text;
}

Text CureBelow(std::int32_t number) {
  const TextView cure = CureText(CureOf::kGateway, number);
  return cure.empty() ? Text() : u"\r\n\r\n" + Text(cure);
}

}  // namespace

struct ConnectionTest::Report {
  TextView sCaption;
  Text sText;
};

ConnectionTest::ConnectionTest(const AppSettings& settings, Session session,
                               DefaultCompanyFile& companyFile, platform::MainWindow& window,
                               platform::Dialogs& dialogs, frmError& report, Trace& trace,
                               const platform::Clock& clock)
    : oSettings(settings),
      oSession(session),
      oCompanyFile(companyFile),
      oWindow(window),
      oDialogs(dialogs),
      oReport(report),
      oTrace(trace),
      oClock(clock) {}

void ConnectionTest::mnuFileTest_Click() {
  if (!CompanyFileSettled()) return;
  auto pass = EnterOrTell(oSession.gate, oTrace);
  if (!pass) return;
  Text failure;
  if (!OpenSession(failure)) {
    pass.reset();
    oWindow.ShowMessage(failure);
    return;
  }
  const Report report = AskForVersion();
  pass.reset();
  oReport.Caption(report.sCaption);
  oReport.txtError(report.sText);
  oReport.Show();
}

bool ConnectionTest::CompanyFileSettled() {
  if (!oSettings.sQBFileName.empty()) return true;
  const auto choice = oDialogs.AskYesNoCancel(u"Do you want to set a Default Quickbooks Database?");
  if (choice == platform::Answer::kYes) oCompanyFile.mnuToolsQBFile_Click();
  return choice != platform::Answer::kCancel;
}

bool ConnectionTest::OpenSession(Text& failure) {
  qbxml& session = oSession.session;
  if (!session.IsConnected()) {
    const Text file = oSettings.sQBFileName;
    std::int32_t number = 0;
    if (session.OpenConnectionAndBeginSession(u"ostrel", u"Ostrel", file, 0, number) != 0) {
      failure = FailureText(number, file);
      session.EndSessionAndCloseConnection();
      return false;
    }
  }
  oSession.idleClose.Extend(oClock.SteadyNow(), oSettings.iDisconnectTimeout);
  return true;
}

ConnectionTest::Report ConnectionTest::AskForVersion() {
  Text response;
  HostQuery& query = oSession.hostQuery;
  if (query.Run(response, true) && query.sQBProductName != u"Unknown") {
    return {u"Quickbooks Connection Status:", u"Ostrel is functioning correctly.\r\nQuickbooks " +
                                                  ProductAndVersion(query) + Text(kCrLf)};
  }
  oSession.session.EndSessionAndCloseConnection();
  return {u"Quickbooks Validation Error:",
          u"Unable to determane the Version of Quickbooks you are using.\r\n" + SupportRequest() +
              Text(kCrLf) + ReplaceAll(response, u"\n", kCrLf)};
}

Text ConnectionTest::FailureText(std::int32_t number, TextView file) const {
  const auto found =
      std::find_if(std::begin(kOpenFailures), std::end(kOpenFailures),
                   [&](const OpenFailure& failure) { return failure.iNumber == number; });
  if (found != std::end(kOpenFailures)) return Compose(*found, file) + CureBelow(number);
  return u"Unknown Error: " + ToText(std::int64_t{number}) + Text(kCrLf) +
         oSession.session.ErrorDescription(number) + CureBelow(number);
}

}  // namespace ostrel
