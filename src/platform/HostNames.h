// The machine's own name and address, and the address of another by name.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace ostrel::platform {

/// Addresses are IPv4 numbers as in platform/Sockets.h.
class HostNames {
 public:
  virtual ~HostNames() = default;
  virtual std::string OwnName() = 0;
  /// One that other machines can reach where there is one, else 127.0.0.1.
  virtual std::uint32_t OwnAddress() = 0;
  /// Waits for the name service, which may take seconds.
  virtual std::optional<std::uint32_t> AddressOf(std::string_view host) = 0;
};

HostNames& SystemHostNames();

}  // namespace ostrel::platform
