// The reports of an accepted socket to its server. Index is the connection index that the socket
// was given with SetCallback.
#pragma once

#include <cstdint>

#include "util/Text.h"

namespace ostrel {

class ISocketServer {
 public:
  virtual ~ISocketServer() = default;
  /// The peer has closed. The socket is still there, and its received bytes too.
  virtual void OnClose(std::int16_t Index) = 0;
  virtual void OnConnect(std::int16_t Index) = 0;
  /// requestID: handle of the connection that waits to be accepted.
  virtual void OnConnectionRequest(std::int16_t Index, std::int32_t requestID) = 0;
  /// bytesTotal: bytes now held in the socket's receive buffer.
  virtual void OnDataArrival(std::int16_t Index, std::int32_t bytesTotal) = 0;
  /// The socket is gone. The arguments are those of SocketEvents; changes of the last one and of
  /// the description are looked at by nobody.
  virtual void OnError(std::int16_t Index, std::uint16_t Number, Text& Description,
                       std::int32_t Scode, TextView Source, TextView HelpFile,
                       std::int32_t HelpContext, bool& CancelDisplay) = 0;
  /// Everything that was accepted for sending has gone to the network.
  virtual void OnSendComplete(std::int16_t Index) = 0;
  /// Bytes that the network has just taken, and those that still wait.
  virtual void OnSendProgress(std::int16_t Index, std::int32_t bytesSent,
                              std::int32_t bytesRemaining) = 0;
};

}  // namespace ostrel
