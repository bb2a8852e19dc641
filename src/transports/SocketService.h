// The socket server as the communication modes start and stop it.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>

#include "transports/ClientConnections.h"

namespace ostrel {

class SocketService : public ClientConnections {
 public:
  virtual bool ServerStarted() const = 0;
  /// Listens on all interfaces. False when the port cannot be had. Events may be dispatched before
  /// it returns.
  virtual bool StartServer(std::int32_t port) = 0;
  /// Closes the listener only: no new connections, those that are there stay.
  virtual void StopListening() = 0;
  /// Closes the listener and every connection, without an event for those.
  virtual void StopServer() = 0;
};

using SocketServiceFactory = std::function<std::unique_ptr<SocketService>()>;

}  // namespace ostrel
