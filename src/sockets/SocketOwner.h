// What the registry of MSocketSupport knows of a socket. Owners live in shared pointers: the
// registry holds none, but whoever hands over a notification holds one until it returns, so that a
// handler may let go of the socket that called it.
#pragma once

#include <cstdint>
#include <exception>
#include <memory>

#include "platform/SocketNotifications.h"

namespace ostrel {

class SocketOwner : public std::enable_shared_from_this<SocketOwner> {
 public:
  virtual void OnNotification(platform::SocketEvent event, int error) = 0;
  /// ip counts only when error is 0.
  virtual void PostGetHostEvent(int error, std::uint32_t ip) = 0;
  /// An exception that left one of the two above, a handler of the owner's events included.
  virtual void OnException(const std::exception_ptr& exception) = 0;

 protected:
  ~SocketOwner() = default;
};

}  // namespace ostrel
