// The program's icon, from its resources.
#pragma once

#include <windows.h>

namespace ostrel::platform {

/// The resource's number: the first of the file, which the shell shows for it.
inline constexpr int kProgramIcon = 1;

/// size: pixels. Lives as long as the program. The system's own icon in a program that has none.
HICON ProgramIcon(int size);

/// The two sizes that a window shows at this density: in its frame and when tasks are switched.
HICON SmallProgramIcon(int dpi);
HICON LargeProgramIcon(int dpi);

/// Gives the window both.
void SetWindowIcons(HWND window, int dpi);

}  // namespace ostrel::platform
