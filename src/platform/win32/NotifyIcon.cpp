// The icon's window is hidden, top-level (the shell tells only such windows that it has started)
// and gets nothing but the icon's messages.
#include "platform/NotifyIcon.h"

#include <windows.h>
#include <shellapi.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <string>

#include "platform/ApplicationWindow.h"
#include "platform/win32/OwnWindow.h"
#include "platform/win32/Path.h"
#include "platform/win32/SystemHandles.h"

namespace ostrel::platform {
namespace {

// The record of the shell's first form, which every later one understands.
constexpr DWORD kRecordSize = 88;
constexpr std::size_t kTipSize = 64;
static_assert(offsetof(NOTIFYICONDATAA, szTip) + kTipSize == kRecordSize);

constexpr UINT kIconId = 1;

/// The field is filled with blanks behind the zero that ends the text.
void FillTip(char* field, TextView tip) {
  char text[4 * kTipSize];
  const std::wstring wide = ToWide(tip.substr(0, kTipSize - 1));
  const int written =
      wide.empty() ? 0
                   : WideCharToMultiByte(CP_ACP, 0, wide.data(), static_cast<int>(wide.size()),
                                         text, sizeof text, nullptr, nullptr);
  const std::size_t length = std::min<std::size_t>(static_cast<std::size_t>(written), kTipSize - 1);
  std::memset(field, ' ', kTipSize);
  std::memcpy(field, text, length);
  field[length] = '\0';
}

class TrayWindow : public NotifyIcon, public OwnWindow {
 public:
  TrayWindow();
  ~TrayWindow() override { Destroy(); }

  bool Notify(Operation operation, const NotifyIconRecord& record) override;
  int PopUpMenu(const std::vector<PopupItem>& items, int defaultIndex) override;

 private:
  MessageResult OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override;
  int TrackAtCursor(HMENU menu) const;

  const UINT iShellStarted = RegisterWindowMessageW(L"TaskbarCreated");
  UINT iCallbackMessage = 0;
};

TrayWindow::TrayWindow() {
  Create({.className = L"OstrelTrayIcon", .extendedStyle = WS_EX_TOOLWINDOW});
  AllowFromEverybody(Handle(), iShellStarted);
}

bool TrayWindow::Notify(Operation operation, const NotifyIconRecord& record) {
  NOTIFYICONDATAA data{};
  data.cbSize = kRecordSize;
  data.hWnd = Handle();
  data.uID = kIconId;
  data.uFlags = record.flags;
  data.uCallbackMessage = record.callbackMessage;
  data.hIcon = reinterpret_cast<HICON>(record.icon);
  FillTip(data.szTip, record.tip);
  if ((record.flags & NotifyIconRecord::kMessage) != 0) iCallbackMessage = record.callbackMessage;
  return Shell_NotifyIconA(static_cast<DWORD>(operation), &data) != FALSE;
}

MessageResult TrayWindow::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == iShellStarted) {
    if (ShellStarted) Raise(message, ShellStarted);
    return 0;
  }
  if (message != iCallbackMessage || iCallbackMessage == 0) return std::nullopt;
  if (wParam != kIconId || !Notified) return 0;
  Raise(message, [&] { Notified(static_cast<std::uint32_t>(lParam)); });
  return 0;
}

int TrayWindow::PopUpMenu(const std::vector<PopupItem>& items, int defaultIndex) {
  const UniqueMenu menu(CreatePopupMenu());
  UINT command = 0;
  for (const PopupItem& item : items) {
    const bool isSeparator = item.caption == u"-";
    const UINT kind = (isSeparator ? MF_SEPARATOR : MF_STRING) | (item.enabled ? 0u : MF_GRAYED);
    AppendMenuW(menu.get(), kind, ++command, ToWide(item.caption).c_str());
  }
  if (defaultIndex >= 0) SetMenuDefaultItem(menu.get(), static_cast<UINT>(defaultIndex), TRUE);
  return TrackAtCursor(menu.get()) - 1;
}

/// The chosen command; 0 when none was.
int TrayWindow::TrackAtCursor(HMENU menu) const {
  POINT cursor{};
  GetCursorPos(&cursor);
  // Otherwise a click elsewhere would not close the menu; and a second opening in a row would close
  // at once without the message after it. Both are said in the manual of TrackPopupMenu.
  SetForegroundWindow(Handle());
  const UINT side = GetSystemMetrics(SM_MENUDROPALIGNMENT) != 0 ? TPM_RIGHTALIGN : TPM_LEFTALIGN;
  const int chosen = TrackPopupMenuEx(menu, TPM_RETURNCMD | TPM_RIGHTBUTTON | side, cursor.x,
                                      cursor.y, Handle(), nullptr);
  PostMessageW(Handle(), WM_NULL, 0, 0);
  return chosen;
}

}  // namespace

std::unique_ptr<NotifyIcon> MakeNotifyIcon() { return std::make_unique<TrayWindow>(); }

}  // namespace ostrel::platform
