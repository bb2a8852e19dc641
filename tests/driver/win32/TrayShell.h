// A shell of the tests' own: programs that speak to the notification area find it before the
// system's, and what they say is written down. It knows how Wine passes an icon's record on.
#pragma once

#include "tests/driver/win32/Protocol.h"

namespace ostrel::driver {

/// In front of the system's from the first call on.
void OpenTrayShell();

/// The operations since the last call, six fields each: 0 add, 1 modify or 2 delete, the window,
/// the icon's number, the flags, the callback message, the tip.
Fields TakeTrayOperations();

}  // namespace ostrel::driver
