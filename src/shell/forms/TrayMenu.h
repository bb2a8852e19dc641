// The gateway's icon in the notification area: its tip, its menu, and what they mean.
#pragma once

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

  /// "Open" was chosen, or the icon double-clicked.
  std::function<void()> Open;
  /// "Close" was chosen.
  std::function<void()> Close;

 private:
  void Create();
  void oSysTray_MenuClick(TextView key);

  NotifyIconFactory CreateIcon;
  Trace& oTrace;
  std::optional<frmSysTray> oSysTray;
  bool bRemoved = false;
};

}  // namespace ostrel
