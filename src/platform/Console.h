// Standard input, output and error, the arguments and the signals of programs without a window.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "util/Text.h"

namespace ostrel::platform {

/// The arguments without the program's name. argv is main's; Windows asks the system instead, so
/// that every character arrives.
std::vector<Text> ProgramArguments(int argc, char* argv[]);

/// Everything up to the end of standard input, byte for byte; nothing when it cannot be read.
std::optional<std::string> ReadStandardInput();

/// UTF-8 on POSIX, the console's own encoding (UTF-8 into a file or pipe) on Windows. Written whole
/// and at once; a reader that has gone away is ignored.
void WriteStandardOutput(TextView text);
void WriteStandardError(TextView text);
/// Byte for byte.
void WriteStandardOutputBytes(std::string_view bytes);

/// The ways in which a person or the system tells a program without a window something.
enum class ConsoleSignal {
  kExit,  // SIGINT, SIGTERM, and SIGHUP unless it was ignored at the start; Ctrl-C, Ctrl-Break
  kSystemEnds,  // the console's close, log-off, shut-down: the system ends the program in some
                // seconds, its exit ends the wait; never raised on POSIX
  kUser,        // SIGUSR1, whose meaning is the program's own; never raised on Windows
};

/// The handler runs on the event loop's thread, from the loop. Each signal has one handler; an
/// empty one restores the system's own behaviour.
void OnConsoleSignal(ConsoleSignal signal, std::function<void()> handler);

}  // namespace ostrel::platform
