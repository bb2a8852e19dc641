// What the person or system that started the program may tell it without a window.
#pragma once

#include <functional>

namespace ostrel::platform {

enum class ConsoleSignal {
  kExit,           // SIGINT, SIGTERM; Ctrl-C, Ctrl-Break or the console's close on Windows
  kToggleCommLog,  // SIGUSR1; never raised on Windows
};

/// The handler runs on the event loop's thread, from the loop. One handler a signal; an empty one
/// restores the system's own behaviour.
void OnConsoleSignal(ConsoleSignal signal, std::function<void()> handler);

}  // namespace ostrel::platform
