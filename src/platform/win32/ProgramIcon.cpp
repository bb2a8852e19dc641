#include "platform/win32/ProgramIcon.h"

#include <map>

#include "platform/win32/Dpi.h"
#include "platform/win32/SystemHandles.h"

namespace ostrel::platform {

HICON ProgramIcon(int size) {
  static std::map<int, UniqueIcon> icons;
  UniqueIcon& icon = icons[size];
  if (icon == nullptr) {
    icon.reset(
        static_cast<HICON>(LoadImageW(GetModuleHandleW(nullptr), MAKEINTRESOURCEW(kProgramIcon),
                                      IMAGE_ICON, size, size, LR_DEFAULTCOLOR)));
  }
  return icon != nullptr ? icon.get() : LoadIconW(nullptr, IDI_APPLICATION);
}

HICON SmallProgramIcon(int dpi) { return ProgramIcon(SystemMetric(SM_CXSMICON, dpi)); }
HICON LargeProgramIcon(int dpi) { return ProgramIcon(SystemMetric(SM_CXICON, dpi)); }

void SetWindowIcons(HWND window, int dpi) {
  const auto set = [window](WPARAM kind, HICON icon) {
    SendMessageW(window, WM_SETICON, kind, reinterpret_cast<LPARAM>(icon));
  };
  set(ICON_SMALL, SmallProgramIcon(dpi));
  set(ICON_BIG, LargeProgramIcon(dpi));
}

}  // namespace ostrel::platform
