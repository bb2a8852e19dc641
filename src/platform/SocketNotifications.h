// The events of sockets and name look-ups, delivered on the event loop's thread in the order in
// which they happened: WSAAsyncSelect and a hidden window on Windows, poll elsewhere.
//
// The rules, the same on every system:
//   accept   comes when a connection waits, and again after each Accept while more wait. When the
//            program has no descriptor left for one, it comes again once a socket was closed, or
//            after about 100 ms.
//   connect  comes once for each Connect that gave kWouldBlock, with the error number.
//   read     comes when there is something to receive, and again after each Receive while there is
//            more. A socket that is not received from is not announced again.
//   write    comes after a connection was made or accepted, and after each Send that took something
//            or would have blocked, as soon as there is room for more.
//   close    comes once, when the peer has finished and everything was received: error 0 at an
//            orderly end, 10054 at a reset (0 as well under Wine). The last notification of a
//            socket.
// A notification may still come for a socket that was closed or used in the meantime; Receive and
// Accept then give kWouldBlock.
#pragma once

#include <string_view>

#include "platform/Sockets.h"

namespace ostrel::platform {

/// Never 0.
using LookUpHandle = std::int32_t;

/// The numbers are part of error reports.
enum class SocketEvent : std::int16_t {
  kRead = 1,
  kWrite = 2,
  kAccept = 8,
  kConnect = 16,
  kClose = 32,
};

/// Must not raise.
class SocketSink {
 public:
  virtual void OnSocket(SocketHandle socket, SocketEvent event, int error) noexcept = 0;
  virtual void OnLookUp(LookUpHandle lookUp, int error, std::uint32_t ip) noexcept = 0;

 protected:
  ~SocketSink() = default;
};

class SocketNotifications {
 public:
  virtual ~SocketNotifications() = default;

  /// Starts the system's socket service; the largest datagram in bytes.
  virtual SocketResult<std::int32_t> StartUp() = 0;
  virtual void CleanUp() = 0;

  /// Makes what notifications go through; they are handed to the sink until Disconnect. False when
  /// that cannot be had. Once at a time.
  virtual bool ConnectSink(SocketSink& sink) = 0;
  virtual void DisconnectSink() = 0;

  /// Starts, or ends, the notifications of a socket. 0, or the error number.
  virtual int Select(SocketHandle socket) = 0;
  virtual int Unselect(SocketHandle socket) = 0;

  /// Looks up a host's IPv4 address without holding up the loop.
  virtual SocketResult<LookUpHandle> StartLookUp(std::string_view host) = 0;
  /// The look-up's notification will not come.
  virtual void CancelLookUp(LookUpHandle lookUp) = 0;
};

SocketNotifications& SystemSocketNotifications();

}  // namespace ostrel::platform
