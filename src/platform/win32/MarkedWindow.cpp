#include <windows.h>

#include <string>

#include "platform/ApplicationWindow.h"
#include "platform/win32/FrameWindow.h"
#include "platform/win32/Path.h"

namespace ostrel::platform {
namespace {

struct Search {
  std::wstring mark;
  HWND found = nullptr;
};

BOOL CALLBACK StopAtMarked(HWND window, LPARAM lParam) {
  auto& search = *reinterpret_cast<Search*>(lParam);
  if (GetPropW(window, search.mark.c_str()) != reinterpret_cast<HANDLE>(INT_PTR{1})) return TRUE;
  search.found = window;
  return FALSE;
}

}  // namespace

WindowHandle FindMarkedWindow(TextView mark) {
  Search search{ToWide(mark)};
  EnumWindows(StopAtMarked, reinterpret_cast<LPARAM>(&search));
  return reinterpret_cast<WindowHandle>(search.found);
}

bool ActivateWindow(WindowHandle handle) {
  const auto window = reinterpret_cast<HWND>(handle);
  DWORD process = 0;
  GetWindowThreadProcessId(window, &process);
  AllowSetForegroundWindow(process);
  // An instance that hangs must not make this one hang.
  constexpr UINT limit = 2000;  // milliseconds
  if (IsIconic(window)) {
    SendMessageTimeoutW(window, WM_SYSCOMMAND, SC_RESTORE, 0, SMTO_ABORTIFHUNG, limit, nullptr);
  }
  // Only the window itself can leave the notification area.
  DWORD_PTR result = kRestored;  // of an instance that is busy for longer: it will be seen later
  SendMessageTimeoutW(window, RestoreRequest(), 0, 0, SMTO_ABORTIFHUNG, limit, &result);
  if (result != kRestored) return false;
  SetForegroundWindow(window);
  return true;
}

}  // namespace ostrel::platform
