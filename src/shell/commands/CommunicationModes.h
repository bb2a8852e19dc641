// Which transport runs: turns the settings into running transports and check marks in the menu. The
// only place, beside the shut-down, where a transport is started or stopped.
#pragma once

#include <cstdint>

#include "gateway/Trace.h"
#include "platform/MainWindow.h"
#include "shell/settings/AppSettings.h"
#include "shell/settings/SettingsFile.h"
#include "transports/FolderTransport.h"
#include "transports/SocketTransport.h"

namespace ostrel {

class CommunicationModes {
 public:
  CommunicationModes(AppSettings& settings, SettingsFile& settingsFile,
                     platform::MainWindow& window, Trace& trace, SocketTransport& socketTransport,
                     FolderTransport& folderTransport);
  CommunicationModes(const CommunicationModes&) = delete;
  CommunicationModes& operator=(const CommunicationModes&) = delete;

  /// Called again from an event that comes meanwhile, it runs once more when it has ended. Raises
  /// RunTimeError 75 when a folder to be watched or written to cannot be created.
  void ApplyCommunications();
  /// While this is so, the socket server must not be taken down.
  bool IsApplying() const { return bApplying; }

  /// Whether a transport runs or is about to.
  bool IsServing() const;

  /// The menu items: change the setting, apply it, write the flavour to the settings file.
  void ChooseFlavour(std::int32_t commType);
  void mnuCommunicationsFolder_Click();
  void mnuCommunicationsSocket_Click();

  /// The shut-down: no connection and no request is taken any more; what is being sent goes on.
  void TakeNoMore();
  /// The shut-down: stops the transports without a word.
  void StopTransports();

 private:
  void Apply();
  void SetFlavour();
  void LogTransports();
  void ApplySocketServer();
  void StartSocketServer();
  void ApplyFolderWatch();
  void RefuseFolder();  // one for requests and responses
  void MarkTransports();
  void WriteFlavour();

  AppSettings& oSettings;
  SettingsFile& oSettingsFile;
  platform::MainWindow& oWindow;
  Trace& oTrace;
  SocketTransport& oSocketTransport;
  FolderTransport& oFolderTransport;
  bool bApplying = false;
  bool bApplyAgain = false;
};

}  // namespace ostrel
