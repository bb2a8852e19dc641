// The main window's contents as the main form sees them: the form decides what stands where, a
// window shows it. The frame around them is platform/WindowFrame.h.
#pragma once

#include "util/Text.h"

namespace ostrel::platform {

/// Names one menu item; the numbers are the form's.
using MenuId = int;

class MainWindow {
 public:
  virtual ~MainWindow() = default;

  /// The status list: index 0 is the top line.
  virtual void InsertStatusLine(int index, TextView line) = 0;
  virtual void RemoveStatusLine(int index) = 0;

  /// Fits the status list, above the notice, to the window's inner size.
  virtual void FitStatusList() = 0;

  virtual void SetCaption(TextView caption) = 0;
  virtual void SetMenuChecked(MenuId item, bool checked) = 0;
  virtual void SetMenuEnabled(MenuId item, bool enabled) = 0;
  virtual void SetMenuVisible(MenuId item, bool visible) = 0;

  /// A message box with an OK button and the application's title; returns when it was answered.
  virtual void ShowMessage(TextView text) = 0;
};

}  // namespace ostrel::platform
