// Product paths as the system takes them, and what its errors are called above the seam.
#pragma once

#include <string>

#include "util/Text.h"

namespace ostrel::platform {

/// An absolute path, of any length. Empty when the path cannot be one (empty, or with a NUL in it),
/// which every system call refuses.
std::wstring SystemPath(TextView path);

std::wstring ToWide(TextView text);
Text FromWide(std::wstring_view text);

/// The system's number for this failure, with what differs between its calls made one. 0 stays 0.
int ErrorNumberOf(unsigned long systemError);
/// The number of the calling thread's last error; never 0.
int LastErrorNumber();

}  // namespace ostrel::platform
