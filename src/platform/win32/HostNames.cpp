#include <winsock2.h>

#include <cstring>

#include "platform/Sockets.h"

namespace ostrel::platform {
namespace {

class WindowsHostNames final : public HostNames {
 public:
  std::string OwnName() override {
    char name[256] = {};
    gethostname(name, sizeof name - 1);
    return name;
  }

  std::uint32_t OwnAddress() override { return AddressOf(OwnName()).value_or(INADDR_LOOPBACK); }

  std::optional<std::uint32_t> AddressOf(std::string_view host) override {
    const hostent* const found = gethostbyname(std::string(host).c_str());
    if (found == nullptr || found->h_addrtype != AF_INET || found->h_addr_list[0] == nullptr) {
      return std::nullopt;
    }
    std::uint32_t address = 0;
    std::memcpy(&address, found->h_addr_list[0], sizeof address);
    return ntohl(address);
  }
};

}  // namespace

HostNames& SystemHostNames() {
  static WindowsHostNames names;
  return names;
}

}  // namespace ostrel::platform
