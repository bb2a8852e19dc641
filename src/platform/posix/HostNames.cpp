#include <ifaddrs.h>
#include <net/if.h>
#include <netinet/in.h>
#include <unistd.h>

#include <memory>

#include "platform/Sockets.h"
#include "platform/posix/LookUpThread.h"

namespace ostrel::platform {
namespace {

/// The address of an interface that is up and leads out of the machine.
std::optional<std::uint32_t> OutwardAddress(const ifaddrs& interface) {
  const bool outward =
      (interface.ifa_flags & IFF_UP) != 0 && (interface.ifa_flags & IFF_LOOPBACK) == 0;
  if (!outward || interface.ifa_addr == nullptr || interface.ifa_addr->sa_family != AF_INET) {
    return std::nullopt;
  }
  return ntohl(reinterpret_cast<const sockaddr_in*>(interface.ifa_addr)->sin_addr.s_addr);
}

class PosixHostNames final : public HostNames {
 public:
  std::string OwnName() override {
    char name[256] = {};
    gethostname(name, sizeof name - 1);
    return name;
  }

  /// The name would not do: many systems give it an address of the loopback.
  std::uint32_t OwnAddress() override {
    ifaddrs* first = nullptr;
    getifaddrs(&first);
    const std::unique_ptr<ifaddrs, decltype(&freeifaddrs)> interfaces(first, freeifaddrs);
    for (const ifaddrs* interface = first; interface != nullptr; interface = interface->ifa_next) {
      if (const auto address = OutwardAddress(*interface)) return *address;
    }
    return INADDR_LOOPBACK;
  }

  std::optional<std::uint32_t> AddressOf(std::string_view host) override {
    const auto found = FindHostAddress(std::string(host));
    return found.error == 0 ? std::optional(found.value) : std::nullopt;
  }
};

}  // namespace

HostNames& SystemHostNames() {
  static PosixHostNames names;
  return names;
}

}  // namespace ostrel::platform
