// The system's file times as the program's points in time.
#pragma once

#include <windows.h>

#include <cstdint>

#include "platform/Clock.h"

namespace ostrel::platform {

TimePoint FromFileTime(const FILETIME& time);
FILETIME ToFileTime(TimePoint time);

/// In units of 100 ns, which is what a FILETIME counts.
std::int64_t TicksOf(const FILETIME& time);

}  // namespace ostrel::platform
