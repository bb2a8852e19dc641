#include "platform/win32/OwnWindow.h"

#include <stdexcept>
#include <utility>

#include "platform/win32/Dpi.h"
#include "platform/win32/MessageLoop.h"

namespace ostrel::platform {
namespace {

/// A class that is registered already is taken as it is.
void RegisterWindowClass(const wchar_t* name, WNDPROC procedure) {
  WNDCLASSEXW windowClass{};
  windowClass.cbSize = sizeof windowClass;
  windowClass.lpfnWndProc = procedure;
  windowClass.hInstance = GetModuleHandleW(nullptr);
  windowClass.hCursor = LoadCursorW(nullptr, IDC_ARROW);
  windowClass.hbrBackground = GetSysColorBrush(COLOR_3DFACE);
  windowClass.lpszClassName = name;
  RegisterClassExW(&windowClass);
}

}  // namespace

void OwnWindow::Create(const Frame& frame) {
  RegisterWindowClass(frame.className, &OwnWindow::Procedure);
  hWindow = CreateWindowExW(frame.extendedStyle, frame.className, frame.caption, frame.style,
                            CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT, nullptr,
                            nullptr, GetModuleHandleW(nullptr), nullptr);
  if (hWindow == nullptr) throw std::runtime_error("Windows could not create a window");
  SetWindowLongPtrW(hWindow, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
}

void OwnWindow::Detach() { SetWindowLongPtrW(hWindow, GWLP_USERDATA, 0); }

void OwnWindow::Destroy() {
  if (hWindow == nullptr) return;
  Detach();
  DestroyWindow(std::exchange(hWindow, nullptr));
}

LRESULT CALLBACK OwnWindow::Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  auto* const own = reinterpret_cast<OwnWindow*>(GetWindowLongPtrW(window, GWLP_USERDATA));
  try {
    const MessageResult result =
        own != nullptr ? own->OnMessage(message, wParam, lParam) : std::nullopt;
    if (result) return *result;
  } catch (...) {  // NOLINT(bugprone-empty-catch): no memory; what the system does is left
  }
  return DefWindowProcW(window, message, wParam, lParam);
}

void OwnWindow::Raise(UINT message, HandlerRef handlers) const noexcept {
  RunHandlers(hWindow, message, [&handlers] {
    try {
      handlers();
    } catch (...) {  // NOLINT(bugprone-empty-catch): whoever can tell it has told it already
    }
  });
}

void AllowFromEverybody(HWND window, UINT message) {
  ChangeWindowMessageFilterEx(window, message, MSGFLT_ALLOW, nullptr);
}

}  // namespace ostrel::platform
