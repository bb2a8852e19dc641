// The socket server as the socket transport sees it: where it listens, what it sends to a client
// and how it lets a client go. What clients do comes back through the transport's oSocketServer_
// events.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>

#include "gateway/Trace.h"
#include "util/Text.h"

namespace ostrel {

class SocketTransport;

class SocketService {
 public:
  virtual ~SocketService() = default;

  virtual bool ServerStarted() const = 0;
  /// Listens on all interfaces. False when the port cannot be had. Events may be dispatched before
  /// it returns.
  virtual bool StartServer(std::int32_t port) = 0;
  /// Closes the listener only: no new connections, those that are there stay.
  virtual void StopListening() = 0;
  /// Closes the listener and every connection, without an event for those.
  virtual void StopServer() = 0;

  /// Queues the bytes for the connection. Never raises: Err (util/RunTimeError.h) tells afterwards
  /// what went wrong, number 0 for nothing. Data for which there is an error is not queued.
  virtual void SendData(std::string_view bytes, std::int16_t socket) = 0;
  /// From now on small pieces to the connection leave together, or, switched off, what was held
  /// back leaves.
  virtual void GatherPieces(std::int16_t socket, bool on) = 0;
  /// Ends the connection once what is queued has gone out; done again, at once. Neither an event
  /// nor an error follows.
  virtual void CloseSocket(std::int16_t socket) = 0;
  /// Bytes queued that the network has not taken yet; 0 once the connection is gone.
  virtual std::size_t BytesToSend(std::int16_t socket) const = 0;
  /// Bytes that the network has taken of all that was sent on the connection.
  virtual std::uint64_t BytesSent(std::int16_t socket) const = 0;
};

/// Creates a server that has not been started, its events wired to the transport.
using SocketServiceFactory =
    std::function<std::unique_ptr<SocketService>(SocketTransport& transport, Trace& trace)>;

}  // namespace ostrel
