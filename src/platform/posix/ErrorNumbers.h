// errno in the numberings that the seam uses on every system: files have those of
// platform/SystemError.h, sockets those of the Windows Sockets standard.
#pragma once

namespace ostrel::platform {

/// 0 stays 0.
int ErrorNumberOf(int errnoValue);
/// The number of the current errno.
int LastErrorNumber();

/// 10107 for a number that has no counterpart.
int SocketErrorOf(int systemError);
/// The same for a result of getaddrinfo.
int LookUpErrorOf(int result);

}  // namespace ostrel::platform
