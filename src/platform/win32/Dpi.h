// Sizes on a screen: dots per inch of a window, lengths at that density, and the system's own font.
// The calls behind it came with later versions of Windows and are looked up; a system without them
// has one density for all screens.
#pragma once

#include <windows.h>

#include "platform/win32/SystemHandles.h"

namespace ostrel::platform {

inline constexpr int kUsualDpi = 96;

/// Of the screen that the window is on.
int DpiOf(HWND window);
int SystemDpi();

/// pixels: at 96 dots per inch.
inline int Scaled(int pixels, int dpi) { return MulDiv(pixels, dpi, kUsualDpi); }

/// A system metric (SM_...) at this density.
int SystemMetric(int metric, int dpi);

/// The font of message boxes, which the user chooses for all programs.
LOGFONTW MessageFontAt(int dpi);
UniqueFont MakeMessageFont(int dpi);

}  // namespace ostrel::platform
