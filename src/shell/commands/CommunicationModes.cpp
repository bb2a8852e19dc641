// Applying the modes follows the settings in a fixed order: the flavour decides which transports
// are wanted, then the socket server is started or stopped, then the folder watch, and at last the
// menu is marked with what came of it. Starting the server handles events, and one of them may
// change the settings again: such a call only leaves a note, and the loop runs once more.
#include "shell/commands/CommunicationModes.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "gateway/Guarded.h"
#include "shell/forms/Menus.h"
#include "util/Wire.h"

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

}  // namespace

CommunicationModes::CommunicationModes(AppSettings& settings, SettingsFile& settingsFile,
                                       platform::MainWindow& window, Trace& trace,
                                       SocketTransport& socketTransport,
                                       FolderTransport& folderTransport)
    : oSettings(settings),
      oSettingsFile(settingsFile),
      oWindow(window),
      oTrace(trace),
      oSocketTransport(socketTransport),
      oFolderTransport(folderTransport) {}

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
  if (!bApplying) oSocketTransport.StopListening();
}

bool CommunicationModes::IsServing() const {
  return oSocketTransport.IsRunning() || oFolderTransport.IsSwitchedOn();
}

void CommunicationModes::StopTransports() {
  oSocketTransport.Stop();
  oFolderTransport.Stop();
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
  if (!oSocketTransport.IsRunning()) return;
  oSocketTransport.Stop();
  // Kept: the number does not follow the port.
  oTrace.AddStatus(Text(u"Stop Listenning on Socket ").append(kDefaultPortText));
}

void CommunicationModes::StartSocketServer() {
  if (oSocketTransport.Start()) return;
  oWindow.ShowMessage(u"Unable to start the Socket Server on Port " +
                      ToText(std::int64_t{oSettings.lSocketPort}));
  oSettings.bSocketServer = false;
}

void CommunicationModes::ApplyFolderWatch() {
  const bool wasRunning = oFolderTransport.IsRunning();
  if (oSettings.bFolderWatch) {
    if (!wasRunning && !oFolderTransport.Start()) RefuseFolder();
    return;
  }
  oFolderTransport.Stop();
  if (wasRunning) oTrace.AddStatus(u"Stop Watching Folder: " + oFolderTransport.Folder());
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
