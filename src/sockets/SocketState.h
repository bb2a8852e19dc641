// The states of a socket; the numbers are part of the server's interface.
#pragma once

#include <cstdint>

namespace ostrel {

enum class SocketState : std::int16_t {
  kClosed = 0,
  kOpen = 1,  // reserved, never entered
  kListening = 2,
  kConnectionPending = 3,  // reserved, never entered
  kResolvingHost = 4,
  kHostResolved = 5,
  kConnecting = 6,
  kConnected = 7,
  kClosing = 8,  // this side has ended sending and waits for the peer's close
  kError = 9,
};

}  // namespace ostrel
