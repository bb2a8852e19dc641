// Standard input, output and error, and the program's arguments, for programs without a window.
#pragma once

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

}  // namespace ostrel::platform
