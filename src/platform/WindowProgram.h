// A program that has a window is entered by the system's own way; it defines this.
#pragma once

#include "util/Text.h"

namespace ostrel::platform {

/// commandLine: as it was written, without the program's name. Returns the exit code.
int RunWindowProgram(TextView commandLine);

}  // namespace ostrel::platform
