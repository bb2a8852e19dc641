#include "platform/win32/InputBox.h"

#include <utility>

namespace ostrel::platform {
namespace {

constexpr WORD kPrompt = 100, kText = 101;
constexpr UnitRect kPlace{0, 0, 260, 66};
constexpr DWORD kInputBoxStyle =
    WS_POPUP | WS_CAPTION | WS_SYSMENU | DS_MODALFRAME | DS_CENTER | DS_SETFOREGROUND;
constexpr WPARAM kMostCharacters = 0x7FFFFFFE;

using Kind = DialogControl::Kind;

}  // namespace

InputBox::InputBox(std::wstring title, std::wstring prompt, std::wstring offered)
    : sTitle(std::move(title)), sPrompt(std::move(prompt)), sText(std::move(offered)) {}

std::optional<std::wstring> InputBox::Ask(HWND owner) {
  DialogTemplate dialog(kInputBoxStyle, kPlace, sTitle);
  dialog.Add({Kind::kStatic, kPrompt, SS_NOPREFIX, 0, sPrompt, {7, 7, 246, 10}});
  dialog.Add(
      {Kind::kEdit, kText, WS_TABSTOP | ES_AUTOHSCROLL, WS_EX_CLIENTEDGE, {}, {7, 19, 246, 14}});
  dialog.Add({Kind::kButton, IDOK, WS_TABSTOP | BS_DEFPUSHBUTTON, 0, L"OK", {149, 45, 50, 14}});
  dialog.Add({Kind::kButton, IDCANCEL, WS_TABSTOP, 0, L"Cancel", {203, 45, 50, 14}});
  RunModal(dialog, owner);
  if (!bEntered) return std::nullopt;
  return std::move(sText);
}

bool InputBox::OnMessage(UINT message, WPARAM wParam, LPARAM) {
  if (message == WM_INITDIALOG) return OnInitDialog();
  return message == WM_COMMAND && OnCommand(LOWORD(wParam));
}

/// The focus goes to the text, all of it selected, as to the first control.
bool InputBox::OnInitDialog() {
  SendMessageW(Control(kText), EM_SETLIMITTEXT, kMostCharacters, 0);
  SetWindowTextW(Control(kText), sText.c_str());
  return true;
}

bool InputBox::OnCommand(int id) {
  if (id != IDOK && id != IDCANCEL) return false;
  const int length = GetWindowTextLengthW(Control(kText));
  sText.resize(static_cast<std::size_t>(length) + 1);
  const int read = GetWindowTextW(Control(kText), sText.data(), length + 1);
  sText.resize(static_cast<std::size_t>(read));
  bEntered = id == IDOK;
  EndDialog(Handle(), id);
  return true;
}

}  // namespace ostrel::platform
