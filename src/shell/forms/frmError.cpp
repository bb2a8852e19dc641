#include "shell/forms/frmError.h"

#include <utility>

#include "gateway/Guarded.h"

namespace ostrel {
namespace {

constexpr platform::ButtonId kClipboard = 1, kOk = 2;

}  // namespace

frmError::frmError(platform::TextFormFactory createForm, platform::Dialogs& dialogs,
                   platform::MainWindow& window, Trace& trace, std::function<Text()> supportReport)
    : CreateForm(std::move(createForm)),
      oDialogs(dialogs),
      oWindow(window),
      oTrace(trace),
      SupportReport(std::move(supportReport)) {}

void frmError::Caption(TextView caption) { Form().SetCaption(caption); }

void frmError::txtError(TextView text) {
  sText = text.substr(0, kMostCharacters);
  if (text.size() > kMostCharacters) sText.append(u"\r\n(The rest is not shown.)");
  Form().SetText(sText);
}

void frmError::Show() { Form().Show(); }

void frmError::Unload() {
  if (oForm != nullptr) oForm->Close();
}

void frmError::cmdClipboard_Click() {
  if (oDialogs.CopyToClipboard(SupportReport() + Text(kCrLf) + sText)) return;
  oWindow.ShowMessage(
      u"The report could not be copied: another program is using the clipboard. Please try again.");
}

void frmError::cmdOk_Click() { Unload(); }

platform::TextForm& frmError::Form() {
  if (oForm != nullptr) return *oForm;
  oForm = CreateForm({.look = platform::TextFormDescription::Look::kReport,
                      .caption = u"Error",
                      .buttons = {{kClipboard, u"Copy"}, {kOk, u"OK"}},
                      .closeButton = kOk});
  oForm->ButtonClick = [this](platform::ButtonId button) {
    Guarded(oTrace, u"frmError", [&] { ButtonClick(button); });
  };
  return *oForm;
}

void frmError::ButtonClick(platform::ButtonId button) {
  if (button == kClipboard) cmdClipboard_Click();
  if (button == kOk) cmdOk_Click();
}

}  // namespace ostrel
