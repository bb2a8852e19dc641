#include "platform/Processes.h"

#include <windows.h>
#include <shellapi.h>

#include <map>
#include <memory>
#include <string>

#include "platform/ApplicationWindow.h"
#include "platform/win32/AutomationObject.h"
#include "platform/win32/Path.h"
#include "platform/win32/SystemHandles.h"

namespace ostrel::platform {
namespace {

constexpr DWORD kStillRuns = 259;  // in place of an exit code

class SystemProcesses : public Processes {
 public:
  ProcessId StartProgram(TextView command, std::int16_t windowStyle) override;
  bool OpenDocument(TextView file, TextView verb, std::int32_t showCommand) override;
  bool HasEnded(ProcessId process) override;

 private:
  /// As long as this handle is held, the system gives the number to no other process.
  std::map<ProcessId, UniqueHandle> oStarted;
};

ProcessId SystemProcesses::StartProgram(TextView command, std::int16_t windowStyle) {
  std::wstring commandLine = ToWide(command);  // the system writes into it
  STARTUPINFOW start{};
  start.cb = sizeof start;
  start.dwFlags = STARTF_USESHOWWINDOW;
  start.wShowWindow = static_cast<WORD>(windowStyle);
  PROCESS_INFORMATION process{};
  if (!CreateProcessW(nullptr, commandLine.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr,
                      &start, &process)) {
    return 0;
  }
  const UniqueHandle thread(process.hThread);
  oStarted[process.dwProcessId].reset(process.hProcess);
  return process.dwProcessId;
}

bool SystemProcesses::OpenDocument(TextView file, TextView verb, std::int32_t showCommand) {
  const Apartment apartment;  // the shell's extensions expect one
  const std::wstring verbText = ToWide(verb);
  const HINSTANCE result = ShellExecuteW(nullptr, verbText.empty() ? nullptr : verbText.c_str(),
                                         ToWide(file).c_str(), nullptr, nullptr, showCommand);
  constexpr INT_PTR lastError = 32;
  return reinterpret_cast<INT_PTR>(result) > lastError;
}

bool SystemProcesses::HasEnded(ProcessId process) {
  const UniqueHandle opened(OpenProcess(PROCESS_QUERY_INFORMATION, FALSE, process));
  DWORD exitCode = 0;
  const bool runs = opened && GetExitCodeProcess(opened.get(), &exitCode) && exitCode == kStillRuns;
  if (!runs) oStarted.erase(process);
  return !runs;
}

}  // namespace

std::unique_ptr<Processes> MakeProcesses() { return std::make_unique<SystemProcesses>(); }

}  // namespace ostrel::platform
