// The icon in the notification area with its popup menu: turns the shell's notifications into mouse
// events, and keeps the icon there when the shell restarts. Reusable: the owner adds the items.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

#include "gateway/Trace.h"
#include "platform/NotifyIcon.h"
#include "util/Text.h"

namespace ostrel {

class frmSysTray {
 public:
  static constexpr std::int16_t kLeftButton = 1, kRightButton = 2;
  static constexpr std::size_t kTipField = 64;  // characters, with the zero at the end

  frmSysTray(std::unique_ptr<platform::NotifyIcon> icon, Trace& trace);
  /// Hides the icon.
  ~frmSysTray();
  frmSysTray(const frmSysTray&) = delete;
  frmSysTray& operator=(const frmSysTray&) = delete;

  /// Shown while the mouse rests on the icon; cut to the field.
  void ToolTip(TextView sTip);
  void IconHandle(platform::IconHandle hIcon);

  /// Items count from 0, in the order added; an index that is none changes nothing. Caption "-": a
  /// separator.
  void AddMenuItem(TextView sCaption, TextView sKey, bool bDefault, bool bEnabled);
  void EnableMenu(int iIndex, bool bState);
  /// Those after it move up.
  void RemoveMenuItem(int iIndex);
  void DefaultMenuIndex(int iIndex);
  /// -1: none.
  int DefaultMenuIndex() const { return iDefaultMenuIndex; }

  /// Pops the menu up at the cursor and returns when it has closed; events run meanwhile. Harmless
  /// while it is open.
  void ShowMenu();

  /// When the shell refuses the icon, as it does before it runs, the icon is added as soon as the
  /// shell has started.
  void ShowIcon();
  void HideIcon();

  /// Whether a press of the right button opens the menu by itself.
  bool ShowMenuOnRightClick = true;

  std::function<void(std::int16_t eButton)> SysTrayMouseDown;
  std::function<void(std::int16_t eButton)> SysTrayMouseUp;
  std::function<void()> SysTrayMouseMove;
  std::function<void(std::int16_t eButton)> SysTrayDoubleClick;
  std::function<void(int lIndex, TextView sKey)> MenuClick;

 private:
  struct MenuEntry {
    platform::PopupItem oItem;
    Text sKey;
  };
  struct Notification;
  static const Notification kNotifications[];

  void Decode(std::uint32_t code);
  void RightButtonDown();
  void AddOrModify();
  void Update(std::uint32_t flags);
  void ShellStarted();
  bool IsItem(int index) const;

  Trace& oTrace;
  std::unique_ptr<platform::NotifyIcon> oIcon;
  platform::NotifyIconRecord oRecord;
  std::vector<MenuEntry> mnuSysTray;
  int iDefaultMenuIndex = -1;
  bool bAdded = false;  // the shell knows the icon
  bool bShown = false;  // the icon is wanted
  bool bMenuOpen = false;
};

}  // namespace ostrel
