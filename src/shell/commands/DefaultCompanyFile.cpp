#include "shell/commands/DefaultCompanyFile.h"

#include <utility>

#include "util/RunTimeError.h"

namespace ostrel {
namespace {

// Kept: the "!" makes one entry of what looks like two (platform::FilterEntries).
constexpr TextView kFilter = u"Quickbooks Database (*.QBW)|*.QBW|All Files!*.*";
constexpr TextView kUsualFolder = u"C:\\Program Files\\Intuit\\QuickBooks\\";
constexpr std::int32_t kAsTheProgramLikes = 0;

}  // namespace

DefaultCompanyFile::DefaultCompanyFile(AppSettings& settings, SettingsFile& settingsFile,
                                       platform::MainWindow& window, platform::Dialogs& dialogs,
                                       platform::Processes& processes, Trace& trace)
    : oSettings(settings),
      oSettingsFile(settingsFile),
      oWindow(window),
      oDialogs(dialogs),
      oProcesses(processes),
      oTrace(trace) {}

void DefaultCompanyFile::mnuToolsQBFile_Click() {
  platform::FileQuestion question{Text(kFilter), oSettings.sQBFileName, {}};
  if (question.sFileName.empty()) question.sFolder = kUsualFolder;
  auto chosen = oDialogs.AskForFile(question);
  if (!chosen) return;
  oSettings.sQBFileName = std::move(*chosen);
  try {
    oSettingsFile.Write(u"Quickbooks", u"FileName", oSettings.sQBFileName);
  } catch (const RunTimeError&) {
    // Kept: what cannot be written back lasts until the next start.
  }
}

void DefaultCompanyFile::mnuToolsStartQB_Click() {
  if (oSettings.sQBFileName.empty()) {
    oWindow.ShowMessage(u"You must assign a default Quickbooks Database.");
  } else if (!oProcesses.OpenDocument(oSettings.sQBFileName, {}, kAsTheProgramLikes)) {
    oTrace.AddStatus(u"Unable to start Quickbooks with " + oSettings.sQBFileName);
  }
}

}  // namespace ostrel
