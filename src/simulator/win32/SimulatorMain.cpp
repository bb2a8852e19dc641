// OstrelSimulator.exe: the QuickBooks stand-in as a COM server of its own. COM starts it with
// -Embedding; people register it once.
#include <windows.h>

#include <exception>
#include <string>

#include "platform/Console.h"
#include "platform/SystemError.h"
#include "platform/win32/AutomationObject.h"
#include "platform/win32/Path.h"
#include "quickbooks/win32/ComRequestProcessor.h"
#include "simulator/win32/ComServer.h"
#include "simulator/win32/InterfaceLibrary.h"
#include "simulator/win32/Registration.h"
#include "simulator/win32/StopWindow.h"

namespace ostrel::simulator {
namespace {

constexpr int kUsageError = 64;
constexpr TextView kHelp =
    u"Usage: OstrelSimulator /regserver | /unregserver | /stop\n"
    u"\n"
    u"A stand-in for QuickBooks, for machines without it. Once registered, it serves the "
    u"programs\n"
    u"that use QuickBooks' request processor, from company files that are XML. sample.qbw beside\n"
    u"it is the company that is open when a program names none.\n"
    u"\n"
    u"  /regserver    registers it for the current user; refuses where QuickBooks is installed\n"
    u"  /unregserver  takes that back\n"
    u"  /stop         ends the running one at once, as if QuickBooks had crashed\n";

std::wstring ProgramPath() {
  std::wstring path(MAX_PATH, L'\0');
  for (;;) {
    const auto size = static_cast<DWORD>(path.size());
    const DWORD length = GetModuleFileNameW(nullptr, path.data(), size);
    if (length < size) return path.substr(0, length);
    path.resize(path.size() * 2);
  }
}

std::wstring LibraryPath(const std::wstring& program) {
  return program.substr(0, program.rfind(L'.')) + L".tlb";
}

RegistrationResult Register() {
  const platform::Apartment apartment;
  const std::wstring program = ProgramPath();
  RegistrationResult result = RegisterServer(kRequestProcessorClass, program);
  if (result.iExitCode != RegistrationResult::kDone) return result;
  const HRESULT library = RegisterInterfaceLibrary(LibraryPath(program));
  if (SUCCEEDED(library)) return result;
  UnregisterServer(kRequestProcessorClass, program);
  return {RegistrationResult::kFailed,
          u"The type library " + platform::FromWide(LibraryPath(program)) +
              u" was not registered: " + platform::SystemErrorText(library)};
}

RegistrationResult Unregister() {
  const platform::Apartment apartment;
  const std::wstring program = ProgramPath();
  UnregisterInterfaceLibrary(LibraryPath(program));
  return UnregisterServer(kRequestProcessorClass, program);
}

RegistrationResult Stop() {
  if (StopServers()) return {.sMessage = u"No stand-in is running."};
  return {RegistrationResult::kFailed, u"The running stand-in does not stop."};
}

// A program with windows has no console of its own; the one that it was started from will do.
void FindConsole() {
  if (GetStdHandle(STD_ERROR_HANDLE) == nullptr) AttachConsole(ATTACH_PARENT_PROCESS);
}

int Tell(const RegistrationResult& result) {
  const auto write = result.iExitCode == RegistrationResult::kDone ? platform::WriteStandardOutput
                                                                   : platform::WriteStandardError;
  write(result.sMessage + u"\n");
  return result.iExitCode;
}

int Main(const Text& argument) {
  if (argument == u"embedding") return ServeClients();
  FindConsole();
  if (argument == u"regserver") return Tell(Register());
  if (argument == u"unregserver") return Tell(Unregister());
  if (argument == u"stop") return Tell(Stop());
  platform::WriteStandardError(kHelp);
  return kUsageError;
}

// Without the "/" or "-", in small letters; empty unless there is exactly one.
Text OnlyArgument() {
  const auto arguments = platform::ProgramArguments(0, nullptr);
  if (arguments.size() != 1 || arguments[0].empty()) return {};
  const bool isSwitch = arguments[0][0] == u'/' || arguments[0][0] == u'-';
  return isSwitch ? LowerCase(arguments[0].substr(1)) : Text();
}

}  // namespace
}  // namespace ostrel::simulator

int WINAPI WinMain(HINSTANCE, HINSTANCE, LPSTR, int) {
  try {
    return ostrel::simulator::Main(ostrel::simulator::OnlyArgument());
  } catch (const std::exception& error) {
    ostrel::platform::WriteStandardError(ostrel::FromUtf8(error.what()) + u"\n");
    return ostrel::simulator::RegistrationResult::kFailed;
  }
}
