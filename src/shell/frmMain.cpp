// The form owns the parts of the program and decides almost nothing itself: a handler passes an
// event to the part that it concerns, guarded, so that no exception reaches the event loop.
//
// It does decide what happens at the end of the program. An exit is only wished for at first
// (bUnloadWanted). While a request is in work, a start of the transports is under way, or responses
// are still going out, it is put off; it is carried out from a timer, when nothing of the form is
// on the stack. A second exit, or the end of the system, gives these waits up.
//
// Commands that use the session are refused while a request has the pass of RequestGate, and none
// runs twice at a time, since dialogs handle events.
#include "shell/frmMain.h"

#include <algorithm>
#include <chrono>
#include <functional>
#include <iterator>
#include <utility>

#include "gateway/Guarded.h"
#include "gateway/RequestGate.h"
#include "shell/commands/SupportReport.h"
#include "shell/forms/Version.h"
#include "shell/settings/cCommandLine.h"

namespace ostrel {
namespace {

using std::chrono::milliseconds;

// The intervals of the timers.
constexpr milliseconds kNextRequest(100);     // for a request that nobody announces
constexpr milliseconds kBeginOfWatch(100);    // until the folder watch begins
constexpr milliseconds kLook(2000);           // between two looks at the process folder
constexpr milliseconds kIdleCheck(1000);      // whether an idle session is to be closed
constexpr milliseconds kLoadingNotice(5000);  // until a client is told that QuickBooks is loading
constexpr milliseconds kDeliveryCheck(20);    // whether the responses have gone out
constexpr milliseconds kFromTheLoop(1);       // as soon as the handlers on the stack have returned

// The events' turn between two looks whether the settings' editor has ended.
constexpr milliseconds kEventsForTheEditor(100);

// Of the five seconds that the system gives, for the request in work and slow clients; the rest is
// for QuickBooks' end.
constexpr milliseconds kPatienceAtTheEnd(2000);

constexpr MenuItem kDebugTools[] = {mnuToolsCommLog, mnuToolsSettings, mnuToolsSep2, mnuToolsTest};

}  // namespace

struct frmMain::MenuCommand {
  MenuItem iItem;
  TextView sName;
  void (frmMain::*Click)();
  bool bHoldsUp = false;  // uses the session, or asks the user: refused while a request is in work
};

const frmMain::MenuCommand frmMain::kMenuCommands[] = {
    {mnuFile, u"mnuFile", &frmMain::mnuFile_Click},
    {mnuFileTest, u"mnuFileTest", &frmMain::mnuFileTest_Click, true},
    {mnuFileCloseConnection, u"mnuFileCloseConnection", &frmMain::mnuFileCloseConnection_Click,
     true},
    {mnuFileHide, u"mnuFileHide", &frmMain::mnuFileHide_Click},
    {mnuFileExit, u"mnuFileExit", &frmMain::mnuFileExit_Click},
    {mnuToolsSettings, u"mnuToolsSettings", &frmMain::mnuToolsSettings_Click, true},
    {mnuToolsQBFile, u"mnuToolsQBFile", &frmMain::mnuToolsQBFile_Click, true},
    {mnuToolsStartQB, u"mnuToolsStartQB", &frmMain::mnuToolsStartQB_Click},
    {mnuToolsHist, u"mnuToolsHist", &frmMain::mnuToolsHist_Click},
    {mnuToolsCommLog, u"mnuToolsCommLog", &frmMain::mnuToolsCommLog_Click},
    {mnuToolsTest, u"mnuToolsTest", &frmMain::mnuToolsTest_Click, true},
    {mnuCommunicationsFolder, u"mnuCommunicationsFolder", &frmMain::mnuCommunicationsFolder_Click},
    {mnuCommunicationsSocket, u"mnuCommunicationsSocket", &frmMain::mnuCommunicationsSocket_Click},
    {mnuCommunicationsD3Linux, u"mnuCommunicationsD3Linux",
     &frmMain::mnuCommunicationsD3Linux_Click},
    {mnuCommunicationsD3NT, u"mnuCommunicationsD3NT", &frmMain::mnuCommunicationsD3NT_Click},
    {mnuCommunicationsUniverse, u"mnuCommunicationsUniverse",
     &frmMain::mnuCommunicationsUniverse_Click},
    {mnuCommunicationsOI, u"mnuCommunicationsOI", &frmMain::mnuCommunicationsOI_Click},
    {mnuHelpAbout, u"mnuHelpAbout", &frmMain::mnuHelpAbout_Click},
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
      tmrSocketProcess(kNextRequest, [this] { tmrSocketProcess_Timer(); }),
      tmrProcess(kBeginOfWatch, [this] { tmrProcess_Timer(); }),
      tmrLook(kLook, [this] { tmrLook_Timer(); }),
      tmrClose(kIdleCheck, [this] { tmrClose_Timer(); }),
      tmrLoadingFlag(kLoadingNotice, [this] { tmrLoadingFlag_Timer(); }),
      tmrDelivery(kDeliveryCheck,
                  [this] {
                    tmrDelivery.SetEnabled(false);
                    Unload();
                  }),
      tmrUnload(kFromTheLoop,
                [this] {
                  tmrUnload.SetEnabled(false);
                  Unload();
                }),
      tmrReload(kFromTheLoop, [this] { tmrReload_Timer(); }),
      tmrGiveUp(kPatienceAtTheEnd, [this] { tmrGiveUp_Timer(); }),
      oCommunications(oSettings, oSettingsFile, oSurroundings.window, oLogs, oSocketTransport,
                      oFolderTransport) {
  oLogs.ActiveSocket = [this] { return iActiveSocket(); };
  oQBXML.UpdateStatus = [this](TextView text) { oQBXML_UpdateStatus(text); };
  oQBXML.Loading = [this] { oQBXML_Loading(); };
  oQBXML.Loaded = [this] { oQBXML_Loaded(); };
  oSocketTransport.SwitchTicks = [this](bool on) { tmrSocketProcess.SetEnabled(on); };
  oFolderTransport.SwitchTicks = [this](bool on) { tmrProcess.SetEnabled(on); };
  oSocketTransport.RequestQueued = [this] { ProcessSoon(); };
  oGate.Freed = [this] {
    CarryOutUnload();
    CarryOutReload();
    ProcessSoon();
  };
  oSysTray.MenuClick = [this](TextView key) { oSysTray_MenuClick(key); };
  oSysTray.SysTrayDoubleClick = [this](std::int16_t) { oSysTray_SysTrayDoubleClick(); };
  oSysTray.SysTrayMouseDown = [this](std::int16_t button) { oSysTray_SysTrayMouseDown(button); };
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
    (this->*command.Click)();
    return;
  }
  bool& running = bRunning.at(static_cast<std::size_t>(command.iItem));
  if (running) return;
  if (oGate.IsBusy()) {
    oLogs.AddStatus(kRequestInWork);
    return;
  }
  const Flag flag(running);
  (this->*command.Click)();
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
  Guarded(oLogs, u"Restore", [this] { RestoreWindow(); });
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
// carried out at the next chance. Each tick still takes one, and other events come in between.
void frmMain::ProcessSoon() {
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
  watcher->FolderChanged = [this](TextView folder) { oWatchFolder_FolderChanged(folder); };
  watcher->ShowMessage = [this](TextView text) { oSurroundings.window.ShowMessage(text); };
  return watcher;
}

void frmMain::oWatchFolder_FolderChanged(TextView folder) {
  Guarded(oLogs, u"oWatchFolder_FolderChanged",
          [&] { oFolderTransport.ScanProcessFolder(folder); });
}

void frmMain::oSysTray_SysTrayDoubleClick() { RestoreWindow(); }

void frmMain::oSysTray_SysTrayMouseDown(std::int16_t button) {
  if (button == frmSysTray::kRightButton) oSysTray.ShowMenu();
}

void frmMain::oSysTray_MenuClick(TextView key) {
  if (key == TrayMenu::kOpen) RestoreWindow();
  if (key == TrayMenu::kClose) MenuClick(mnuFileExit);
}

// Each menu item has its handler here; the work is done by the part that owns the command.
void frmMain::mnuFileTest_Click() { oConnectionTest.mnuFileTest_Click(); }
void frmMain::mnuToolsSettings_Click() { oSettingsEditor.mnuToolsSettings_Click(); }
void frmMain::mnuToolsQBFile_Click() { oCompanyFile.mnuToolsQBFile_Click(); }
void frmMain::mnuToolsStartQB_Click() { oCompanyFile.mnuToolsStartQB_Click(); }
void frmMain::mnuToolsHist_Click() { oSettingsFile.mnuToolsHist_Click(); }
void frmMain::mnuToolsCommLog_Click() { oLogs.mnuToolsCommLog_Click(); }
void frmMain::mnuToolsTest_Click() { oTestRequest.mnuToolsTest_Click(); }
void frmMain::mnuCommunicationsFolder_Click() { oCommunications.mnuCommunicationsFolder_Click(); }
void frmMain::mnuCommunicationsSocket_Click() { oCommunications.mnuCommunicationsSocket_Click(); }
void frmMain::mnuCommunicationsD3Linux_Click() { oCommunications.ChooseFlavour(1); }
void frmMain::mnuCommunicationsD3NT_Click() { oCommunications.ChooseFlavour(2); }
void frmMain::mnuCommunicationsUniverse_Click() { oCommunications.ChooseFlavour(3); }
void frmMain::mnuCommunicationsOI_Click() { oCommunications.ChooseFlavour(4); }
void frmMain::mnuHelpAbout_Click() { oAbout.Show(); }

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
// them up: QuickBooks may never return, a client may be slow.
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

void frmMain::RestoreWindow() {
  oSurroundings.frame.SetState(platform::WindowState::kNormal);
  oSurroundings.frame.Show();
  oSurroundings.frame.BringToFront();
}

bool frmMain::LetEventsRun() const {
  platform::DoEventsFor(kEventsForTheEditor);
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
