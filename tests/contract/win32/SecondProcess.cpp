#include "tests/contract/SecondProcess.h"

#include <windows.h>

#include <utility>

namespace ostrel {

SecondProcess::SecondProcess(const std::string& test, const std::string& name,
                             const std::string& value) {
  SetEnvironmentVariableA(name.c_str(), value.c_str());
  wchar_t program[MAX_PATH];
  GetModuleFileNameW(nullptr, program, MAX_PATH);
  std::wstring line = L"contract --gtest_brief=1 --gtest_output= --gtest_filter=" +
                      std::wstring(test.begin(), test.end());
  STARTUPINFOW startup{};
  startup.cb = sizeof startup;
  PROCESS_INFORMATION started{};
  if (CreateProcessW(program, line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup,
                     &started)) {
    CloseHandle(started.hThread);
    process = reinterpret_cast<std::intptr_t>(started.hProcess);
  }
  SetEnvironmentVariableA(name.c_str(), nullptr);
}

SecondProcess::~SecondProcess() { Passed(); }

bool SecondProcess::Passed() {
  DWORD code = 1;
  if (const auto ended = reinterpret_cast<HANDLE>(std::exchange(process, 0))) {
    WaitForSingleObject(ended, INFINITE);
    passed = GetExitCodeProcess(ended, &code) && code == 0;
    CloseHandle(ended);
  }
  return passed;
}

}  // namespace ostrel
