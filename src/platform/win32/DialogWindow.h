// A dialog window whose messages are handled by a class of ours: the base of the input box and of
// the forms. The system's own dialog behaviour (Tab, Enter, Escape, access keys) is left as it is.
#pragma once

#include <windows.h>

#include <functional>

#include "platform/win32/DialogTemplate.h"
#include "platform/win32/MessageLoop.h"

namespace ostrel::platform {

class DialogWindow {
 public:
  DialogWindow(const DialogWindow&) = delete;
  DialogWindow& operator=(const DialogWindow&) = delete;

 protected:
  DialogWindow() = default;
  virtual ~DialogWindow();

  /// Hidden. False when the system has no window left.
  bool Open(const DialogTemplate& description);
  /// Destroys the window; harmless when repeated.
  void Close();
  /// Blocks until the dialog has ended, by EndDialog or with the loop.
  void RunModal(const DialogTemplate& description, HWND owner);

  /// Null while there is no window.
  HWND Handle() const { return hDialog; }
  HWND Control(int id) const { return GetDlgItem(hDialog, id); }
  /// The size in pixels.
  SIZE FromUnits(short width, short height) const;
  void Place(int id, int left, int top, int width, int height) const;

  /// True: answered. May raise: then the system answers.
  virtual bool OnMessage(UINT message, WPARAM wParam, LPARAM lParam) = 0;
  /// Works as OwnWindow's does.
  void Raise(UINT message, HandlerRef handlers) const noexcept;

 private:
  static INT_PTR CALLBACK Procedure(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam);

  HWND hDialog = nullptr;
};

}  // namespace ostrel::platform
