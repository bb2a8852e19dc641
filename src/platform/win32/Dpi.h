// Sizes on a screen: dots per inch of a window, and lengths, the system's own font and the
// program's icon at that density. The calls behind it came with later versions of Windows and are
// looked up; a system without them has one density for all screens.
#pragma once

#include <windows.h>

#include "platform/win32/SystemHandles.h"

namespace ostrel::platform {

inline constexpr int kUsualDpi = 96;

/// The density of the screen that the window is on.
int DpiOf(HWND window);
int SystemDpi();

/// pixels: at 96 dots per inch.
inline int Scaled(int pixels, int dpi) { return MulDiv(pixels, dpi, kUsualDpi); }

/// A system metric (SM_...) at this density.
int SystemMetric(int metric, int dpi);

/// The font of message boxes, which the user chooses for all programs.
LOGFONTW MessageFontAt(int dpi);
UniqueFont MakeMessageFont(int dpi);

/// The number of the program's icon among its resources: the first, which the shell shows for the
/// file.
inline constexpr int kProgramIcon = 1;
/// The program's icon of this size in pixels; the system's own in a program that has none. It lives
/// as long as the program.
HICON ProgramIcon(int size);
/// The two sizes that a window shows at this density: in its frame and when tasks are switched.
HICON SmallProgramIcon(int dpi);
HICON LargeProgramIcon(int dpi);
/// Gives the window both.
void SetWindowIcons(HWND window, int dpi);

}  // namespace ostrel::platform
