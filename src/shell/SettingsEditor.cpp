#include "shell/SettingsEditor.h"

#include <utility>

#include "shell/RequestInWork.h"
#include "util/RunTimeError.h"

namespace ostrel {
namespace {

constexpr std::int32_t kLimitInSeconds = 5000;
constexpr std::int16_t kNormalWithFocus = 1;

}  // namespace

SettingsEditor::SettingsEditor(const AppSettings& settings, SettingsFile& settingsFile,
                               RequestGate& gate, RequestHandler& handler,
                               platform::MainWindow& window, Trace& trace,
                               modShellandWait::Surroundings surroundings)
    : oSettings(settings),
      oSettingsFile(settingsFile),
      oGate(gate),
      oHandler(handler),
      oWindow(window),
      oTrace(trace),
      oSurroundings(std::move(surroundings)) {}

void SettingsEditor::mnuToolsSettings_Click() {
  const Text command = u"notepad.exe " + oSettings.sIniFile;
  if (modShellandWait::ShellAndWait(oSurroundings, command, kLimitInSeconds, kNormalWithFocus,
                                    u"open")) {
    Reload();
  }
}

void SettingsEditor::Reload() {
  {
    const auto pass = EnterOrTell(oGate, oTrace);
    if (!pass) return;
    oHandler.CloseQuickBooks();
  }
  try {
    oSettingsFile.LoadSettings();
  } catch (const RunTimeError& error) {
    oWindow.ShowMessage(u"The settings file has a value that cannot be used: " + error.Description +
                        u"\r\n\r\nThe settings after it stay as they were.");
  }
}

}  // namespace ostrel
