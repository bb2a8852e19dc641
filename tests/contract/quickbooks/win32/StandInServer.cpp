#include "tests/contract/quickbooks/win32/StandInServer.h"

#include <windows.h>

#include "platform/FileSystem.h"
#include "platform/win32/Path.h"

namespace ostrel {

int RunStandIn(TextView argument) {
  constexpr DWORD kLimit = 20'000;
  std::wstring command = platform::ToWide(u"\"" + platform::ProgramFolder() +
                                          u"\\OstrelSimulator.exe\" " + Text(argument));
  STARTUPINFOW startup = {};
  startup.cb = sizeof startup;
  PROCESS_INFORMATION process;
  if (!CreateProcessW(nullptr, command.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr,
                      &startup, &process)) {
    return -1;
  }
  DWORD exitCode = static_cast<DWORD>(-1);
  if (WaitForSingleObject(process.hProcess, kLimit) == WAIT_OBJECT_0) {
    GetExitCodeProcess(process.hProcess, &exitCode);
  }
  CloseHandle(process.hThread);
  CloseHandle(process.hProcess);
  return static_cast<int>(exitCode);
}

}  // namespace ostrel
