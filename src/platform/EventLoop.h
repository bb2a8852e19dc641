// The user-interface thread's event loop: socket notifications, timers, signals. Everything here
// belongs to the one thread that runs the loop. An exception that leaves a handler is a defect of
// the handler; the loop ends the program on it.
#pragma once

#include <chrono>
#include <functional>
#include <memory>

namespace ostrel::platform {

struct TimerEntry;

/// Dispatches every event that waits at this moment and returns at once. May be called from inside
/// a handler: other handlers then run before it returns.
void DoEvents();

/// Dispatches events as they come for this long, sleeping between them; ends early on
/// QuitEventLoop. May be called from inside a handler.
void DoEventsFor(std::chrono::milliseconds time);

/// Dispatches events until QuitEventLoop; returns the exit code given to it.
int RunEventLoop();
/// Makes RunEventLoop return as soon as the handlers on the stack have returned. Before
/// RunEventLoop has begun, makes it return at once.
void QuitEventLoop(int exitCode);

/// Whether the handler that asks runs inside another one that is waiting: in its DoEvents, in a
/// message box or a menu that it opened. False from the outermost loop. What blocks for long must
/// not be entered then, for it would hold up the other handler.
bool IsNestedHandler();

/// A recurring timer. A tick is raised on the loop at the earliest one interval after the timer was
/// enabled or last ticked; ticks that come due while the loop is held up are raised once. A tick
/// that comes due while the timer's own handler is on the stack is skipped. Due timers get their
/// turn however many other events there are. The handler may disable, enable or destroy the timer.
class Timer {
 public:
  /// Created disabled. interval: at least 1 ms.
  Timer(std::chrono::milliseconds interval, std::function<void()> handler);
  ~Timer();
  Timer(const Timer&) = delete;
  Timer& operator=(const Timer&) = delete;

  bool Enabled() const;
  /// Enabling an enabled timer changes nothing: its next tick stays where it is.
  void SetEnabled(bool enabled);
  /// Makes the next tick of an enabled timer due at once; the one after it comes an interval later.
  /// Called from the timer's own handler, it takes effect when that returns. Other events get their
  /// turn between such ticks, so a handler that always asks for another holds up nobody.
  void TickSoon();

 private:
  std::shared_ptr<TimerEntry> oEntry;
};

}  // namespace ostrel::platform
