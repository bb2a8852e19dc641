// What the Windows files need of the event loop: a wait for a kernel object while events are
// dispatched, and the timers' turn from inside a window procedure. Not for code above the seam.
#pragma once

#include <windows.h>

#include <chrono>

namespace ostrel::platform {

/// Dispatches events as they come until the object is signalled (true), or this time has passed or
/// the loop was told to quit (false). A null handle is never signalled.
bool DoEventsUntilSignalled(HANDLE object, std::chrono::steady_clock::time_point deadline);

/// Gives every timer that is due its tick. A window procedure with many messages calls it after
/// each: in the loops of message boxes and menus, timer messages come last.
void TickDueTimers() noexcept;

}  // namespace ostrel::platform
