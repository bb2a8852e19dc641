// The program's main window on Windows. Its procedure is the table in the source file.
#pragma once

#include <windows.h>

#include <string>

#include "platform/ApplicationWindow.h"
#include "platform/win32/MenuBar.h"
#include "platform/win32/OwnWindow.h"
#include "platform/win32/SessionEnd.h"
#include "platform/win32/StatusListBox.h"
#include "platform/win32/SystemHandles.h"

namespace ostrel::platform {

class FrameWindow : public ApplicationWindow, public OwnWindow {
 public:
  explicit FrameWindow(const ApplicationWindowDescription& description);
  ~FrameWindow() override;

  void InsertStatusLine(int index, TextView line) override { oList.Insert(index, line); }
  void RemoveStatusLine(int index) override { oList.Remove(index); }
  void SetCaption(TextView caption) override;
  void SetMenuChecked(MenuId item, bool checked) override { oMenu.SetChecked(item, checked); }
  void SetMenuEnabled(MenuId item, bool enabled) override { oMenu.SetEnabled(item, enabled); }
  void SetMenuVisible(MenuId item, bool visible) override;
  void ShowMessage(TextView text) override;

  void SetMark(TextView name) override;
  void RemoveMark(TextView name) override;
  void Show() override;
  void Hide() override;
  WindowState State() const override;
  void SetState(WindowState state) override;
  void BringToFront() override;
  IconHandle Icon() const override;

  void FitStatusList() override;

  /// A message box with the application's title, over this window when it is seen; the system's
  /// answer (IDOK ...), 0 when there was none.
  int AskInMessageBox(TextView text, UINT style) const;
  const std::wstring& Title() const { return sTitle; }
  /// The owner of dialogs: this window; null while it is hidden.
  HWND DialogOwner() const;

 private:
  static std::span<const MessageEntry<FrameWindow>> Messages();
  MessageResult OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override;

  MessageResult OnCommand(WPARAM wParam, LPARAM lParam);
  MessageResult OnInitMenuPopup(WPARAM wParam, LPARAM lParam);
  MessageResult OnListKey(WPARAM wParam, LPARAM lParam);
  MessageResult OnSystemCommand(WPARAM wParam, LPARAM lParam);
  MessageResult OnClose(WPARAM wParam, LPARAM lParam);
  MessageResult OnQueryEndSession(WPARAM wParam, LPARAM lParam);
  MessageResult OnEndSession(WPARAM wParam, LPARAM lParam);
  MessageResult OnSize(WPARAM wParam, LPARAM lParam);
  MessageResult OnMinimumSize(WPARAM wParam, LPARAM lParam);
  MessageResult OnFocus(WPARAM wParam, LPARAM lParam);
  MessageResult OnDpiChanged(WPARAM wParam, LPARAM lParam);
  MessageResult OnSettingChange(WPARAM wParam, LPARAM lParam);
  MessageResult OnRestoreRequest(WPARAM wParam, LPARAM lParam);

  void RaiseMenuClick(UINT message, std::optional<MenuId> item);
  void RaiseStatusDoubleClick(UINT message);
  void RaiseClose(UINT message, CloseReason reason);
  void AdoptFont();
  int NoticeHeight(int width) const;

  std::wstring sTitle;
  std::wstring sNotice;
  MenuBar oMenu;
  StatusListBox oList;
  HWND hNotice = nullptr;
  UniqueFont oFont;
  WindowState iShownNext = WindowState::kNormal;  // while hidden
  SessionEnd oSessionEnd;
};

/// The message that asks the marked window of another instance to be seen, in front. The window
/// returns kRestored when it is.
UINT RestoreRequest();
inline constexpr LRESULT kRestored = 1;

}  // namespace ostrel::platform
