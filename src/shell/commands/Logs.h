// The traces of the gateway's work: status list, communication log, history files and status
// file. Each file is opened and closed within one call, so that others can read it at any
// time.
#pragma once

#include <cstdint>
#include <functional>

#include "gateway/HistoryFiles.h"
#include "gateway/Trace.h"
#include "platform/Clock.h"
#include "platform/MainWindow.h"
#include "shell/settings/AppSettings.h"
#include "util/Text.h"
#include "util/cFileIO.h"

namespace ostrel {

/// The status list on the main window: newest line first, the newest 100 kept.
class StatusList {
 public:
  static constexpr int kLines = 100;

  explicit StatusList(platform::MainWindow& window) : oWindow(window) {}

  void Add(TextView line) {
    oWindow.InsertStatusLine(0, line);
    if (++iCount <= kLines) return;
    oWindow.RemoveStatusLine(kLines);
    --iCount;
  }

 private:
  platform::MainWindow& oWindow;
  int iCount = 0;
};

class Logs : public Trace {
 public:
  Logs(AppSettings& settings, platform::MainWindow& window, const platform::Clock& clock);

  void AddStatus(TextView text) override;
  bool CommLogEnabled() const override { return bCommLog; }
  /// A line that cannot be written is left out; the status list says so once, and again only after
  /// a line could be written in between.
  void WriteCommLog(TextView text) override;
  Text HistoryHeader() const override;
  void WriteHistoryFile(TextView text) override;
  void WriteStatusFile(TextView text) override;

  /// Index of the connection whose request is in work; below 1: none, or a request file.
  std::function<std::int16_t()> ActiveSocket = [] { return std::int16_t{0}; };

  /// The menu item "Log Communication"; the switch is off at every start.
  void mnuToolsCommLog_Click();

 private:
  bool AppendToCommLog(TextView text);
  void TellCommLogFailure() noexcept;
  bool OpenToWrite(cFileIO& file, bool& isLinkTold);
  void TellOfLink(const cFileIO& file, bool& isLinkTold);
  Text Now() const;

  AppSettings& oSettings;
  platform::MainWindow& oWindow;
  const platform::Clock& oClock;
  StatusList lstStatus;
  HistoryFiles oHistoryFiles;
  bool bCommLog = false;
  bool bCommLogFails = false;
  bool bHistoryLinkTold = false;
  bool bStatusLinkTold = false;
};

}  // namespace ostrel
