// The one call of the name service. Any thread.
#pragma once

#include <string>

#include "platform/Sockets.h"

namespace ostrel::platform {

/// The first IPv4 address of the host. May take seconds.
SocketResult<std::uint32_t> FindHostAddress(const std::string& host);

}  // namespace ostrel::platform
