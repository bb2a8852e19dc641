#include "shell/commands/Logs.h"

#include <array>
#include <exception>

#include "platform/SystemError.h"
#include "shell/forms/Menus.h"
#include "shell/forms/Version.h"
#include "util/Wire.h"
#include "util/cFileIO.h"

namespace ostrel {
namespace {

// The settings in force, with which the communication log and the history files open.
std::array<Text, 4> Circumstances(const AppSettings& settings) {
  return {u"Version: " + ProgramVersion(),
          u"Communication Type:" + ToText(std::int64_t{settings.lCommType}),
          u"Socket:" + BooleanWord(settings.bSocketServer),
          u"Folder:" + BooleanWord(settings.bFolderWatch)};
}

}  // namespace

Logs::Logs(AppSettings& settings, platform::MainWindow& window, const platform::Clock& clock)
    : oSettings(settings), oWindow(window), oClock(clock), lstStatus(window) {}

void Logs::AddStatus(TextView text) {
  lstStatus.Add(text);
  if (!bCommLog) return;
  const std::int64_t socket = ActiveSocket();
  Text line = socket < 1 ? Text(u"Watch Folder") : u"Socket " + ToText(socket);
  WriteCommLog(line.append(u"\tQBXML Status: ").append(text));
}

void Logs::WriteCommLog(TextView text) {
  if (!bCommLog) return;
  try {
    if (AppendToCommLog(text)) {
      bCommLogFails = false;
      return;
    }
  } catch (const std::exception&) {
    // No memory for the line: told as any other failure to write it.
  }
  TellCommLogFailure();
}

bool Logs::AppendToCommLog(TextView text) {
  cFileIO& file = oSettings.oCommLog;
  file.RefuseLinks = true;
  file.SafeOnDisk = false;
  if (!file.OpenFile({}, u"W")) return false;
  if (!file.SetCursorToEnd()) return false;
  const std::int64_t end = file.CurrentPos();
  file.PrintLine((Now() + u"\t").append(text));
  Text message;
  std::int32_t number = 0;
  const bool failed = file.ReadErrorHandler(message, number);
  // The file ends at the cursor: half a line on a full disk goes again.
  if (failed) file.SetCursorPos(end);
  file.CloseFile();
  return !failed;
}

void Logs::TellCommLogFailure() noexcept {
  if (bCommLogFails) return;
  bCommLogFails = true;
  try {
    lstStatus.Add(u"Unable to write the communication log: " + oSettings.oCommLog.FullFileName());
  } catch (const std::exception&) {
    // No memory for the line: the log stays silent.
  }
}

Text Logs::HistoryHeader() const {
  Text header;
  for (const Text& line : Circumstances(oSettings)) header.append(line).push_back(kAttributeMark);
  header.append(60, u'=').push_back(kAttributeMark);
  return header;
}

void Logs::WriteHistoryFile(TextView text) {
  if (!oSettings.bHistory) return;
  // Kept: the name is not in the line; people know the line like this.
  AddStatus(u"Creating Log File: ");
  Text content = HistoryHeader().append(text);
  cFileIO file;
  if (!oHistoryFiles.Open(file, oSettings, Now())) return TellOfLink(file, bHistoryLinkTold);
  file.WriteData(content, -1, u"A");
  file.CloseFile();
}

void Logs::WriteStatusFile(TextView text) {
  cFileIO file;
  file.FullFileName(oSettings.sStatusPath + u"\\status.txt");
  file.SafeOnDisk = false;
  if (!OpenToWrite(file, bStatusLinkTold)) return;
  file.PrintLine(Now());
  file.PrintLine(text);
  file.CloseFile();
}

bool Logs::OpenToWrite(cFileIO& file, bool& isLinkTold) {
  file.RefuseLinks = true;
  if (file.OpenFile({}, u"W")) return true;
  TellOfLink(file, isLinkTold);
  return false;
}

// Kept: what cannot be opened is skipped without a word. A link is told of once.
void Logs::TellOfLink(const cFileIO& file, bool& isLinkTold) {
  Text message;
  std::int32_t number = 0;
  file.ReadErrorHandler(message, number);
  if (number != platform::kStoppedOnLink || isLinkTold) return;
  isLinkTold = true;
  lstStatus.Add(u"Not written, since it is a link: " + file.FullFileName());
}

void Logs::mnuToolsCommLog_Click() {
  bCommLog = !bCommLog;
  bCommLogFails = false;
  oWindow.SetMenuChecked(mnuToolsCommLog, bCommLog);
  if (bCommLog) {
    WriteCommLog(u"----> Comm Log enabled <-----");
    for (const Text& line : Circumstances(oSettings)) WriteCommLog(line);
  } else {
    // Kept: reaches no file, for the log is off by now. Readers of the log expect no closing line.
    WriteCommLog(u"----> Comm Log Disabled <-----");
  }
}

Text Logs::Now() const { return oClock.GeneralDate(oClock.Now()); }

}  // namespace ostrel
