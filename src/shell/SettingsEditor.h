// The settings file in an editor: when that has been closed, the settings are read again.
#pragma once

#include "gateway/RequestGate.h"
#include "gateway/RequestHandler.h"
#include "gateway/Trace.h"
#include "platform/MainWindow.h"
#include "shell/AppSettings.h"
#include "shell/SettingsFile.h"
#include "shell/modShellandWait.h"

namespace ostrel {

class SettingsEditor {
 public:
  SettingsEditor(const AppSettings& settings, SettingsFile& settingsFile, RequestGate& gate,
                 RequestHandler& handler, platform::MainWindow& window, Trace& trace,
                 modShellandWait::Surroundings surroundings);

  /// The menu item "Settings": returns when the editor was closed. Transports stay as they are.
  void mnuToolsSettings_Click();

 private:
  void Reload();

  const AppSettings& oSettings;
  SettingsFile& oSettingsFile;
  RequestGate& oGate;
  RequestHandler& oHandler;
  platform::MainWindow& oWindow;
  Trace& oTrace;
  modShellandWait::Surroundings oSurroundings;
};

}  // namespace ostrel
