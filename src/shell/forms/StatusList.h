// The status list on the main window: newest line first, the newest 100 kept.
#pragma once

#include "platform/MainWindow.h"
#include "util/Text.h"

namespace ostrel {

class StatusList {
 public:
  static constexpr int kLines = 100;

  explicit StatusList(platform::MainWindow& window) : oWindow(window) {}

  void Add(TextView line) {
    oWindow.InsertStatusLine(0, line);
    if (++iCount <= kLines) return;
    oWindow.RemoveStatusLine(kLines);
    --iCount;
  }

 private:
  platform::MainWindow& oWindow;
  int iCount = 0;
};

}  // namespace ostrel
