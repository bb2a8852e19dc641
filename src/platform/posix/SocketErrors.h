// errno in the numbering of the Windows Sockets standard.
#pragma once

namespace ostrel::platform {

/// 10107 for a number that has no counterpart.
int SocketErrorOf(int systemError);
/// The same for a result of getaddrinfo.
int LookUpErrorOf(int result);

}  // namespace ostrel::platform
