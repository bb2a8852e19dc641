// Keeps every trace in memory, in the order in which it was left.
#pragma once

#include <algorithm>
#include <vector>

#include "gateway/Trace.h"

namespace ostrel::doubles {

class FakeTrace : public Trace {
 public:
  std::vector<Text> Status;
  std::vector<Text> CommLog;  // only while bCommLog is set
  std::vector<Text> HistoryFiles;
  std::vector<Text> StatusFiles;
  bool bCommLog = true;
  Text sHistoryHeader = u"Version: 1.0.0\u00FE";

  bool HasStatus(TextView line) const {
    return std::find(Status.begin(), Status.end(), line) != Status.end();
  }

  void AddStatus(TextView text) override { Status.emplace_back(text); }
  bool CommLogEnabled() const override { return bCommLog; }
  void WriteCommLog(TextView text) override {
    if (bCommLog) CommLog.emplace_back(text);
  }
  Text HistoryHeader() const override { return sHistoryHeader; }
  void WriteHistoryFile(TextView text) override { HistoryFiles.emplace_back(text); }
  void WriteStatusFile(TextView text) override { StatusFiles.emplace_back(text); }
};

}  // namespace ostrel::doubles
