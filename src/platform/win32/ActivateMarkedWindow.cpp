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

bool ActivateMarkedWindow(TextView mark) {
  Search search{ToWide(mark)};
  EnumWindows(StopAtMarked, reinterpret_cast<LPARAM>(&search));
  if (search.found == nullptr) return false;

  DWORD process = 0;
  GetWindowThreadProcessId(search.found, &process);
  AllowSetForegroundWindow(process);
  // An instance that hangs must not make this one hang.
  constexpr UINT limit = 2000;  // milliseconds
  if (IsIconic(search.found)) {
    SendMessageTimeoutW(search.found, WM_SYSCOMMAND, SC_RESTORE, 0, SMTO_ABORTIFHUNG, limit,
                        nullptr);
  }
  // Only the window itself can leave the notification area.
  DWORD_PTR answer = kRestored;  // of an instance that is busy for longer: it will be seen later
  SendMessageTimeoutW(search.found, RestoreRequest(), 0, 0, SMTO_ABORTIFHUNG, limit, &answer);
  if (answer != kRestored) return false;
  SetForegroundWindow(search.found);
  return true;
}

}  // namespace ostrel::platform
