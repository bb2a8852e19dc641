// errno in the numberings that the seam uses on every system: files have those of
// platform/SystemError.h, sockets those of the Windows Sockets standard.
#pragma once

namespace ostrel::platform {

/// 0 stays 0.
int ErrorNumberOf(int errnoValue);
/// The number of the current errno.
int LastErrorNumber();

// The numbers that the seam's own code gives, of the Windows Sockets standard.
inline constexpr int kTooManySockets = 10024;
inline constexpr int kNotASocket = 10038;
inline constexpr int kNoBuffers = 10055;
inline constexpr int kNotConnected = 10057;
inline constexpr int kShutDown = 10058;

/// 10107 for a number that has no counterpart.
int SocketErrorOf(int systemError);
/// The same for a result of getaddrinfo.
int LookUpErrorOf(int result);

}  // namespace ostrel::platform
