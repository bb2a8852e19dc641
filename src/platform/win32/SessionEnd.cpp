#include "platform/win32/SessionEnd.h"

#include <chrono>
#include <system_error>

namespace ostrel::platform {
namespace {

// The system gives a program five seconds.
constexpr std::chrono::milliseconds kLongestDelay(4500);

constexpr wchar_t kClass[] = L"OstrelSessionEnd";

}  // namespace

SessionEnd::~SessionEnd() {
  oEnded.Raise();
  if (oThread.joinable()) oThread.join();
}

/// Without a thread the system does not wait.
void SessionEnd::Delay(HWND mainWindow) {
  oMainWindow = mainWindow;
  try {
    oThread = std::thread([this] { Run(); });
  } catch (const std::system_error&) {  // NOLINT(bugprone-empty-catch): see above
  }
}

void SessionEnd::Run() {
  WNDCLASSW windowClass{};
  windowClass.lpfnWndProc = &SessionEnd::Procedure;
  windowClass.hInstance = GetModuleHandleW(nullptr);
  windowClass.lpszClassName = kClass;
  RegisterClassW(&windowClass);
  // Message-only windows are not told of the session's end.
  const HWND window = CreateWindowExW(WS_EX_TOOLWINDOW, kClass, L"", WS_POPUP, 0, 0, 0, 0, nullptr,
                                      nullptr, GetModuleHandleW(nullptr), nullptr);
  SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
  const HANDLE ended = oEnded.Get();
  while (MsgWaitForMultipleObjects(1, &ended, FALSE, INFINITE, QS_ALLINPUT) != WAIT_OBJECT_0) {
    MSG message;
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) DispatchMessageW(&message);
  }
  DestroyWindow(window);
}

LRESULT CALLBACK SessionEnd::Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  const auto* const own = reinterpret_cast<SessionEnd*>(GetWindowLongPtrW(window, GWLP_USERDATA));
  if (own == nullptr || message != WM_ENDSESSION || wParam == FALSE) {
    return DefWindowProcW(window, message, wParam, lParam);
  }
  PostMessageW(own->oMainWindow, WM_ENDSESSION, wParam, lParam);
  own->oEnded.Await(kLongestDelay);
  return 0;
}

}  // namespace ostrel::platform
