// Other programs under a test's control.
#pragma once

#include <vector>

#include "platform/Processes.h"

namespace ostrel::doubles {

class FakeProcesses : public platform::Processes {
 public:
  struct Program {
    Text sCommand;
    std::int16_t iWindowStyle;
  };
  struct Document {
    Text sFile, sVerb;
    std::int32_t iShowCommand;
  };
  std::vector<Program> Programs;
  std::vector<Document> Documents;
  bool bCanStart = true;
  bool bEnded = false;

  platform::ProcessId StartProgram(TextView command, std::int16_t windowStyle) override {
    Programs.push_back({Text(command), windowStyle});
    return bCanStart ? kProcess : 0;
  }
  bool OpenDocument(TextView file, TextView verb, std::int32_t showCommand) override {
    Documents.push_back({Text(file), Text(verb), showCommand});
    return bCanStart;
  }
  bool HasEnded(platform::ProcessId process) override { return process != kProcess || bEnded; }

 private:
  static constexpr platform::ProcessId kProcess = 4711;
};

}  // namespace ostrel::doubles
