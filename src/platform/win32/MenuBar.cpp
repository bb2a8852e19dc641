#include "platform/win32/MenuBar.h"

#include <algorithm>

#include "platform/win32/Path.h"

namespace ostrel::platform {
namespace {

// Commands start above the numbers that dialogs use for Enter and Escape.
constexpr UINT kFirstCommand = 1000;

UINT CommandOf(MenuId item) { return kFirstCommand + static_cast<UINT>(item); }

void Empty(HMENU menu) {
  while (RemoveMenu(menu, 0, MF_BYPOSITION)) {
  }
}

}  // namespace

MenuBar::MenuBar(const std::vector<MenuDescription>& menus) : hBar(CreateMenu()) {
  for (const MenuDescription& menu : menus) {
    UniqueMenu popup(menu.parent == 0 ? CreatePopupMenu() : nullptr);
    oEntries.push_back({menu.id, menu.parent, ToWide(menu.caption), std::move(popup)});
  }
  Fill(0);
  for (const Entry& entry : oEntries) {
    if (entry.parent == 0) Fill(entry.id);
  }
}

/// The bar would destroy its menus with itself.
MenuBar::~MenuBar() { Empty(hBar.get()); }

MenuBar::Entry* MenuBar::Find(MenuId item) {
  const auto found = std::find_if(oEntries.begin(), oEntries.end(),
                                  [item](const Entry& entry) { return entry.id == item; });
  return found == oEntries.end() ? nullptr : &*found;
}

HMENU MenuBar::PopupOf(MenuId parent) const {
  for (const Entry& entry : oEntries) {
    if (entry.id == parent) return entry.popup.get();
  }
  return hBar.get();
}

void MenuBar::Fill(MenuId parent) {
  const HMENU menu = PopupOf(parent);
  Empty(menu);
  for (const Entry& entry : oEntries) {
    if (entry.parent != parent || !entry.visible) continue;
    if (entry.popup != nullptr) {
      AppendMenuW(menu, MF_POPUP, reinterpret_cast<UINT_PTR>(entry.popup.get()),
                  entry.caption.c_str());
    } else if (entry.caption == L"-") {
      AppendMenuW(menu, MF_SEPARATOR, CommandOf(entry.id), nullptr);
    } else {
      AppendMenuW(menu, MF_STRING, CommandOf(entry.id), entry.caption.c_str());
    }
    SetState(entry);
  }
}

void MenuBar::SetState(const Entry& entry) const {
  if (entry.popup != nullptr) return;
  const HMENU menu = PopupOf(entry.parent);
  const UINT command = CommandOf(entry.id);
  CheckMenuItem(menu, command, entry.checked ? MF_CHECKED : MF_UNCHECKED);
  EnableMenuItem(menu, command, entry.enabled ? MF_ENABLED : MF_GRAYED);
}

void MenuBar::SetChecked(MenuId item, bool checked) {
  Entry* const entry = Find(item);
  if (entry == nullptr) return;
  entry->checked = checked;
  SetState(*entry);
}

void MenuBar::SetEnabled(MenuId item, bool enabled) {
  Entry* const entry = Find(item);
  if (entry == nullptr) return;
  entry->enabled = enabled;
  SetState(*entry);
}

void MenuBar::SetVisible(MenuId item, bool visible) {
  Entry* const entry = Find(item);
  if (entry == nullptr || entry->visible == visible) return;
  entry->visible = visible;
  Fill(entry->parent);
}

std::optional<MenuId> MenuBar::ItemOfCommand(UINT command) const {
  for (const Entry& entry : oEntries) {
    if (entry.popup == nullptr && CommandOf(entry.id) == command) return entry.id;
  }
  return std::nullopt;
}

std::optional<MenuId> MenuBar::MenuOfPopup(HMENU popup) const {
  for (const Entry& entry : oEntries) {
    if (entry.popup != nullptr && entry.popup.get() == popup) return entry.id;
  }
  return std::nullopt;
}

}  // namespace ostrel::platform
