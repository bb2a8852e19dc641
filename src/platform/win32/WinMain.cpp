// Where Windows enters a program that has a window.
#include <windows.h>

#include <exception>

#include "platform/ApplicationWindow.h"
#include "platform/win32/Path.h"

namespace ostrel::platform {
namespace {

/// The command line behind the program's own name, as it was written.
std::wstring_view CommandLineOf(std::wstring_view whole) {
  const wchar_t end = whole.starts_with(L'"') ? L'"' : L' ';
  const std::size_t name = whole.find(end, 1);
  return name == std::wstring_view::npos ? std::wstring_view{} : whole.substr(name + 1);
}

int Run() noexcept {
  try {
    return RunWindowProgram(FromWide(CommandLineOf(GetCommandLineW())));
  } catch (const std::exception& error) {
    MessageBoxA(nullptr, error.what(), "Ostrel Server", MB_OK | MB_SETFOREGROUND);
  } catch (...) {  // NOLINT(bugprone-empty-catch): nothing is known to be told
  }
  return 1;
}

}  // namespace
}  // namespace ostrel::platform

int WINAPI WinMain(HINSTANCE, HINSTANCE, LPSTR, int) { return ostrel::platform::Run(); }
