// The settings file in an editor: when that has been closed, the settings are read again.
#pragma once

#include "gateway/RequestGate.h"
#include "gateway/RequestHandler.h"
#include "gateway/Trace.h"
#include "platform/MainWindow.h"
#include "shell/commands/modShellandWait.h"
#include "shell/settings/AppSettings.h"
#include "shell/settings/SettingsFile.h"

namespace ostrel {

class SettingsEditor {
 public:
  SettingsEditor(const AppSettings& settings, SettingsFile& settingsFile, RequestGate& gate,
                 RequestHandler& handler, platform::MainWindow& window, Trace& trace,
                 modShellandWait::Surroundings surroundings);

  /// The menu item "Settings": returns when the editor was closed and the settings have been read,
  /// or are to be read as soon as the request in work has ended. Transports stay as they are.
  void mnuToolsSettings_Click();

  /// Whether an edited file still waits to be read.
  bool IsReloadDue() const { return bReloadDue; }
  /// Closes the session and reads the settings; while a request is in work they stay due.
  void Reload();

 private:
  const AppSettings& oSettings;
  SettingsFile& oSettingsFile;
  RequestGate& oGate;
  RequestHandler& oHandler;
  platform::MainWindow& oWindow;
  Trace& oTrace;
  modShellandWait::Surroundings oSurroundings;
  bool bReloadDue = false;
};

}  // namespace ostrel
