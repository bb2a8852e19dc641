// What the socket transport needs of the socket server: to answer a client and to let it go.
#pragma once

#include <cstdint>

#include "util/Text.h"

namespace ostrel {

class ClientConnections {
 public:
  virtual ~ClientConnections() = default;

  /// Queues the data for the connection. Never raises: Err (util/RunTimeError.h) tells afterwards
  /// what went wrong, number 0 for nothing.
  virtual void SendData(TextView data, std::int16_t socket) = 0;
  /// Ends the connection once what is queued has gone out. Raises no event of it.
  virtual void CloseSocket(std::int16_t socket) = 0;
};

}  // namespace ostrel
