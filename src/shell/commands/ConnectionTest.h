// The connection test, with which the person who installs the gateway sees whether QuickBooks can
// be reached. The session is held while it is used, and let go before anybody is asked or told.
#pragma once

#include "gateway/HostQuery.h"
#include "gateway/IdleClose.h"
#include "gateway/RequestGate.h"
#include "gateway/Trace.h"
#include "gateway/qbxml.h"
#include "platform/Clock.h"
#include "platform/Dialogs.h"
#include "platform/MainWindow.h"
#include "shell/commands/DefaultCompanyFile.h"
#include "shell/forms/frmError.h"
#include "shell/settings/AppSettings.h"

namespace ostrel {

class ConnectionTest {
 public:
  /// The QuickBooks session and what goes with it.
  struct Session {
    RequestGate& gate;
    qbxml& session;
    HostQuery& hostQuery;
    IdleClose& idleClose;
  };

  ConnectionTest(const AppSettings& settings, Session session, DefaultCompanyFile& companyFile,
                 platform::MainWindow& window, platform::Dialogs& dialogs, frmError& report,
                 Trace& trace, const platform::Clock& clock);

  /// The menu item "Test Quickbooks Connection".
  void mnuFileTest_Click();

 private:
  struct Report;

  bool CompanyFileSettled();
  // False, and the text that tells why: nothing is left open.
  bool OpenSession(Text& failure);
  Report AskForVersion();
  Text FailureText(std::int32_t number, TextView file) const;

  const AppSettings& oSettings;
  Session oSession;
  DefaultCompanyFile& oCompanyFile;
  platform::MainWindow& oWindow;
  platform::Dialogs& oDialogs;
  frmError& oReport;
  Trace& oTrace;
  const platform::Clock& oClock;
};

}  // namespace ostrel
