// ostrel-hook.dll: reads menus inside the program that they belong to; see MenuRecord.h.
#include "tests/driver/win32/MenuRecord.h"

namespace ostrel::driver {
namespace {

constexpr UINT kMenuOfPopup = 0x01E1;  // MN_GETHMENU

HMENU MenuOf(HWND window) {
  wchar_t name[16]{};
  GetClassNameW(window, name, 16);
  if (lstrcmpW(name, L"#32768") != 0) return GetMenu(window);
  return reinterpret_cast<HMENU>(SendMessageW(window, kMenuOfPopup, 0, 0));
}

void WriteMenu(MenuRecord& record, HMENU menu, int level) {
  const int count = GetMenuItemCount(menu);
  for (int i = 0; i < count && record.count < static_cast<int>(ARRAYSIZE(record.items)); ++i) {
    MenuItemRecord& item = record.items[record.count++];
    MENUITEMINFOW info{};
    info.cbSize = sizeof info;
    info.fMask = MIIM_ID | MIIM_STATE | MIIM_FTYPE | MIIM_STRING | MIIM_SUBMENU;
    info.dwTypeData = item.caption;
    info.cch = ARRAYSIZE(item.caption);
    GetMenuItemInfoW(menu, static_cast<UINT>(i), TRUE, &info);
    item.level = level;
    item.id = info.hSubMenu == nullptr ? info.wID : 0;
    item.state = info.fState;
    item.isSeparator = (info.fType & MFT_SEPARATOR) != 0;
    if (info.hSubMenu != nullptr) WriteMenu(record, info.hSubMenu, level + 1);
  }
}

void LeaveRecord(HWND window) {
  const HANDLE mapping = OpenFileMappingW(FILE_MAP_WRITE, FALSE, kMenuRecord);
  if (mapping == nullptr) return;
  if (void* const view = MapViewOfFile(mapping, FILE_MAP_WRITE, 0, 0, sizeof(MenuRecord))) {
    auto& record = *static_cast<MenuRecord*>(view);
    WriteMenu(record, MenuOf(window), 0);
    record.written = TRUE;
    UnmapViewOfFile(view);
  }
  CloseHandle(mapping);
}

}  // namespace
}  // namespace ostrel::driver

extern "C" __declspec(dllexport) LRESULT CALLBACK
    OnSentMessage(int code, WPARAM wParam, LPARAM lParam) {
  static const UINT readMenu = RegisterWindowMessageW(ostrel::driver::kReadMenu);
  const auto* const sent = reinterpret_cast<const CWPSTRUCT*>(lParam);
  if (code == HC_ACTION && sent->message == readMenu) ostrel::driver::LeaveRecord(sent->hwnd);
  return CallNextHookEx(nullptr, code, wParam, lParam);
}
