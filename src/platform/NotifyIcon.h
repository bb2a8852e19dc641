// One icon in the notification area, and menus that pop up at the cursor.
// Source: Shell_NotifyIcon of the Windows shell.
#pragma once

#include <cstdint>
#include <functional>
#include <vector>

#include "platform/WindowFrame.h"
#include "util/Text.h"

namespace ostrel::platform {

/// The description of an icon for the shell. Only the fields that the flags name are valid.
struct NotifyIconRecord {
  static constexpr std::uint32_t kMessage = 1, kIcon = 2, kTip = 4;

  std::uint32_t flags = kMessage | kIcon | kTip;
  std::uint32_t callbackMessage = 0x200;  // under which its notifications arrive
  IconHandle icon = 0;
  Text tip;  // at most 63 characters
};

struct PopupItem {
  Text caption;  // "-": a separator
  bool enabled = true;
};

class NotifyIcon {
 public:
  enum class Operation : std::uint32_t { kAdd = 0, kModify = 1, kDelete = 2 };

  virtual ~NotifyIcon() = default;

  /// False when the shell refuses, as it does while it is not running.
  virtual bool Notify(Operation operation, const NotifyIconRecord& record) = 0;
  /// Blocks until an item was chosen (its index, from 0) or none (-1), dispatching events.
  virtual int PopUpMenu(const std::vector<PopupItem>& items, int defaultIndex) = 0;

  /// A mouse message came to the icon: its code (0x200 moved ... 0x206 right double-click).
  std::function<void(std::uint32_t code)> Notified;
  /// The shell has started (again): it knows no icons.
  std::function<void()> ShellStarted;
};

}  // namespace ostrel::platform
