#include "shell/frmMain.h"

#include <algorithm>
#include <chrono>
#include <functional>
#include <iterator>
#include <utility>

#include "gateway/Guarded.h"
#include "shell/commands/RequestInWork.h"
#include "shell/commands/SupportReport.h"
#include "shell/forms/Version.h"
#include "shell/settings/cCommandLine.h"
#include "util/Flag.h"

namespace ostrel {
namespace {

using std::chrono::milliseconds;

// Of the five seconds that the system gives, for the request in work and slow clients; the rest is
// for QuickBooks' end.
constexpr milliseconds kPatienceAtTheEnd(2000);

constexpr MenuItem kDebugTools[] = {mnuToolsCommLog, mnuToolsSettings, mnuToolsSep2, mnuToolsTest};

}  // namespace

struct frmMain::MenuCommand {
  MenuItem iItem;
  TextView sName;
  void (*Run)(frmMain& form);
  bool bHoldsUp = false;  // uses the session, or asks the user: refused while a request is in work
};

const frmMain::MenuCommand frmMain::kMenuCommands[] = {
    {mnuFile, u"mnuFile", [](frmMain& form) { form.mnuFile_Click(); }},
    {mnuFileTest, u"mnuFileTest", [](frmMain& form) { form.oConnectionTest.mnuFileTest_Click(); },
     true},
    {mnuFileCloseConnection, u"mnuFileCloseConnection",
     [](frmMain& form) { form.mnuFileCloseConnection_Click(); }, true},
    {mnuFileHide, u"mnuFileHide", [](frmMain& form) { form.mnuFileHide_Click(); }},
    {mnuFileExit, u"mnuFileExit", [](frmMain& form) { form.mnuFileExit_Click(); }},
    {mnuToolsSettings, u"mnuToolsSettings",
     [](frmMain& form) { form.oSettingsEditor.mnuToolsSettings_Click(); }, true},
    {mnuToolsQBFile, u"mnuToolsQBFile",
     [](frmMain& form) { form.oCompanyFile.mnuToolsQBFile_Click(); }, true},
    {mnuToolsStartQB, u"mnuToolsStartQB",
     [](frmMain& form) { form.oCompanyFile.mnuToolsStartQB_Click(); }},
    {mnuToolsHist, u"mnuToolsHist", [](frmMain& form) { form.oSettingsFile.mnuToolsHist_Click(); }},
    {mnuToolsCommLog, u"mnuToolsCommLog",
     [](frmMain& form) { form.oLogs.mnuToolsCommLog_Click(); }},
    {mnuToolsTest, u"mnuToolsTest", [](frmMain& form) { form.oTestRequest.mnuToolsTest_Click(); },
     true},
    {mnuCommunicationsFolder, u"mnuCommunicationsFolder",
     [](frmMain& form) { form.oCommunications.mnuCommunicationsFolder_Click(); }},
    {mnuCommunicationsSocket, u"mnuCommunicationsSocket",
     [](frmMain& form) { form.oCommunications.mnuCommunicationsSocket_Click(); }},
    {mnuCommunicationsD3Linux, u"mnuCommunicationsD3Linux",
     [](frmMain& form) { form.oCommunications.ChooseFlavour(1); }},
    {mnuCommunicationsD3NT, u"mnuCommunicationsD3NT",
     [](frmMain& form) { form.oCommunications.ChooseFlavour(2); }},
    {mnuCommunicationsUniverse, u"mnuCommunicationsUniverse",
     [](frmMain& form) { form.oCommunications.ChooseFlavour(3); }},
    {mnuCommunicationsOI, u"mnuCommunicationsOI",
     [](frmMain& form) { form.oCommunications.ChooseFlavour(4); }},
    {mnuHelpAbout, u"mnuHelpAbout", [](frmMain& form) { form.oAbout.Show(); }},
};

frmMain::frmMain(Surroundings surroundings)
    : oSurroundings(std::move(surroundings)),
      oLogs(oSettings, oSurroundings.window, oSurroundings.clock),
      oSettingsFile(oSettings, oSurroundings.window, oLogs, oSurroundings.programFolder,
                    [this] { Unload(); }),
      oQBXML(oSurroundings.createProcessor),
      oHostQuery(oQBXML, oIdleClose, oLogs, oSurroundings.clock),
      oRequestHandler(oSettings, oQBXML, oHostQuery, oIdleClose, oLogs, oSurroundings.clock),
      oError(oSurroundings.createTextForm, oSurroundings.dialogs, oSurroundings.window, oLogs,
             [this] { return SupportReport(oSettings, oHostQuery); }),
      oAbout(oSurroundings.createTextForm),
      oCompanyFile(oSettings, oSettingsFile, oSurroundings.window, oSurroundings.dialogs,
                   oSurroundings.processes, oLogs),
      oConnectionTest(oSettings, {oGate, oQBXML, oHostQuery, oIdleClose}, oCompanyFile,
                      oSurroundings.window, oSurroundings.dialogs, oError, oLogs,
                      oSurroundings.clock),
      oTestRequest(oGate, oRequestHandler, oQBXML, oSurroundings.dialogs, oError, oLogs),
      oSettingsEditor(
          oSettings, oSettingsFile, oGate, oRequestHandler, oSurroundings.window, oLogs,
          {oSurroundings.processes, oSurroundings.clock, [this] { return LetEventsRun(); }}),
      oLogFileView(oSettings, oError),
      oSysTray(oSurroundings.createNotifyIcon, oLogs),
      oSocketTransport(oSettings, oLogs, oGate,
                       std::bind_front(&RequestHandler::ProcessRequest, &oRequestHandler),
                       oSurroundings.createSocketServer),
      oFolderTransport(oSettings, oLogs, oGate,
                       std::bind_front(&RequestHandler::ProcessRequest, &oRequestHandler),
                       [this] { return CreateWatcher(); }),
      tmrSocketProcess(milliseconds(100), [this] { tmrSocketProcess_Timer(); }),
      tmrProcess(milliseconds(100), [this] { tmrProcess_Timer(); }),
      tmrLook(milliseconds(2000), [this] { tmrLook_Timer(); }),
      tmrClose(milliseconds(1000), [this] { tmrClose_Timer(); }),
      tmrLoadingFlag(milliseconds(5000), [this] { tmrLoadingFlag_Timer(); }),
      tmrDelivery(milliseconds(20),
                  [this] {
                    tmrDelivery.SetEnabled(false);
                    Unload();
                  }),
      tmrUnload(milliseconds(1),
                [this] {
                  tmrUnload.SetEnabled(false);
                  Unload();
                }),
      tmrReload(milliseconds(1), [this] { tmrReload_Timer(); }),
      tmrGiveUp(kPatienceAtTheEnd, [this] { tmrGiveUp_Timer(); }),
      oCommunications(oSettings, oSettingsFile, oSurroundings.window, oLogs, oSocketTransport,
                      oFolderTransport) {
  oLogs.ActiveSocket = [this] { return iActiveSocket(); };
  oQBXML.UpdateStatus = [this](TextView text) { oQBXML_UpdateStatus(text); };
  oQBXML.Loading = [this] { oQBXML_Loading(); };
  oQBXML.Loaded = [this] { oQBXML_Loaded(); };
  oSocketTransport.SwitchTicks = [this](bool on) { tmrSocketProcess.SetEnabled(on); };
  oFolderTransport.SwitchTicks = [this](bool on) { tmrProcess.SetEnabled(on); };
  oSocketTransport.RequestQueued = [this] { AnswerSoon(); };
  oGate.Freed = [this] {
    CarryOutUnload();
    CarryOutReload();
    AnswerSoon();
  };
  oSysTray.Open = [this] { OpenWindow(); };
  oSysTray.Close = [this] { MenuClick(mnuFileExit); };
}

void frmMain::Load() {
  TextView failure = u"Start-up stopped at Command Line";
  bool shown = true;
  try {
    shown = RunLoadSteps(failure);
  } catch (...) {
    TellException(oLogs, failure);
  }
  if (shown && !bUnloadWanted) Guarded(oLogs, u"Show", [this] { oSurroundings.frame.Show(); });
  CarryOutUnload();
}

bool frmMain::RunLoadSteps(TextView& failure) {
  oSurroundings.frame.SetMark(kWindowMark);
  oIdleClose.bAutoClose = true;
  tmrSocketProcess.SetEnabled(true);
  tmrClose.SetEnabled(true);
  ReadCommandLine();

  failure = u"Start-up stopped at qbxml Object";
  oSettingsFile.LoadSettings();
  if (bUnloaded) return false;
  Guarded(oLogs, u"SettleLeftovers", [this] { oFolderTransport.SettleLeftovers(); });
  failure = u"Start-up stopped at Start Communications";
  oCommunications.ApplyCommunications();
  failure = u"Start-up stopped at System Tray";
  oSysTray.Show(oSurroundings.frame.Icon());
  if (oSurroundings.frame.State() != platform::WindowState::kMinimised) return true;
  mnuFileHide_Click();
  return false;
}

void frmMain::ReadCommandLine() {
  cCommandLine commandLine;
  DeclareSwitches(commandLine);
  commandLine.CommandLine(oSurroundings.commandLine);
  oSettings.sIniFile = SettingsFileName(commandLine, oSurroundings.programFolder);
  bDebug = commandLine.HasSwitch(u"debug");
  ShowDebugTools();
  if (LowerCase(commandLine.SwitchValue(u"commmenu")) == u"false") {
    oSurroundings.window.SetMenuVisible(mnuCommunications, false);
  }
}

void frmMain::ShowDebugTools() {
  for (const MenuItem item : kDebugTools) oSurroundings.window.SetMenuVisible(item, bDebug);
  if (bDebug) oSurroundings.window.SetCaption(Text(kProgramTitle) + u" (Debugging)");
}

void frmMain::oQBXML_UpdateStatus(TextView text) { oLogs.AddStatus(text); }
void frmMain::oQBXML_Loading() { tmrLoadingFlag.SetEnabled(true); }
void frmMain::oQBXML_Loaded() { tmrLoadingFlag.SetEnabled(false); }

void frmMain::MenuClick(platform::MenuId item) {
  const auto command = std::find_if(std::begin(kMenuCommands), std::end(kMenuCommands),
                                    [&](const MenuCommand& one) { return one.iItem == item; });
  if (command == std::end(kMenuCommands)) return;
  if (bUnloaded && item != mnuFileExit) return;
  Guarded(oLogs, command->sName, [&] { RunCommand(*command); });
  CarryOutUnload();
}

void frmMain::RunCommand(const MenuCommand& command) {
  if (!command.bHoldsUp) {
    command.Run(*this);
    return;
  }
  bool& running = bRunning.at(command.iItem);
  if (running) return;
  if (oGate.IsBusy()) {
    oLogs.AddStatus(kRequestInWork);
    return;
  }
  const Flag flag(running);
  command.Run(*this);
}

void frmMain::Resize() {
  Guarded(oLogs, u"Resize", [this] {
    const platform::WindowState state = oSurroundings.frame.State();
    if (state == platform::WindowState::kMinimised) {
      mnuFileHide_Click();
    } else if (state == platform::WindowState::kNormal) {
      oSurroundings.window.FitStatusList();
    }
  });
}

bool frmMain::Restore() {
  if (bUnloadWanted) return false;
  Guarded(oLogs, u"Restore", [this] { OpenWindow(); });
  return true;
}

void frmMain::CloseRequest(platform::ApplicationWindow::CloseReason reason) {
  using Reason = platform::ApplicationWindow::CloseReason;
  Guarded(oLogs, u"CloseRequest", [&] {
    if (reason == Reason::kCloseBox) {
      oAbout.Unload();
      mnuFileHide_Click();
      return;
    }
    // The system tells of its end more than once.
    if (reason != Reason::kSystemEnds || !bUnloadWanted) mnuFileExit_Click();
    if (reason == Reason::kSystemEnds && !bUnloaded) tmrGiveUp.SetEnabled(true);
  });
}

void frmMain::lstStatus_DblClick(TextView line) {
  if (bUnloaded) return;
  Guarded(oLogs, u"lstStatus", [&] { oLogFileView.lstStatus_DblClick(line); });
}

void frmMain::tmrSocketProcess_Timer() {
  if (bUnloadWanted) return;
  Guarded(oLogs, u"tmrSocketProcess", [this] { oSocketTransport.tmrSocketProcess_Timer(); });
}

// The timer's interval is for what nobody announces: a request that waits, and nothing in work, is
// answered at the next chance. Each tick still answers one, and other events come in between.
void frmMain::AnswerSoon() {
  if (oSocketTransport.HasRequests() && !oGate.IsBusy()) tmrSocketProcess.TickSoon();
}

void frmMain::tmrProcess_Timer() {
  if (bUnloadWanted) return;
  tmrLook.SetEnabled(true);
  // The watch would hold up the handler below for as long as it lasts: tried at the next tick.
  if (platform::IsNestedHandler()) return;
  tmrProcess.SetEnabled(false);
  Guarded(oLogs, u"tmrProcess", [this] { oFolderTransport.tmrProcess_Timer(); });
}

void frmMain::tmrLook_Timer() {
  if (bUnloadWanted) return;
  // Not begun by now, the watch could not begin for want of memory: it is tried again.
  const bool isOn = oFolderTransport.IsSwitchedOn();
  if (isOn && !bWatchActive()) tmrProcess.SetEnabled(true);
  tmrLook.SetEnabled(isOn);
  Guarded(oLogs, u"tmrLook", [this] { oFolderTransport.LookAgain(); });
}

void frmMain::tmrClose_Timer() {
  if (oGate.IsBusy() || !oQBXML.IsConnected()) return;
  if (!oIdleClose.IsDue(oSurroundings.clock.SteadyNow(), oSettings.iDisconnectTimeout)) return;
  Guarded(oLogs, u"tmrClose", [this] { mnuFileCloseConnection_Click(); });
}

void frmMain::tmrLoadingFlag_Timer() {
  tmrLoadingFlag.SetEnabled(false);
  Guarded(oLogs, u"tmrLoadingFlag", [this] {
    if (!oSocketTransport.SendLoadingNotice()) oFolderTransport.SendLoadingNotice();
  });
}

void frmMain::tmrReload_Timer() {
  tmrReload.SetEnabled(false);
  if (bUnloadWanted) return;
  Guarded(oLogs, u"tmrReload", [this] { oSettingsEditor.Reload(); });
}

void frmMain::tmrGiveUp_Timer() {
  tmrGiveUp.SetEnabled(false);
  Guarded(oLogs, u"tmrGiveUp", [this] { GiveUpWaiting(); });
}

std::shared_ptr<clsWatchFolder> frmMain::CreateWatcher() {
  auto watcher = std::make_shared<clsWatchFolder>(oSurroundings.createFolderNotification());
  watcher->FolderChanged = [this](TextView folder) {
    Guarded(oLogs, u"oWatchFolder_FolderChanged",
            [&] { oFolderTransport.ScanProcessFolder(folder); });
  };
  watcher->ShowMessage = [this](TextView text) { oSurroundings.window.ShowMessage(text); };
  return watcher;
}

void frmMain::mnuFile_Click() {
  oSurroundings.window.SetMenuEnabled(mnuFileCloseConnection, oQBXML.IsConnected());
}

void frmMain::mnuFileCloseConnection_Click() {
  // Held, since events run while QuickBooks is spoken to.
  const auto pass = oGate.TryEnter();
  oRequestHandler.CloseQuickBooks();
}

void frmMain::mnuFileHide_Click() {
  if (bUnloaded) return;
  oSysTray.Show(oSurroundings.frame.Icon());
  oSurroundings.frame.Hide();
  oSurroundings.frame.SetState(platform::WindowState::kNormal);
}

// The first waits for a request in work and for responses that are being sent. The second gives
// them up: QuickBooks may never answer, a client may be slow.
void frmMain::mnuFileExit_Click() {
  if (bUnloadWanted) return GiveUpWaiting();
  Unload();
  if (!bUnloaded && oGate.IsBusy()) {
    oLogs.AddStatus(u"Exit waits for the request in work; exit again to give it up");
  }
}

void frmMain::GiveUpWaiting() {
  bWaitingGivenUp = true;
  oQBXML.GiveUp();
  Unload();
}

void frmMain::OpenWindow() {
  oSurroundings.frame.SetState(platform::WindowState::kNormal);
  oSurroundings.frame.Show();
  oSurroundings.frame.BringToFront();
}

bool frmMain::LetEventsRun() const {
  platform::DoEventsFor(milliseconds(100));
  return !bUnloaded;
}

void frmMain::Unload() {
  if (bUnloaded) return;
  bUnloadWanted = true;
  Guarded(oLogs, u"Unload", [this] { oCommunications.TakeNoMore(); });
  if (oGate.IsBusy() || oCommunications.IsApplying()) return;
  if (!bWaitingGivenUp && AwaitDelivery()) return;
  bUnloaded = true;
  Guarded(oLogs, u"QueryUnload", [this] { QueryUnload(); });
  Guarded(oLogs, u"Unload", [this] {
    oSysTray.Remove();
    oSurroundings.frame.Hide();
    oSurroundings.frame.RemoveMark(kWindowMark);
  });
  oSurroundings.unloaded();
}

// True while responses are still going out; Unload is entered again soon.
bool frmMain::AwaitDelivery() {
  if (!oSocketTransport.IsDelivering()) return false;
  if (!std::exchange(bDeliveryTold, true)) {
    oLogs.AddStatus(u"Exit waits for responses that are being sent; exit again to give them up");
  }
  tmrDelivery.SetEnabled(true);
  return true;
}

void frmMain::QueryUnload() {
  oAbout.Unload();
  oError.Unload();
  const auto pass = oGate.TryEnter();
  oQBXML.EndSessionAndCloseConnection();
  oCommunications.StopTransports();
  tmrClose.SetEnabled(false);
  tmrLoadingFlag.SetEnabled(false);
}

void frmMain::CarryOutUnload() {
  if (!bUnloadWanted || bUnloaded) return;
  // From the loop: who gave the pass back is still on the stack.
  if (!oGate.IsBusy() && !oCommunications.IsApplying()) tmrUnload.SetEnabled(true);
}

void frmMain::CarryOutReload() {
  if (oSettingsEditor.IsReloadDue()) tmrReload.SetEnabled(true);
}

void DeclareSwitches(cCommandLine& commandLine) {
  commandLine.AddSwitch(u"ini", true);
  commandLine.AddSwitch(u"debug", false);
  commandLine.AddSwitch(u"commmenu", true);
}

Text SettingsFileName(const cCommandLine& commandLine, TextView programFolder) {
  if (commandLine.HasSwitch(u"ini")) return commandLine.SwitchValue(u"ini");
  return Text(programFolder).append(u"\\osl.ini");
}

}  // namespace ostrel
