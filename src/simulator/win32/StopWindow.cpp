#include "simulator/win32/StopWindow.h"

#include <utility>

namespace ostrel::simulator {
namespace {

constexpr wchar_t kClass[] = L"OstrelSimulatorStop";
constexpr DWORD kLimit = 10'000;  // milliseconds

bool Stop(HWND window) {
  DWORD processId = 0;
  GetWindowThreadProcessId(window, &processId);
  const HANDLE process = OpenProcess(SYNCHRONIZE, FALSE, processId);
  if (process == nullptr) return !IsWindow(window);
  PostMessageW(window, WM_CLOSE, 0, 0);
  const bool ended = WaitForSingleObject(process, kLimit) == WAIT_OBJECT_0;
  CloseHandle(process);
  return ended;
}

}  // namespace

StopWindow::StopWindow(std::function<void()> stop) : oStop(std::move(stop)) {
  WNDCLASSW windowClass = {};
  windowClass.lpfnWndProc = OnMessage;
  windowClass.hInstance = GetModuleHandleW(nullptr);
  windowClass.lpszClassName = kClass;
  RegisterClassW(&windowClass);
  oWindow = CreateWindowExW(0, kClass, L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr,
                            windowClass.hInstance, nullptr);
  SetWindowLongPtrW(oWindow, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
}

StopWindow::~StopWindow() { DestroyWindow(oWindow); }

LRESULT CALLBACK StopWindow::OnMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message != WM_CLOSE) return DefWindowProcW(window, message, wParam, lParam);
  const auto* self = reinterpret_cast<StopWindow*>(GetWindowLongPtrW(window, GWLP_USERDATA));
  if (self != nullptr) self->oStop();
  return 0;
}

bool StopServers() {
  while (const HWND window = FindWindowExW(HWND_MESSAGE, nullptr, kClass, nullptr)) {
    if (!Stop(window)) return false;
  }
  return true;
}

}  // namespace ostrel::simulator
