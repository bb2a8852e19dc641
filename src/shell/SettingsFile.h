// The settings file: fills the settings record from it, and writes single keys back when a menu
// command changes one. There is no writing of all settings, and none creates the file.
#pragma once

#include <functional>

#include "gateway/Trace.h"
#include "platform/MainWindow.h"
#include "shell/AppSettings.h"
#include "util/Text.h"

namespace ostrel {

class SettingsFile {
 public:
  /// programFolder: what "%AppPath%" stands for. unload: unloads the main window, since without
  /// the file the program cannot go on.
  SettingsFile(AppSettings& settings, platform::MainWindow& window, Trace& trace,
               Text programFolder, std::function<void()> unload);

  /// Reads every key; a missing one takes its default, and without the file all of them do, after
  /// the message and the unload. A transport that is on stays on, whatever the file says now (kept:
  /// required). Raises RunTimeError with the key and its value for what is not a number or does not
  /// fit; the keys after it keep their earlier values.
  void LoadSettings();

  /// The menu item "Log History".
  void mnuToolsHist_Click();

  /// Writes one key. A file that cannot be written is not reported.
  void Write(TextView section, TextView item, TextView value);

 private:
  struct Key;

  void RequireFile();
  void Read(const Key& key);
  Text Value(const Key& key) const;
  Text Expanded(TextView path) const;
  void HistoryRead();
  void CreateLogFolders();
  void CreateFolder(const Text& path);
  void CheckBlockSize();

  AppSettings& oSettings;
  platform::MainWindow& oWindow;
  Trace& oTrace;
  Text sProgramFolder;
  std::function<void()> Unload;
};

}  // namespace ostrel
