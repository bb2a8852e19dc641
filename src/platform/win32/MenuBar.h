// The main window's menu bar: its menus under the form's numbers, with their states. An item that
// is not visible is not in its menu.
#pragma once

#include <windows.h>

#include <optional>
#include <string>
#include <vector>

#include "platform/ApplicationWindow.h"
#include "platform/win32/SystemHandles.h"

namespace ostrel::platform {

class MenuBar {
 public:
  explicit MenuBar(const std::vector<MenuDescription>& menus);
  ~MenuBar();
  MenuBar(const MenuBar&) = delete;
  MenuBar& operator=(const MenuBar&) = delete;

  HMENU Handle() const { return hBar.get(); }

  /// An item that is none changes nothing.
  void SetChecked(MenuId item, bool checked);
  void SetEnabled(MenuId item, bool enabled);
  void SetVisible(MenuId item, bool visible);

  /// The item of a command, the menu of a popup's handle; nothing when there is none.
  std::optional<MenuId> ItemOfCommand(UINT command) const;
  std::optional<MenuId> MenuOfPopup(HMENU popup) const;

 private:
  struct Entry {
    MenuId id;
    MenuId parent;
    std::wstring caption;
    UniqueMenu popup;  // of an entry on the bar
    bool checked = false;
    bool enabled = true;
    bool visible = true;
  };

  Entry* Find(MenuId item);
  HMENU PopupOf(MenuId parent) const;
  void Fill(MenuId parent);
  void SetState(const Entry& entry) const;

  UniqueMenu hBar;
  std::vector<Entry> oEntries;
};

}  // namespace ostrel::platform
