#include "platform/win32/Dpi.h"

#include <map>

#include "platform/win32/SystemHandles.h"

namespace ostrel::platform {
namespace {

/// Null where this Windows has no such function.
template <typename Function>
Function UserFunction(const char* name) {
  const FARPROC found = GetProcAddress(GetModuleHandleW(L"user32.dll"), name);
  return reinterpret_cast<Function>(reinterpret_cast<void*>(found));
}

}  // namespace

int SystemDpi() {
  const HDC screen = GetDC(nullptr);
  const int dpi = GetDeviceCaps(screen, LOGPIXELSY);
  ReleaseDC(nullptr, screen);
  return dpi > 0 ? dpi : kUsualDpi;
}

int DpiOf(HWND window) {
  static const auto ask = UserFunction<UINT(WINAPI*)(HWND)>("GetDpiForWindow");
  const UINT dpi = ask != nullptr ? ask(window) : 0;
  return dpi != 0 ? static_cast<int>(dpi) : SystemDpi();
}

int SystemMetric(int metric, int dpi) {
  static const auto ask = UserFunction<int(WINAPI*)(int, UINT)>("GetSystemMetricsForDpi");
  if (ask != nullptr) return ask(metric, static_cast<UINT>(dpi));
  return MulDiv(GetSystemMetrics(metric), dpi, SystemDpi());
}

LOGFONTW MessageFontAt(int dpi) {
  using Ask = BOOL(WINAPI*)(UINT, UINT, void*, UINT, UINT);
  static const auto ask = UserFunction<Ask>("SystemParametersInfoForDpi");
  NONCLIENTMETRICSW metrics{};
  metrics.cbSize = sizeof metrics;
  const UINT size = metrics.cbSize;
  if (ask != nullptr && ask(SPI_GETNONCLIENTMETRICS, size, &metrics, 0, static_cast<UINT>(dpi))) {
    return metrics.lfMessageFont;
  }
  SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, size, &metrics, 0);
  metrics.lfMessageFont.lfHeight = MulDiv(metrics.lfMessageFont.lfHeight, dpi, SystemDpi());
  return metrics.lfMessageFont;
}

UniqueFont MakeMessageFont(int dpi) {
  const LOGFONTW font = MessageFontAt(dpi);
  return UniqueFont(CreateFontIndirectW(&font));
}

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
