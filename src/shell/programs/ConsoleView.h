// The main window of a program that has none: status lines go to standard output as they are added,
// message boxes to standard error; nobody waits for whoever reads them. Menus and captions show
// nowhere.
#pragma once

#include "platform/Console.h"
#include "platform/MainWindow.h"
#include "shell/programs/ConsoleLines.h"

namespace ostrel {

class ConsoleView : public platform::MainWindow {
 public:
  void InsertStatusLine(int index, TextView line) override;
  void RemoveStatusLine(int) override {}
  void FitStatusList() override {}
  void SetCaption(TextView) override {}
  void SetMenuChecked(platform::MenuId, bool) override {}
  void SetMenuEnabled(platform::MenuId, bool) override {}
  void SetMenuVisible(platform::MenuId, bool) override {}
  void ShowMessage(TextView text) override;

 private:
  ConsoleLines oOutput{platform::WriteStandardOutput};
  ConsoleLines oErrors{platform::WriteStandardError};
};

/// The text as one line: what would break it or command a terminal becomes a blank.
Text ConsoleLine(TextView text);

}  // namespace ostrel
