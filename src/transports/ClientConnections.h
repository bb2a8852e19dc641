// What the socket transport needs of the socket server: to answer a client and to let it go.
#pragma once

#include <cstddef>
#include <cstdint>

#include "util/Text.h"

namespace ostrel {

class ClientConnections {
 public:
  virtual ~ClientConnections() = default;

  /// Queues the data for the connection. Never raises: Err (util/RunTimeError.h) tells afterwards
  /// what went wrong, number 0 for nothing. Data for which there is an error is not queued.
  virtual void SendData(TextView data, std::int16_t socket) = 0;
  /// Ends the connection once what is queued has gone out; done again, at once. Raises no event of
  /// it, and no error.
  virtual void CloseSocket(std::int16_t socket) = 0;

  /// Bytes queued that the network has not taken yet; 0 once the connection is gone.
  virtual std::size_t BytesToSend(std::int16_t socket) const = 0;
  /// Bytes that the network has taken of all that was sent on the connection.
  virtual std::uint64_t BytesSent(std::int16_t socket) const = 0;
};

}  // namespace ostrel
