// The error dialog: one window, made when it is first used, that shows a long text people may have
// to pass on to support. Not modal. Set caption and text, then show it.
#pragma once

#include <functional>
#include <memory>

#include "gateway/Trace.h"
#include "platform/Dialogs.h"
#include "platform/MainWindow.h"
#include "platform/TextForm.h"
#include "util/Text.h"

namespace ostrel {

class frmError {
 public:
  /// A longer text is cut, with a line that says so: a text box cannot take any length.
  static constexpr std::size_t kMostCharacters = std::size_t{4} << 20;

  /// supportReport: what stands in front of the text on the clipboard.
  frmError(platform::TextFormFactory createForm, platform::Dialogs& dialogs,
           platform::MainWindow& window, Trace& trace, std::function<Text()> supportReport);
  frmError(const frmError&) = delete;
  frmError& operator=(const frmError&) = delete;

  /// "Error" until it is set.
  void Caption(TextView caption);
  /// Lines end with CR LF.
  void txtError(TextView text);
  void Show();
  void Unload();

  /// The button "Copy": support report and text to the clipboard.
  void cmdClipboard_Click();
  /// The button "OK".
  void cmdOk_Click();

 private:
  platform::TextForm& Form();
  void ButtonClick(platform::ButtonId button);

  platform::TextFormFactory CreateForm;
  platform::Dialogs& oDialogs;
  platform::MainWindow& oWindow;
  Trace& oTrace;
  std::function<Text()> SupportReport;
  std::unique_ptr<platform::TextForm> oForm;
  Text sText;
};

}  // namespace ostrel
