#include "platform/posix/HostAddress.h"

#include <netdb.h>
#include <netinet/in.h>
#include <sys/socket.h>

#include <memory>

#include "platform/posix/SocketErrors.h"

namespace ostrel::platform {

SocketResult<std::uint32_t> FindHostAddress(const std::string& host) {
  addrinfo hints{};
  hints.ai_family = AF_INET;
  hints.ai_socktype = SOCK_STREAM;
  addrinfo* first = nullptr;
  const int result = getaddrinfo(host.c_str(), nullptr, &hints, &first);
  if (result != 0 || first == nullptr) {
    return {0, LookUpErrorOf(result == 0 ? EAI_NONAME : result)};
  }
  const std::unique_ptr<addrinfo, decltype(&freeaddrinfo)> addresses(first, freeaddrinfo);
  return {ntohl(reinterpret_cast<const sockaddr_in*>(first->ai_addr)->sin_addr.s_addr), 0};
}

}  // namespace ostrel::platform
