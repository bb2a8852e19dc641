// The surroundings of the main form in a program without a window: nobody operates it, forms are
// printed on standard error, and there is neither an icon nor another program to start.
#pragma once

#include <memory>

#include "platform/Console.h"
#include "platform/Dialogs.h"
#include "platform/MainWindow.h"
#include "platform/NotifyIcon.h"
#include "platform/Processes.h"
#include "platform/TextForm.h"
#include "platform/WindowFrame.h"
#include "shell/programs/ConsoleLines.h"

namespace ostrel {

/// Status lines go to standard output as they are added, message boxes to standard error; nobody
/// waits for whoever reads them. Menus and captions show nowhere.
class ConsoleView : public platform::MainWindow {
 public:
  void InsertStatusLine(int, TextView line) override { oOutput.Add(ConsoleLine(line)); }
  void RemoveStatusLine(int) override {}
  void FitStatusList() override {}
  void SetCaption(TextView) override {}
  void SetMenuChecked(platform::MenuId, bool) override {}
  void SetMenuEnabled(platform::MenuId, bool) override {}
  void SetMenuVisible(platform::MenuId, bool) override {}
  void ShowMessage(TextView text) override { oErrors.Add(ConsoleLine(text)); }

 private:
  ConsoleLines oOutput{platform::WriteStandardOutput};
  ConsoleLines oErrors{platform::WriteStandardError};
};

class ConsoleFrame : public platform::WindowFrame {
 public:
  void SetMark(TextView) override {}
  void RemoveMark(TextView) override {}
  void Show() override {}
  void Hide() override {}
  platform::WindowState State() const override { return platform::WindowState::kNormal; }
  void SetState(platform::WindowState) override {}
  void BringToFront() override {}
  platform::IconHandle Icon() const override { return 0; }
};

/// Every question is printed and taken as cancelled.
class ConsoleDialogs : public platform::Dialogs {
 public:
  platform::Answer AskYesNoCancel(TextView question) override;
  std::optional<Text> AskText(TextView prompt, TextView offered) override;
  std::optional<Text> AskForFile(const platform::FileQuestion& question) override;
  bool CopyToClipboard(TextView) override { return false; }
};

class ConsoleProcesses : public platform::Processes {
 public:
  platform::ProcessId StartProgram(TextView, std::int16_t) override { return 0; }
  bool OpenDocument(TextView, TextView, std::int32_t) override { return false; }
  bool HasEnded(platform::ProcessId) override { return true; }
};

/// Open for no longer than it takes to print it.
std::unique_ptr<platform::TextForm> MakeConsoleForm(
    const platform::TextFormDescription& description);
std::unique_ptr<platform::NotifyIcon> MakeNoIcon();

struct ConsoleSurroundings {
  ConsoleView oView;
  ConsoleFrame oFrame;
  ConsoleDialogs oDialogs;
  ConsoleProcesses oProcesses;
};

}  // namespace ostrel
