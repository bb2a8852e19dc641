// The event loop's side for the Windows files: a wait for a kernel object while events are
// dispatched, and a frame for the handlers of a window procedure. Not for code above the seam.
#pragma once

#include <windows.h>

#include <chrono>
#include <functional>

namespace ostrel::platform {

/// Dispatches events as they come until the object is signalled (true), or this time has passed or
/// the loop was told to quit or the wait is cancelled (false). A null handle is never signalled.
/// `cancelled` is asked before the object is looked at, each time that a handler may have run.
bool DoEventsUntilSignalled(HANDLE object, std::chrono::steady_clock::time_point deadline,
                            const std::function<bool()>& cancelled = {});

/// Whether the loop was told to quit and has not returned yet.
bool LoopIsToQuit();

/// A handler of the caller's, which outlives the call. Unlike std::function it needs no memory: a
/// window procedure must not fail before its handlers run.
class HandlerRef {
 public:
  template <typename Handler>
  HandlerRef(const Handler& handler)  // NOLINT(google-explicit-constructor): made of any handler
      : oHandler(&handler), Run([](const void* run) { (*static_cast<const Handler*>(run))(); }) {}
  void operator()() const { Run(oHandler); }

 private:
  const void* oHandler;
  void (*Run)(const void* handler);
};

/// For window procedures, around the handlers of a message. Where it came through a loop of the
/// system's own (a message box's, a menu's) the handlers count as nested, and every timer that is
/// due gets its turn after them: timer messages come last in those loops.
void RunHandlers(HWND window, UINT message, HandlerRef handlers) noexcept;

}  // namespace ostrel::platform
