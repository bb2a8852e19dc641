// The company file of the settings: choose it, and start QuickBooks with it.
#pragma once

#include "gateway/Trace.h"
#include "platform/Dialogs.h"
#include "platform/MainWindow.h"
#include "platform/Processes.h"
#include "shell/settings/AppSettings.h"
#include "shell/settings/SettingsFile.h"

namespace ostrel {

class DefaultCompanyFile {
 public:
  DefaultCompanyFile(AppSettings& settings, SettingsFile& settingsFile,
                     platform::MainWindow& window, platform::Dialogs& dialogs,
                     platform::Processes& processes, Trace& trace);

  /// The menu item "Default Quickbooks Database": the file chosen goes to the settings and to the
  /// settings file.
  void mnuToolsQBFile_Click();
  /// The menu item "Start Quickbooks".
  void mnuToolsStartQB_Click();

 private:
  AppSettings& oSettings;
  SettingsFile& oSettingsFile;
  platform::MainWindow& oWindow;
  platform::Dialogs& oDialogs;
  platform::Processes& oProcesses;
  Trace& oTrace;
};

}  // namespace ostrel
