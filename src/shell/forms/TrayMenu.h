// The gateway's icon in the notification area, with its tip and its menu. The main form decides
// what happens when they are used.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

#include "gateway/Trace.h"
#include "platform/NotifyIcon.h"
#include "shell/forms/frmSysTray.h"

namespace ostrel {

using NotifyIconFactory = std::function<std::unique_ptr<platform::NotifyIcon>()>;

class TrayMenu {
 public:
  TrayMenu(NotifyIconFactory createIcon, Trace& trace);
  TrayMenu(const TrayMenu&) = delete;
  TrayMenu& operator=(const TrayMenu&) = delete;

  /// Makes sure that the icon is shown.
  void Show(platform::IconHandle icon);
  /// Takes it away, for good: an open menu does nothing any more.
  void Remove();

  /// Pops the menu up; nothing once the icon has been taken away.
  void ShowMenu();

  /// The keys of the menu's items.
  static constexpr TextView kOpen = u"open", kClose = u"close";

  /// The events of the icon, until it has been taken away (frmSysTray).
  std::function<void(TextView key)> MenuClick;
  std::function<void(std::int16_t button)> SysTrayDoubleClick;
  std::function<void(std::int16_t button)> SysTrayMouseDown;

 private:
  void Create();

  NotifyIconFactory CreateIcon;
  Trace& oTrace;
  std::optional<frmSysTray> oSysTray;
  bool bRemoved = false;
};

}  // namespace ostrel
