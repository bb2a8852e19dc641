// Windows tells a console program of Ctrl-C and the like on a thread of its own; a message to a
// hidden window brings that to the loop's thread.
#include <windows.h>

#include <array>
#include <atomic>
#include <utility>

#include "platform/Console.h"
#include "platform/win32/MessageLoop.h"

namespace ostrel::platform {
namespace {

// Posted with the signal as WPARAM.
constexpr UINT kSignalMessage = WM_APP;
constexpr std::size_t kSignals = 3;

class Signals {
 public:
  Signals();
  ~Signals();
  Signals(const Signals&) = delete;
  Signals& operator=(const Signals&) = delete;

  void SetHandler(ConsoleSignal signal, std::function<void()> handler);

 private:
  static BOOL WINAPI OnControl(DWORD event);
  static LRESULT CALLBACK OnMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

  static inline HWND oWindow = nullptr;
  static inline std::array<std::function<void()>, kSignals> handlers;
  static inline std::array<std::atomic<bool>, kSignals> oHandled;  // for the other thread
};

Signals::Signals() {
  oWindow = CreateWindowExW(0, L"STATIC", L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr,
                            GetModuleHandleW(nullptr), nullptr);
  SetWindowLongPtrW(oWindow, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&Signals::OnMessage));
  SetConsoleCtrlHandler(&Signals::OnControl, TRUE);
}

Signals::~Signals() {
  SetConsoleCtrlHandler(&Signals::OnControl, FALSE);
  DestroyWindow(oWindow);
}

void Signals::SetHandler(ConsoleSignal signal, std::function<void()> handler) {
  const auto index = static_cast<std::size_t>(signal);
  oHandled[index] = static_cast<bool>(handler);
  handlers[index] = std::move(handler);
}

BOOL WINAPI Signals::OnControl(DWORD event) {
  const bool isKey = event == CTRL_C_EVENT || event == CTRL_BREAK_EVENT;
  const ConsoleSignal signal = isKey ? ConsoleSignal::kExit : ConsoleSignal::kSystemEnds;
  if (!oHandled[static_cast<std::size_t>(signal)]) return FALSE;
  PostMessageW(oWindow, kSignalMessage, static_cast<WPARAM>(signal), 0);
  // The program is ended as soon as one of the others returns; its own exit ends this wait.
  if (!isKey) Sleep(INFINITE);
  return TRUE;
}

LRESULT CALLBACK Signals::OnMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message != kSignalMessage) return DefWindowProcW(window, message, wParam, lParam);
  // A copy: the handler may put another one in its place.
  const auto handler = wParam < kSignals ? handlers[wParam] : nullptr;
  if (handler) RunHandlers(window, message, handler);
  return 0;
}

}  // namespace

void OnConsoleSignal(ConsoleSignal signal, std::function<void()> handler) {
  if (signal == ConsoleSignal::kUser) return;
  static Signals signals;
  signals.SetHandler(signal, std::move(handler));
}

}  // namespace ostrel::platform
