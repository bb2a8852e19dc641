#include "shell/frmMain.h"

#include <algorithm>
#include <chrono>
#include <iterator>
#include <utility>

#include "shell/Guarded.h"
#include "shell/Menus.h"
#include "shell/Version.h"
#include "shell/cCommandLine.h"

namespace ostrel {
namespace {

using std::chrono::milliseconds;

constexpr std::int16_t kUsualDisconnectTimeout = 300;
constexpr MenuItem kDebugTools[] = {mnuToolsCommLog, mnuToolsSettings, mnuToolsSep2, mnuToolsTest};

}  // namespace

struct frmMain::MenuCommand {
  MenuItem iItem;
  TextView sName;
  void (*Run)(frmMain& form);
  bool bUsesSession = false;  // refused while a request is in work
};

const frmMain::MenuCommand frmMain::kMenuCommands[] = {
    {mnuFile, u"mnuFile", [](frmMain& form) { form.mnuFile_Click(); }},
    {mnuFileCloseConnection, u"mnuFileCloseConnection",
     [](frmMain& form) { form.mnuFileCloseConnection_Click(); }, true},
    {mnuFileExit, u"mnuFileExit", [](frmMain& form) { form.Unload(); }},
    {mnuToolsHist, u"mnuToolsHist", [](frmMain& form) { form.oSettingsFile.mnuToolsHist_Click(); }},
    {mnuToolsCommLog, u"mnuToolsCommLog",
     [](frmMain& form) { form.oLogs.mnuToolsCommLog_Click(); }},
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
};

frmMain::frmMain(Surroundings surroundings)
    : oSurroundings(std::move(surroundings)),
      oLogs(oSettings, oState, oSurroundings.window, oSurroundings.clock),
      oSettingsFile(oSettings, oSurroundings.window, oLogs, oSurroundings.programFolder,
                    [this] { Unload(); }),
      oQBXML(oSurroundings.createProcessor),
      oHostQuery(oQBXML, oIdleClose, oLogs, oSurroundings.clock),
      oRequestHandler(oSettings, oQBXML, oHostQuery, oIdleClose, oLogs, oSurroundings.clock),
      oSocketTransport(
          oSettings, oLogs, oGate, oState.iActiveSocket,
          [this](Text& request, Text& response) { return ProcessRequest(request, response); }),
      oFolderTransport(
          oSettings, oState, oLogs, oGate,
          [this](Text& request, Text& response) { return ProcessRequest(request, response); },
          [this] { return CreateWatcher(); }),
      tmrSocketProcess(milliseconds(100), [this] { tmrSocketProcess_Timer(); }),
      tmrProcess(milliseconds(100), [this] { tmrProcess_Timer(); }),
      tmrLook(milliseconds(2000), [this] { tmrLook_Timer(); }),
      tmrClose(milliseconds(1000), [this] { tmrClose_Timer(); }),
      tmrLoadingFlag(milliseconds(5000), [this] { tmrLoadingFlag_Timer(); }),
      tmrUnload(milliseconds(1),
                [this] {
                  tmrUnload.SetEnabled(false);
                  Unload();
                }),
      oCommunications(
          oSettings, oState, oSettingsFile, oSurroundings.window, oLogs, oSocketTransport,
          tmrSocketProcess,
          [this] { return oSurroundings.createSocketServer(oSocketTransport, oLogs); },
          oFolderTransport, tmrProcess) {
  oQBXML.UpdateStatus = [this](TextView text) { oQBXML_UpdateStatus(text); };
  oQBXML.Loading = [this] { oQBXML_Loading(); };
  oQBXML.Loaded = [this] { oQBXML_Loaded(); };
  oGate.Freed = [this] { CarryOutUnload(); };
}

void frmMain::Load() {
  TextView failure = u"Start-up stopped at Command Line";
  try {
    RunLoadSteps(failure);
  } catch (...) {
    TellException(oLogs, failure);
  }
  CarryOutUnload();
}

void frmMain::RunLoadSteps(TextView& failure) {
  oSettings.iDisconnectTimeout = kUsualDisconnectTimeout;
  oIdleClose.bAutoClose = true;
  tmrSocketProcess.SetEnabled(true);
  tmrClose.SetEnabled(true);

  cCommandLine commandLine;
  DeclareSwitches(commandLine);
  commandLine.CommandLine(oSurroundings.commandLine);
  oSettings.sIniFile = SettingsFileName(commandLine, oSurroundings.programFolder);
  oState.bDebug = commandLine.HasSwitch(u"debug");
  ShowDebugTools();
  if (LowerCase(commandLine.SwitchValue(u"commmenu")) == u"false") {
    oSurroundings.window.SetMenuVisible(mnuCommunications, false);
  }

  failure = u"Start-up stopped at qbxml Object";
  oSettingsFile.LoadSettings();
  if (bUnloaded) return;
  failure = u"Start-up stopped at Start Communications";
  oCommunications.ApplyCommunications();
}

void frmMain::ShowDebugTools() {
  for (const MenuItem item : kDebugTools) oSurroundings.window.SetMenuVisible(item, oState.bDebug);
  if (oState.bDebug) oSurroundings.window.SetCaption(Text(kProgramTitle) + u" (Debugging)");
}

void frmMain::oQBXML_UpdateStatus(TextView text) { oLogs.AddStatus(text); }
void frmMain::oQBXML_Loading() { tmrLoadingFlag.SetEnabled(true); }
void frmMain::oQBXML_Loaded() { tmrLoadingFlag.SetEnabled(false); }

void frmMain::MenuClick(platform::MenuId item) {
  const auto command = std::find_if(std::begin(kMenuCommands), std::end(kMenuCommands),
                                    [&](const MenuCommand& one) { return one.iItem == item; });
  if (command == std::end(kMenuCommands)) return;
  Guarded(oLogs, command->sName, [&] {
    if (command->bUsesSession && oGate.IsBusy()) {
      oLogs.AddStatus(u"A request is in work: try again when it has ended");
    } else {
      command->Run(*this);
    }
  });
  CarryOutUnload();
}

void frmMain::tmrSocketProcess_Timer() {
  if (bUnloadWanted) return;
  Guarded(oLogs, u"tmrSocketProcess", [this] { oSocketTransport.tmrSocketProcess_Timer(); });
}

void frmMain::tmrProcess_Timer() {
  // The watch would hold up the handler below for as long as it lasts: tried at the next tick.
  if (bUnloadWanted || platform::IsNestedHandler()) return;
  tmrProcess.SetEnabled(false);
  tmrLook.SetEnabled(true);
  Guarded(oLogs, u"tmrProcess", [this] { oFolderTransport.tmrProcess_Timer(); });
}

void frmMain::tmrLook_Timer() {
  if (bUnloadWanted) return;
  tmrLook.SetEnabled(oState.bWatchActive);
  Guarded(oLogs, u"tmrLook", [this] { oFolderTransport.LookAgain(); });
}

void frmMain::tmrClose_Timer() {
  if (oGate.IsBusy() || !oQBXML.IsConnected()) return;
  if (!oIdleClose.IsDue(oSurroundings.clock.Now(), oSettings.iDisconnectTimeout)) return;
  Guarded(oLogs, u"tmrClose", [this] { mnuFileCloseConnection_Click(); });
}

void frmMain::tmrLoadingFlag_Timer() {
  tmrLoadingFlag.SetEnabled(false);
  Guarded(oLogs, u"tmrLoadingFlag", [this] {
    if (!oSocketTransport.SendLoadingNotice()) oFolderTransport.SendLoadingNotice();
  });
}

float frmMain::ProcessRequest(Text& request, Text& response) {
  return oRequestHandler.ProcessRequest(request, response);
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

void frmMain::Unload() {
  if (bUnloaded) return;
  bUnloadWanted = true;
  oFolderTransport.TakeNoMore();
  if (oGate.IsBusy() || oCommunications.IsApplying()) return;
  bUnloaded = true;
  Guarded(oLogs, u"QueryUnload", [this] { QueryUnload(); });
  oSurroundings.unloaded();
}

void frmMain::QueryUnload() {
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
