#include "platform/win32/DialogWindow.h"

#include <utility>

#include "platform/win32/Dpi.h"
#include "platform/win32/MessageLoop.h"

namespace ostrel::platform {

DialogWindow::~DialogWindow() {
  if (hDialog == nullptr) return;
  SetWindowLongPtrW(hDialog, DWLP_USER, 0);
  DestroyWindow(hDialog);
}

bool DialogWindow::Open(const DialogTemplate& description) {
  return CreateDialogIndirectParamW(GetModuleHandleW(nullptr), description.Get(), nullptr,
                                    &DialogWindow::Procedure,
                                    reinterpret_cast<LPARAM>(this)) != nullptr;
}

void DialogWindow::Close() {
  if (hDialog != nullptr) DestroyWindow(hDialog);
}

void DialogWindow::RunModal(const DialogTemplate& description, HWND owner) {
  DialogBoxIndirectParamW(GetModuleHandleW(nullptr), description.Get(), owner,
                          &DialogWindow::Procedure, reinterpret_cast<LPARAM>(this));
}

SIZE DialogWindow::FromUnits(short width, short height) const {
  RECT area{0, 0, width, height};
  MapDialogRect(hDialog, &area);
  return {area.right, area.bottom};
}

void DialogWindow::Place(int id, int left, int top, int width, int height) const {
  MoveWindow(Control(id), left, top, width, height, TRUE);
}

INT_PTR CALLBACK DialogWindow::Procedure(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_INITDIALOG) {
    reinterpret_cast<DialogWindow*>(lParam)->hDialog = dialog;
    SetWindowLongPtrW(dialog, DWLP_USER, lParam);
    SetWindowIcons(dialog, DpiOf(dialog));
  }
  auto* const own = reinterpret_cast<DialogWindow*>(GetWindowLongPtrW(dialog, DWLP_USER));
  if (own == nullptr) return FALSE;
  if (message == WM_NCDESTROY) {
    SetWindowLongPtrW(dialog, DWLP_USER, 0);
    own->hDialog = nullptr;
    return FALSE;
  }
  try {
    return own->OnMessage(message, wParam, lParam) ? TRUE : FALSE;
  } catch (...) {
    return FALSE;
  }
}

void DialogWindow::Raise(UINT message, HandlerRef handlers) const noexcept {
  RunHandlers(hDialog, message, [&handlers] {
    try {
      handlers();
    } catch (...) {  // NOLINT(bugprone-empty-catch): whoever can tell it has told it already
    }
  });
}

}  // namespace ostrel::platform
