// A main window that remembers what it was told to show.
#pragma once

#include <deque>
#include <functional>
#include <map>
#include <vector>

#include "platform/MainWindow.h"

namespace ostrel::doubles {

class FakeWindow : public platform::MainWindow {
 public:
  std::deque<Text> Status;                                     // the top line first
  std::map<platform::MenuId, bool> Checked, Enabled, Visible;  // what was never set is not in it
  std::vector<Text> Messages;
  Text sCaption;
  int iFits = 0;
  /// Runs while a message box is open.
  std::function<void()> DuringMessage;
  /// Runs when a check mark is set.
  std::function<void()> DuringMenuChecked;

  void InsertStatusLine(int index, TextView line) override {
    Status.insert(Status.begin() + index, Text(line));
  }
  void RemoveStatusLine(int index) override { Status.erase(Status.begin() + index); }
  void FitStatusList() override { ++iFits; }
  void SetCaption(TextView caption) override { sCaption = caption; }
  void SetMenuChecked(platform::MenuId item, bool checked) override {
    Checked[item] = checked;
    if (DuringMenuChecked) DuringMenuChecked();
  }
  void SetMenuEnabled(platform::MenuId item, bool enabled) override { Enabled[item] = enabled; }
  void SetMenuVisible(platform::MenuId item, bool visible) override { Visible[item] = visible; }
  void ShowMessage(TextView text) override {
    Messages.emplace_back(text);
    if (DuringMessage) DuringMessage();
  }
};

}  // namespace ostrel::doubles
