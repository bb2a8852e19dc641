#include <windows.h>
#include <psapi.h>
#include <tlhelp32.h>

#include <cwchar>
#include <map>

#include "tests/driver/win32/Commands.h"

namespace ostrel::driver {
namespace {

/// Programs that the driver has started, by process number; held, so that none is given anew.
std::map<DWORD, HANDLE>& Started() {
  static std::map<DWORD, HANDLE> started;
  return started;
}

/// One that somebody else has started, while it is looked at.
class OpenedProcess {
 public:
  OpenedProcess(const std::wstring& field, DWORD access) {
    const auto number = static_cast<DWORD>(NumberOf(field));
    const auto found = Started().find(number);
    isOwn = found != Started().end();
    handle = isOwn ? found->second : OpenProcess(access, FALSE, number);
  }
  ~OpenedProcess() {
    if (!isOwn && handle != nullptr) CloseHandle(handle);
  }
  OpenedProcess(const OpenedProcess&) = delete;
  OpenedProcess& operator=(const OpenedProcess&) = delete;

  HANDLE Get() const { return handle; }

 private:
  HANDLE handle = nullptr;
  bool isOwn = false;
};

/// The streams of started programs: the driver's own are the tests'.
HANDLE Nothing() {
  static const HANDLE nothing = [] {
    SECURITY_ATTRIBUTES inherited{sizeof inherited, nullptr, TRUE};
    return CreateFileW(L"NUL", GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                       &inherited, OPEN_EXISTING, 0, nullptr);
  }();
  return nothing;
}

/// COMMAND FOLDER SHOW: starts it and tells its process. SHOW as ShowWindow takes it; -1: nothing
/// is said about it.
Fields Start(const Fields& arguments) {
  std::wstring command = arguments[0];  // the system writes into it
  const auto show = static_cast<int>(NumberOf(arguments[2]));
  STARTUPINFOW start{};
  start.cb = sizeof start;
  start.dwFlags = STARTF_USESTDHANDLES;
  start.hStdInput = start.hStdOutput = start.hStdError = Nothing();
  if (show >= 0) {
    start.dwFlags |= STARTF_USESHOWWINDOW;
    start.wShowWindow = static_cast<WORD>(show);
  }
  PROCESS_INFORMATION process{};
  if (!CreateProcessW(nullptr, command.data(), nullptr, nullptr, TRUE, 0, nullptr,
                      arguments[1].c_str(), &start, &process)) {
    throw CommandError("not started, error " + std::to_string(GetLastError()));
  }
  CloseHandle(process.hThread);
  Started()[process.dwProcessId] = process.hProcess;
  return {std::to_wstring(process.dwProcessId)};
}

/// PROCESS: its exit code; nothing while it runs.
Fields ExitCode(const Fields& arguments) {
  const OpenedProcess process(arguments[0], PROCESS_QUERY_INFORMATION);
  DWORD code = 0;
  if (process.Get() == nullptr || !GetExitCodeProcess(process.Get(), &code)) {
    throw CommandError("no such process");
  }
  if (code == STILL_ACTIVE) return {};
  return {std::to_wstring(code)};
}

Fields Kill(const Fields& arguments) {
  const OpenedProcess process(arguments[0], PROCESS_TERMINATE);
  if (process.Get() != nullptr) TerminateProcess(process.Get(), 1);
  return {};
}

/// NAME: the processes that run a program of this file name.
Fields Running(const Fields& arguments) {
  Fields processes;
  const HANDLE snapshot = CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0);
  PROCESSENTRY32W entry{};
  entry.dwSize = sizeof entry;
  for (BOOL more = Process32FirstW(snapshot, &entry); more;
       more = Process32NextW(snapshot, &entry)) {
    if (_wcsicmp(entry.szExeFile, arguments[0].c_str()) == 0) {
      processes.push_back(std::to_wstring(entry.th32ProcessID));
    }
  }
  CloseHandle(snapshot);
  return processes;
}

std::size_t ThreadsOf(DWORD process) {
  std::size_t threads = 0;
  const HANDLE snapshot = CreateToolhelp32Snapshot(TH32CS_SNAPTHREAD, 0);
  THREADENTRY32 entry{};
  entry.dwSize = sizeof entry;
  for (BOOL more = Thread32First(snapshot, &entry); more; more = Thread32Next(snapshot, &entry)) {
    threads += entry.th32OwnerProcessID == process ? 1 : 0;
  }
  CloseHandle(snapshot);
  return threads;
}

/// PROCESS: its bytes of memory, handles, GDI objects, window objects and threads.
Fields Resources(const Fields& arguments) {
  const OpenedProcess process(arguments[0], PROCESS_QUERY_INFORMATION | PROCESS_VM_READ);
  PROCESS_MEMORY_COUNTERS memory{};
  DWORD handles = 0;
  GetProcessMemoryInfo(process.Get(), &memory, sizeof memory);
  GetProcessHandleCount(process.Get(), &handles);
  return {std::to_wstring(memory.WorkingSetSize), std::to_wstring(handles),
          std::to_wstring(GetGuiResources(process.Get(), GR_GDIOBJECTS)),
          std::to_wstring(GetGuiResources(process.Get(), GR_USEROBJECTS)),
          std::to_wstring(ThreadsOf(GetProcessId(process.Get())))};
}

constexpr Command kProcessCommands[] = {
    {L"start", 3, Start},     {L"exitcode", 1, ExitCode},   {L"kill", 1, Kill},
    {L"running", 1, Running}, {L"resources", 1, Resources},
};

}  // namespace

std::span<const Command> ProcessCommands() { return kProcessCommands; }

}  // namespace ostrel::driver
