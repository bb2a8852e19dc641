// Asks for one line of text.
#pragma once

#include <windows.h>

#include <optional>
#include <string>

#include "platform/win32/DialogWindow.h"

namespace ostrel::platform {

class InputBox : private DialogWindow {
 public:
  /// offered: the text that the field has at first, marked as a whole.
  InputBox(std::wstring title, std::wstring prompt, std::wstring offered);

  /// Nothing when cancelled.
  std::optional<std::wstring> Ask(HWND owner);

 private:
  bool OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override;
  bool OnInitDialog();
  bool OnCommand(int id);

  std::wstring sTitle, sPrompt, sText;
  bool bEntered = false;
};

}  // namespace ostrel::platform
