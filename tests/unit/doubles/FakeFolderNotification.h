// A folder whose changes a test tells. Its waits take no time: each hands out the next prepared
// step, and a wait without one ends as at the end of the program, so that no test can hang.
#pragma once

#include <deque>
#include <functional>
#include <vector>

#include "platform/FileSystem.h"
#include "platform/FolderNotification.h"
#include "platform/SystemError.h"

namespace ostrel::doubles {

class FakeFolderNotification : public platform::FolderNotification {
 public:
  struct Step {
    WaitResult result = WaitResult::kTimePassed;
    /// Runs inside the wait, as an event does that the wait dispatches.
    std::function<void()> during;
  };
  std::deque<Step> Steps;
  /// Answers of Open and Rearm; 0 when there is none left.
  std::deque<int> OpenErrors, RearmErrors;

  std::vector<Text> Opened;  // every folder that was asked for
  std::vector<std::chrono::milliseconds> Waits;
  int iRearmed = 0;
  int iClosed = 0;  // while it was open
  int iLooks = 0;   // at the folder itself

  int Open(TextView folder) override {
    Opened.emplace_back(folder);
    const int error = Next(OpenErrors);
    bOpen = bOpen || error == 0;
    return error;
  }
  void Close() override {
    iClosed += bOpen ? 1 : 0;
    bOpen = false;
  }
  bool IsOpen() const override { return bOpen; }

  WaitResult WaitWithEvents(std::chrono::milliseconds time) override {
    Waits.push_back(time);
    if (!bOpen) return WaitResult::kClosed;
    if (Steps.empty()) return WaitResult::kLoopQuits;
    const Step step = std::move(Steps.front());
    Steps.pop_front();
    if (step.during) step.during();
    return bOpen ? step.result : WaitResult::kClosed;
  }
  int Rearm() override {
    ++iRearmed;
    return bOpen ? Next(RearmErrors) : platform::kInvalidHandle;
  }
  bool LookAtFolder() override {
    ++iLooks;
    return platform::FolderExists(Opened.back());
  }

 private:
  static int Next(std::deque<int>& errors) {
    if (errors.empty()) return 0;
    const int error = errors.front();
    errors.pop_front();
    return error;
  }

  bool bOpen = false;
};

}  // namespace ostrel::doubles
