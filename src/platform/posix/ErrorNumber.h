// The system's errno in the numbering of platform/SystemError.h.
#pragma once

namespace ostrel::platform {

/// 0 stays 0.
int ErrorNumberOf(int errnoValue);
/// Of the current errno.
int LastErrorNumber();

}  // namespace ostrel::platform
