// What the person or system that started the program may tell it without a window.
#pragma once

#include <functional>

namespace ostrel::platform {

enum class ConsoleSignal {
  kExit,  // SIGINT, SIGTERM, and SIGHUP unless it was ignored at the start; Ctrl-C, Ctrl-Break
  kSystemEnds,     // the console's close, log-off, shut-down: the system ends the program in some
                   // seconds, its exit ends the wait; never raised on POSIX
  kToggleCommLog,  // SIGUSR1; never raised on Windows
};

/// The handler runs on the event loop's thread, from the loop. One handler a signal; an empty one
/// restores the system's own behaviour.
void OnConsoleSignal(ConsoleSignal signal, std::function<void()> handler);

}  // namespace ostrel::platform
