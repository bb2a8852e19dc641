#include "shell/commands/SettingsEditor.h"

#include <utility>

#include "util/RunTimeError.h"

namespace ostrel {
namespace {

constexpr std::int32_t kLimitInSeconds = 5000;
constexpr std::int16_t kNormalWithFocus = 1;
constexpr TextView kReloadWaits = u"The settings are read when the request in work has ended";

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
  if (const auto pass = oGate.TryEnter()) {
    oHandler.CloseQuickBooks();
    bReloadDue = false;
  } else {
    if (!std::exchange(bReloadDue, true)) oTrace.AddStatus(kReloadWaits);
    return;
  }
  try {
    oSettingsFile.LoadSettings();
  } catch (const RunTimeError& error) {
    oWindow.ShowMessage(u"The settings file has a value that cannot be used: " + error.Description +
                        u"\r\n\r\nThe settings after it stay as they were.");
  }
}

}  // namespace ostrel
