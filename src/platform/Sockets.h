// The operations on non-blocking IPv4 sockets. Error numbers are those of the Windows Sockets
// standard on every system, 0 is success. What a socket notifies of, and when again, is in
// platform/SocketNotifications.h.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace ostrel::platform {

using SocketHandle = std::int32_t;
inline constexpr SocketHandle kNoSocket = -1;

inline constexpr int kWouldBlock = 10035;

enum class SocketProtocol : std::int16_t { kTcp = 0, kUdp = 1 };

struct SocketAddress {
  std::uint32_t ip = 0;  // 127.0.0.1 is 0x7F000001; 0 is any
  std::uint16_t port = 0;
};

template <typename T>
struct SocketResult {
  T value{};
  int error = 0;  // value counts only when this is 0
};

struct SocketProperties {
  SocketProtocol protocol = SocketProtocol::kTcp;
  std::int32_t sendBytes = 0;  // size of the system's buffer
  std::int32_t receiveBytes = 0;
  SocketAddress local;  // zeroes when not bound
  SocketAddress peer;   // zeroes when not connected
};

/// Abstract so that tests can play the network. A handle that is not open gives 10038. Handles are
/// used again as soon as they are closed.
class SocketLayer {
 public:
  virtual ~SocketLayer() = default;

  /// Not inherited by child processes.
  virtual SocketResult<SocketHandle> Open(SocketProtocol protocol) = 0;
  /// Ends its notifications too. What was sent goes on to the peer.
  virtual int Close(SocketHandle socket) = 0;

  /// A port that another socket listens on at the same address is in use: 10048. One whose listener
  /// has gone is free at once, also while connections of it are still open or linger.
  virtual int Bind(SocketHandle socket, SocketAddress address) = 0;
  /// At least `backlog` connections may wait to be accepted.
  virtual int Listen(SocketHandle socket, int backlog) = 0;
  /// The handle of the connection that waited longest. A peer that vanishes without a word is found
  /// out: the first probe goes out when nothing has come for a minute, then one every ten seconds.
  virtual SocketResult<SocketHandle> Accept(SocketHandle listener) = 0;
  /// kWouldBlock: the connect notification tells how it ended.
  virtual int Connect(SocketHandle socket, SocketAddress peer) = 0;
  /// Switched on, what is sent waits until it fills a packet, at most a fifth of a second; switched
  /// off, all of it leaves. For a message that is sent in many pieces. Where a system cannot do so,
  /// every piece leaves at once. Streams only; a failure changes nothing and is not told.
  virtual void GatherPieces(SocketHandle socket, bool on) = 0;
  /// Ends the sending direction.
  virtual int ShutdownSend(SocketHandle socket) = 0;

  /// Bytes accepted, which may be fewer than offered; they leave at once, however few they are,
  /// unless pieces are gathered. A datagram socket sends to `peer`, others take none. 10057 on a
  /// stream before its connect notification. Never raises a signal.
  virtual SocketResult<std::int32_t> Send(SocketHandle socket, std::span<const char> bytes,
                                          const SocketAddress* peer) = 0;
  /// Bytes received; 0 when the peer has finished. A datagram socket fills in `peer`, if given.
  virtual SocketResult<std::int32_t> Receive(SocketHandle socket, std::span<char> buffer,
                                             SocketAddress* peer) = 0;

  virtual SocketResult<SocketProperties> Properties(SocketHandle socket) = 0;
};

SocketLayer& SystemSockets();

/// The machine's own name and address, and the addresses of other machines by name. Addresses are
/// IPv4 numbers as in SocketAddress.
class HostNames {
 public:
  virtual ~HostNames() = default;
  virtual std::string OwnName() = 0;
  /// An address that other machines can reach where there is one, else 127.0.0.1.
  virtual std::uint32_t OwnAddress() = 0;
  /// Waits for the name service, which may take seconds.
  virtual std::optional<std::uint32_t> AddressOf(std::string_view host) = 0;
};

HostNames& SystemHostNames();

}  // namespace ostrel::platform
