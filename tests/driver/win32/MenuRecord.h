// The record that the hook leaves for the driver. Handles of menus mean nothing in another process
// than their own: the hook, which runs in it, writes down what the menu says.
#pragma once

#include <windows.h>

namespace ostrel::driver {

/// Sent to the window whose menu is asked for: one with a menu bar, or an open popup menu.
inline constexpr wchar_t kReadMenu[] = L"OstrelDriver.ReadMenu";
inline constexpr wchar_t kMenuRecord[] = L"OstrelDriverMenuRecord";  // the file mapping's name

inline constexpr char kHookLibrary[] = "ostrel-hook.dll";
inline constexpr char kHookProcedure[] = "OnSentMessage";

struct MenuItemRecord {
  int level;    // 0 in the bar or popup menu itself, 1 in a menu of the bar
  DWORD id;     // 0 for a menu of its own
  DWORD state;  // MFS_ flags
  BOOL isSeparator;
  wchar_t caption[120];
};

struct MenuRecord {
  BOOL written;
  int count;
  MenuItemRecord items[100];
};

}  // namespace ostrel::driver
