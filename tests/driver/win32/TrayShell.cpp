#include "tests/driver/win32/TrayShell.h"

#include <windows.h>

#include <mutex>
#include <thread>
#include <utility>

namespace ostrel::driver {
namespace {

/// The beginning of what Wine's shell32 sends.
struct IconRecord {
  LONG window;
  UINT id;
  UINT flags;
  UINT callbackMessage;
  WCHAR tip[128];
};

std::mutex guard;
Fields operations;  // under guard

void NoteOperation(const COPYDATASTRUCT& sent) {
  if (sent.cbData < sizeof(IconRecord)) return;
  const auto& record = *static_cast<const IconRecord*>(sent.lpData);
  const std::lock_guard lock(guard);
  operations.insert(operations.end(), {std::to_wstring(sent.dwData), std::to_wstring(record.window),
                                       std::to_wstring(record.id), std::to_wstring(record.flags),
                                       std::to_wstring(record.callbackMessage), record.tip});
}

LRESULT CALLBACK OnMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message != WM_COPYDATA) return DefWindowProcW(window, message, wParam, lParam);
  NoteOperation(*reinterpret_cast<const COPYDATASTRUCT*>(lParam));
  return TRUE;
}

/// Its window has a thread of its own: who sends to it waits for the answer.
void Serve(HANDLE ready) {
  WNDCLASSW windowClass{};
  windowClass.lpfnWndProc = OnMessage;
  windowClass.hInstance = GetModuleHandleW(nullptr);
  windowClass.lpszClassName = L"Shell_TrayWnd";
  RegisterClassW(&windowClass);
  const HWND window =
      CreateWindowExW(WS_EX_TOPMOST | WS_EX_TOOLWINDOW, windowClass.lpszClassName, L"", WS_POPUP, 0,
                      0, 0, 0, nullptr, nullptr, windowClass.hInstance, nullptr);
  SetWindowPos(window, HWND_TOPMOST, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
  SetEvent(ready);
  MSG message;
  while (GetMessageW(&message, nullptr, 0, 0) > 0) DispatchMessageW(&message);
}

}  // namespace

void OpenTrayShell() {
  static const bool open = [] {
    const HANDLE ready = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    std::thread(Serve, ready).detach();
    WaitForSingleObject(ready, INFINITE);
    return true;
  }();
  static_cast<void>(open);
}

Fields TakeTrayOperations() {
  const std::lock_guard lock(guard);
  return std::exchange(operations, {});
}

}  // namespace ostrel::driver
