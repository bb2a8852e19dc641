// The settings file: fills the settings record from it, and writes single keys back when a menu
// command changes one. There is no writing of all settings, and none creates the file.
#pragma once

#include <functional>

#include "gateway/Trace.h"
#include "platform/MainWindow.h"
#include "shell/settings/AppSettings.h"
#include "util/Text.h"

namespace ostrel {

class cFileIO;

class SettingsFile {
 public:
  /// programFolder: what "%AppPath%" stands for. unload: unloads the main window, since without
  /// the file the program cannot go on. Every setting has its default from here on; the transports
  /// are off until the file has been read.
  SettingsFile(AppSettings& settings, platform::MainWindow& window, Trace& trace,
               Text programFolder, std::function<void()> unload);

  /// Reads every key; a missing one takes its default, and without the file all of them do, after
  /// the message and the unload. Kept: a transport that is on stays on, whatever the file says now,
  /// since toggling lasts until the next start. Raises RunTimeError with the key and its value for
  /// what is not a number or does not fit, and for a company file name with control characters; the
  /// keys after it keep their earlier values. So do those that cannot be read because another
  /// program has taken the file meanwhile.
  void LoadSettings();

  /// The menu item "Log History".
  void mnuToolsHist_Click();

  /// Writes one key. A file that cannot be written is not reported.
  void Write(TextView section, TextView item, TextView value);

 private:
  struct Key;
  static const Key kKeys[];
  static const Key kHistPath;

  void TakeDefaults();
  bool RequireFile();
  void TellFault(cFileIO& file);
  // False, and told of, when the file cannot be read at this moment.
  bool Read(const Key& key);
  void Take(const Key& key, const Text& value);
  Text Expanded(TextView path) const;
  void BindCommLog();
  void HistoryRead();
  void CreateLogFolders();
  void CreateFolder(const Text& path);
  void CheckPort();
  void CheckBlockSize();

  AppSettings& oSettings;
  platform::MainWindow& oWindow;
  Trace& oTrace;
  Text sProgramFolder;
  std::function<void()> Unload;
};

/// The reason why the text of a settings file cannot be understood; empty when nothing does, as in
/// an empty file.
Text FaultOfSettings(TextView text);

}  // namespace ostrel
