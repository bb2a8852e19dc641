// The surroundings of the commands that use the QuickBooks session, for their tests.
#pragma once

#include <gtest/gtest.h>

#include "gateway/RequestGate.h"
#include "gateway/RequestHandler.h"
#include "shell/commands/DefaultCompanyFile.h"
#include "shell/forms/frmError.h"
#include "shell/settings/SettingsFile.h"
#include "tests/support/ScratchFolder.h"
#include "tests/unit/doubles/FakeClock.h"
#include "tests/unit/doubles/FakeDialogs.h"
#include "tests/unit/doubles/FakeProcesses.h"
#include "tests/unit/doubles/FakeRequestProcessor.h"
#include "tests/unit/doubles/FakeTextForm.h"
#include "tests/unit/doubles/FakeTrace.h"
#include "tests/unit/doubles/FakeWindow.h"

namespace ostrel {

class SessionCommandTest : public testing::Test {
 protected:
  SessionCommandTest() {
    Settings.sIniFile = Folder.Path(u"osl.ini");
    Settings.sQBFileName = u"C:\\a.qbw";
    Settings.iDisconnectTimeout = 300;
    Folder.Write(u"osl.ini", "");
    QuickBooks.sResponse =
        u"<MajorVersion>18</MajorVersion><MinorVersion>0</MinorVersion>"
        u"<ProductName>QuickBooks Premier Edition 2008</ProductName>";
  }

  // The session closes itself when it goes; by then a test's own variables have gone.
  ~SessionCommandTest() override { QuickBooks.DuringCall = nullptr; }

  std::string Ini() const { return Folder.Read(u"osl.ini"); }
  bool IsOpen() const { return Session.IsConnected(); }
  bool HasShown() const { return !Forms.Created.empty(); }

  ScratchFolder Folder;
  doubles::FakeWindow Window;
  doubles::FakeDialogs Dialogs;
  doubles::FakeForms Forms;
  doubles::FakeProcesses Processes;
  doubles::FakeTrace Trace;
  doubles::FakeClock Clock;
  doubles::FakeQuickBooks QuickBooks;
  AppSettings Settings;
  RequestGate Gate;
  IdleClose Idle;
  qbxml Session{QuickBooks.Factory()};
  HostQuery Query{Session, Idle, Trace, Clock};
  RequestHandler Handler{Settings, Session, Query, Idle, Trace, Clock};
  int iUnloads = 0;
  SettingsFile File{Settings, Window, Trace, Folder.Path(), [this] { ++iUnloads; }};
  frmError Report{Forms.Factory(), Dialogs, Window, Trace, [] { return Text(); }};
  DefaultCompanyFile CompanyFile{Settings, File, Window, Dialogs, Processes, Trace};
};

}  // namespace ostrel
