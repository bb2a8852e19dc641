#include "shell/commands/CommunicationModes.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "platform/FileSystem.h"
#include "platform/SystemError.h"
#include "shell/forms/Menus.h"
#include "util/Flag.h"
#include "util/RunTimeError.h"
#include "util/Wire.h"
#include "util/cFileIO.h"

namespace ostrel {
namespace {

struct Flavour {
  std::int32_t lCommType;
  MenuItem iItem;
  TextView sName;
  bool bSocketServer;
  bool bFolderWatch;
};

constexpr Flavour kFlavours[] = {
    {1, mnuCommunicationsD3Linux, u"D3Linux", true, false},
    {2, mnuCommunicationsD3NT, u"D3/NT", true, false},
    {3, mnuCommunicationsUniverse, u"Universe", true, false},
    {4, mnuCommunicationsOI, u"OpenInsight", false, true},
};

constexpr TextView kLogStart = u"Communication Set\t";

void MarkFlavour(platform::MainWindow& window, std::int32_t commType) {
  for (const Flavour& flavour : kFlavours) {
    window.SetMenuChecked(flavour.iItem, flavour.lCommType == commType);
  }
}

// What two folder names have in common that mean the same folder.
Text FolderKey(TextView folder) {
  Text key = ReplaceAll(LowerCase(folder), u"/", u"\\");
  while (key.ends_with(u'\\')) key.pop_back();
  return key;
}

void CreateFolder(const Text& folder) {
  const int error = cFileIO().ValidateDirectory(folder);
  if (error == 0) return;
  throw RunTimeError(
      ErrorNumber::kPathFileAccess, u"cFileIO.ValidateDirectory",
      u"Unable to create the folder " + folder + u": " + platform::SystemErrorText(error));
}

}  // namespace

CommunicationModes::CommunicationModes(AppSettings& settings, RunState& state,
                                       SettingsFile& settingsFile, platform::MainWindow& window,
                                       Trace& trace, SocketTransport& socketTransport,
                                       platform::Timer& socketTimer,
                                       SocketServiceFactory createServer,
                                       FolderTransport& folderTransport,
                                       platform::Timer& processTimer)
    : oSettings(settings),
      oState(state),
      oSettingsFile(settingsFile),
      oWindow(window),
      oTrace(trace),
      oSocketTransport(socketTransport),
      tmrSocketProcess(socketTimer),
      CreateServer(std::move(createServer)),
      oFolderTransport(folderTransport),
      tmrProcess(processTimer) {}

CommunicationModes::~CommunicationModes() { ReleaseSocketServer(); }

void CommunicationModes::ApplyCommunications() {
  bApplyAgain = true;
  if (bApplying) return;
  const Flag applying(bApplying);
  while (std::exchange(bApplyAgain, false)) Apply();
}

void CommunicationModes::ChooseFlavour(std::int32_t commType) {
  oSettings.lCommType = commType;
  ApplyCommunications();
  WriteFlavour();
}

// Kept: the Folder and Socket keys stay as they are; toggling lasts until the next start.
void CommunicationModes::mnuCommunicationsFolder_Click() {
  oSettings.bFolderWatch = !oSettings.bFolderWatch;
  ChooseFlavour(0);
}

void CommunicationModes::mnuCommunicationsSocket_Click() {
  oSettings.bSocketServer = !oSettings.bSocketServer;
  ChooseFlavour(0);
}

void CommunicationModes::TakeNoMore() {
  oFolderTransport.TakeNoMore();
  oSocketTransport.TakeNoMore();
  if (oSocketServer != nullptr && !bApplying) oSocketServer->StopListening();
}

bool CommunicationModes::IsServing() const {
  return oState.bSocketRunning || oState.bWatchActive || tmrProcess.Enabled();
}

void CommunicationModes::StopTransports() {
  tmrSocketProcess.SetEnabled(false);
  if (oSocketServer != nullptr) oSocketServer->StopServer();
  oState.bSocketRunning = false;
  ReleaseSocketServer();
  StopFolderWatch();
}

void CommunicationModes::Apply() {
  SetFlavour();
  ApplySocketServer();
  ApplyFolderWatch();
  MarkTransports();
}

void CommunicationModes::SetFlavour() {
  if (oSettings.lCommType == 0) {
    MarkTransports();
    MarkFlavour(oWindow, 0);
    LogTransports();
    return;
  }
  const auto flavour =
      std::find_if(std::begin(kFlavours), std::end(kFlavours),
                   [this](const Flavour& one) { return one.lCommType == oSettings.lCommType; });
  if (flavour == std::end(kFlavours)) return;
  oSettings.bSocketServer = flavour->bSocketServer;
  oSettings.bFolderWatch = flavour->bFolderWatch;
  oWindow.SetMenuChecked(mnuCommunicationsFolder, false);
  oWindow.SetMenuChecked(mnuCommunicationsSocket, false);
  MarkFlavour(oWindow, flavour->lCommType);
  oTrace.WriteCommLog(Text(kLogStart).append(flavour->sName));
}

void CommunicationModes::LogTransports() {
  oTrace.WriteCommLog(Text(kLogStart) + u"Folder Watch = " + BooleanWord(oSettings.bFolderWatch));
  oTrace.WriteCommLog(Text(kLogStart) + u"Socket Watch = " + BooleanWord(oSettings.bSocketServer));
}

void CommunicationModes::ApplySocketServer() {
  if (oSettings.bSocketServer) {
    StartSocketServer();
    return;
  }
  if (!oState.bSocketRunning) return;
  oSocketServer->StopServer();
  // Kept: the number does not follow the port.
  oTrace.AddStatus(Text(u"Stop Listenning on Socket ").append(kDefaultPortText));
  oState.bSocketRunning = false;
  tmrSocketProcess.SetEnabled(false);
  ReleaseSocketServer();
}

void CommunicationModes::StartSocketServer() {
  if (oSocketServer == nullptr) {
    oSocketServer = CreateServer();
    oSocketTransport.Attach(*oSocketServer);
  }
  const Text port = ToText(std::int64_t{oSettings.lSocketPort});
  bool started = oSocketServer->ServerStarted();
  if (!started) {
    started = oSocketServer->StartServer(oSettings.lSocketPort);
    if (started) oTrace.AddStatus(u"Listenning on Socket " + port);
  }
  oState.bSocketRunning = started;
  if (started) {
    tmrSocketProcess.SetEnabled(true);
    return;
  }
  oWindow.ShowMessage(u"Unable to start the Socket Server on Port " + port);
  oSettings.bSocketServer = false;
}

void CommunicationModes::ReleaseSocketServer() {
  oSocketTransport.Detach();
  oSocketServer.reset();
}

void CommunicationModes::ApplyFolderWatch() {
  if (!oSettings.bFolderWatch) {
    const bool wasRunning = oState.bFolderRunning;
    StopFolderWatch();
    if (wasRunning) {
      oTrace.AddStatus(u"Stop Watching Folder: " + oFolderTransport.ProcessList.Folder());
    }
  } else if (oState.bWatchActive) {
    oState.bFolderRunning = true;
  } else {
    StartFolderWatch();
  }
}

void CommunicationModes::StartFolderWatch() {
  if (FolderKey(oSettings.sProcessPath) == FolderKey(oSettings.sResponsePath)) {
    return RefuseFolder();
  }
  CreateFolder(oSettings.sProcessPath);
  CreateFolder(oSettings.sResponsePath);
  if (platform::IsSameFolder(oSettings.sProcessPath, oSettings.sResponsePath)) {
    return RefuseFolder();
  }
  oFolderTransport.ProcessList.SetFolder(oSettings.sProcessPath, Text(kRequestPattern));
  oFolderTransport.TakeAgain();
  tmrProcess.SetEnabled(true);
}

void CommunicationModes::StopFolderWatch() {
  tmrProcess.SetEnabled(false);
  oState.bWatchActive = oState.bFolderRunning = false;
  oFolderTransport.Stop();
}

void CommunicationModes::RefuseFolder() {
  oSettings.bFolderWatch = false;
  oWindow.ShowMessage(u"Unable to watch the folder " + oSettings.sProcessPath +
                      u": it is the folder of the responses as well, and each response would be "
                      u"taken as a request again");
}

void CommunicationModes::MarkTransports() {
  if (oSettings.lCommType == 0) {
    oWindow.SetMenuChecked(mnuCommunicationsFolder, oSettings.bFolderWatch);
    oWindow.SetMenuChecked(mnuCommunicationsSocket, oSettings.bSocketServer);
  } else if (!oSettings.bFolderWatch && !oSettings.bSocketServer) {
    oWindow.SetMenuChecked(mnuCommunicationsFolder, false);
    oWindow.SetMenuChecked(mnuCommunicationsSocket, false);
    MarkFlavour(oWindow, 0);
  }
}

void CommunicationModes::WriteFlavour() {
  oSettingsFile.Write(u"Communication", u"Type", ToText(std::int64_t{oSettings.lCommType}));
}

}  // namespace ostrel
