// Windows tells a console program of Ctrl-C and the like on a thread of its own; a message to a
// hidden window brings that to the loop's thread.
#include "platform/ConsoleSignals.h"

#include <windows.h>

#include <utility>

#include "platform/win32/MessageLoop.h"

namespace ostrel::platform {
namespace {

constexpr UINT kExitMessage = WM_APP;

class Signals {
 public:
  Signals();
  ~Signals();
  Signals(const Signals&) = delete;
  Signals& operator=(const Signals&) = delete;

  void SetExitHandler(std::function<void()> handler);

 private:
  static BOOL WINAPI OnControl(DWORD event);
  static LRESULT CALLBACK OnMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

  static inline HWND oWindow = nullptr;
  static inline std::function<void()> exitHandler;
};

Signals::Signals() {
  oWindow = CreateWindowExW(0, L"STATIC", L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr,
                            GetModuleHandleW(nullptr), nullptr);
  SetWindowLongPtrW(oWindow, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&Signals::OnMessage));
}

Signals::~Signals() {
  SetConsoleCtrlHandler(&Signals::OnControl, FALSE);
  DestroyWindow(oWindow);
}

void Signals::SetExitHandler(std::function<void()> handler) {
  SetConsoleCtrlHandler(&Signals::OnControl, FALSE);
  exitHandler = std::move(handler);
  if (exitHandler) SetConsoleCtrlHandler(&Signals::OnControl, TRUE);
}

BOOL WINAPI Signals::OnControl(DWORD event) {
  PostMessageW(oWindow, kExitMessage, 0, 0);
  // The program is ended as soon as one of the others returns; its own exit ends this wait.
  if (event != CTRL_C_EVENT && event != CTRL_BREAK_EVENT) Sleep(INFINITE);
  return TRUE;
}

LRESULT CALLBACK Signals::OnMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message != kExitMessage) return DefWindowProcW(window, message, wParam, lParam);
  // A copy: the handler may put another one in its place.
  const auto handler = exitHandler;
  if (handler) RunHandlers(window, message, handler);
  return 0;
}

}  // namespace

void OnConsoleSignal(ConsoleSignal signal, std::function<void()> handler) {
  if (signal != ConsoleSignal::kExit) return;
  static Signals signals;
  signals.SetExitHandler(std::move(handler));
}

}  // namespace ostrel::platform
