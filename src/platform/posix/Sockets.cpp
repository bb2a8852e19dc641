// The socket operations over POSIX sockets. Handles are places in a table (SocketTable), not
// descriptors, so that they behave as on Windows. Each operation that takes something out of a
// socket or puts something in tells the socket's watch, which then announces the next event by the
// rules of platform/SocketNotifications.h.
#include "platform/Sockets.h"

#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <utility>

#include "platform/posix/ErrorNumbers.h"
#include "platform/posix/SocketTable.h"

namespace ostrel::platform {
namespace {

sockaddr_in ToSystem(SocketAddress address) {
  sockaddr_in system{};
  system.sin_family = AF_INET;
  system.sin_addr.s_addr = htonl(address.ip);
  system.sin_port = htons(address.port);
  return system;
}

SocketAddress FromSystem(const sockaddr_in& system) {
  return {ntohl(system.sin_addr.s_addr), ntohs(system.sin_port)};
}

template <typename Query>
SocketAddress AskAddress(int descriptor, Query query) {
  sockaddr_in system{};
  socklen_t size = sizeof system;
  const int result = query(descriptor, reinterpret_cast<sockaddr*>(&system), &size);
  return result == 0 ? FromSystem(system) : SocketAddress{};
}

int AskOption(int descriptor, int option) {
  int value = 0;
  socklen_t size = sizeof value;
  getsockopt(descriptor, SOL_SOCKET, option, &value, &size);
  return value;
}

int ResultOf(int result) { return result == 0 ? 0 : SocketErrorOf(errno); }

/// Without this the end of a response waits, about 40 ms, until the peer has acknowledged the bytes
/// before it.
void SendAtOnce(int descriptor) {
  const int on = 1;
  setsockopt(descriptor, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
}

/// Has an idle connection probed after a minute, and given up after six probes without a reply.
void ProbeWhenIdle(int descriptor) {
  constexpr std::pair<int, int> kSeconds[] = {
      {TCP_KEEPIDLE, 60}, {TCP_KEEPINTVL, 10}, {TCP_KEEPCNT, 6}};
  const int on = 1;
  setsockopt(descriptor, SOL_SOCKET, SO_KEEPALIVE, &on, sizeof on);
  for (const auto& [option, value] : kSeconds) {
    setsockopt(descriptor, IPPROTO_TCP, option, &value, sizeof value);
  }
}

class PosixSockets final : public SocketLayer {
 public:
  PosixSockets() { TheSockets(); }  // made first, so that it is there until these have gone

  SocketResult<SocketHandle> Open(SocketProtocol protocol) override;
  int Close(SocketHandle socket) override { return TheSockets().Close(socket) ? 0 : kNotASocket; }
  int Bind(SocketHandle socket, SocketAddress address) override;
  int Listen(SocketHandle socket, int backlog) override;
  SocketResult<SocketHandle> Accept(SocketHandle listener) override;
  int Connect(SocketHandle socket, SocketAddress peer) override;
  void GatherPieces(SocketHandle socket, bool on) override;
  int ShutdownSend(SocketHandle socket) override;
  SocketResult<std::int32_t> Send(SocketHandle socket, std::span<const char> bytes,
                                  const SocketAddress* peer) override;
  SocketResult<std::int32_t> Receive(SocketHandle socket, std::span<char> buffer,
                                     SocketAddress* peer) override;
  SocketResult<SocketProperties> Properties(SocketHandle socket) override;

 private:
  static SocketResult<SocketHandle> Adopt(int descriptor, SocketRole role);
};

SocketResult<SocketHandle> PosixSockets::Adopt(int descriptor, SocketRole role) {
  const SocketHandle handle = TheSockets().Add(descriptor, role);
  return {handle, handle == kNoSocket ? kNoBuffers : 0};
}

SocketResult<SocketHandle> PosixSockets::Open(SocketProtocol protocol) {
  const bool tcp = protocol == SocketProtocol::kTcp;
  const int kind = tcp ? SOCK_STREAM : SOCK_DGRAM;
  const int descriptor = socket(AF_INET, kind | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
  if (descriptor < 0) {
    return {kNoSocket, SocketErrorOf(errno)};
  }
  if (tcp) {  // else a restarted server waits minutes for its port; a second listener still fails
    const int on = 1;
    setsockopt(descriptor, SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
    SendAtOnce(descriptor);
  }
  return Adopt(descriptor, tcp ? SocketRole::kNew : SocketRole::kDatagram);
}

int PosixSockets::Bind(SocketHandle socket, SocketAddress address) {
  WatchedSocket* const own = TheSockets().Find(socket);
  if (own == nullptr) return kNotASocket;
  const sockaddr_in system = ToSystem(address);
  return ResultOf(
      bind(own->Descriptor(), reinterpret_cast<const sockaddr*>(&system), sizeof system));
}

int PosixSockets::Listen(SocketHandle socket, int backlog) {
  WatchedSocket* const own = TheSockets().Find(socket);
  if (own == nullptr) return kNotASocket;
  // A full queue makes Linux drop a connection's first packet, which costs its client a second.
  const int error = ResultOf(listen(own->Descriptor(), std::max(backlog, SOMAXCONN)));
  if (error == 0) own->Became(SocketRole::kListening);
  return error;
}

SocketResult<SocketHandle> PosixSockets::Accept(SocketHandle listener) {
  WatchedSocket* const own = TheSockets().Find(listener);
  if (own == nullptr) {
    return {kNoSocket, kNotASocket};
  }
  const int descriptor = accept4(own->Descriptor(), nullptr, nullptr, SOCK_NONBLOCK | SOCK_CLOEXEC);
  const int error = descriptor < 0 ? SocketErrorOf(errno) : 0;
  if (error == kTooManySockets || error == kNoBuffers) {
    TheSockets().PauseAccepting(listener);
    return {kNoSocket, error};
  }
  own->AwaitConnection();
  if (error != 0) {
    return {kNoSocket, error};
  }
  SendAtOnce(descriptor);
  ProbeWhenIdle(descriptor);
  return Adopt(descriptor, SocketRole::kStream);
}

int PosixSockets::Connect(SocketHandle socket, SocketAddress peer) {
  WatchedSocket* const own = TheSockets().Find(socket);
  if (own == nullptr) return kNotASocket;
  const sockaddr_in system = ToSystem(peer);
  const int error = ResultOf(
      connect(own->Descriptor(), reinterpret_cast<const sockaddr*>(&system), sizeof system));
  if (own->Role() == SocketRole::kDatagram || (error != 0 && error != kWouldBlock)) return error;
  own->Became(SocketRole::kConnecting);
  return kWouldBlock;
}

void PosixSockets::GatherPieces(SocketHandle socket, bool on) {
  WatchedSocket* const own = TheSockets().Find(socket);
  const int value = on ? 1 : 0;
  if (own != nullptr) {
    setsockopt(own->Descriptor(), IPPROTO_TCP, TCP_CORK, &value, sizeof value);
  }
}

int PosixSockets::ShutdownSend(SocketHandle socket) {
  WatchedSocket* const own = TheSockets().Find(socket);
  if (own == nullptr) return kNotASocket;
  const int error = ResultOf(shutdown(own->Descriptor(), SHUT_WR));
  own->bSendingEnded = own->bSendingEnded || error == 0;
  return error;
}

SocketResult<std::int32_t> PosixSockets::Send(SocketHandle socket, std::span<const char> bytes,
                                              const SocketAddress* peer) {
  WatchedSocket* const own = TheSockets().Find(socket);
  if (own == nullptr) {
    return {0, kNotASocket};
  }
  if (own->Role() == SocketRole::kNew || own->Role() == SocketRole::kConnecting) {
    return {0, kNotConnected};
  }
  sockaddr_in system{};
  const bool addressed = peer != nullptr && own->Role() == SocketRole::kDatagram;
  if (addressed) system = ToSystem(*peer);
  const auto sent = sendto(own->Descriptor(), bytes.data(), bytes.size(), MSG_NOSIGNAL,
                           addressed ? reinterpret_cast<sockaddr*>(&system) : nullptr,
                           addressed ? sizeof system : 0);
  if (sent < 0 && errno == EPIPE && own->bSendingEnded) {
    return {0, kShutDown};
  }
  const int error = sent < 0 ? SocketErrorOf(errno) : 0;
  if (error == 0 || error == kWouldBlock) own->AwaitWrite();
  return {error == 0 ? static_cast<std::int32_t>(sent) : 0, error};
}

SocketResult<std::int32_t> PosixSockets::Receive(SocketHandle socket, std::span<char> buffer,
                                                 SocketAddress* peer) {
  WatchedSocket* const own = TheSockets().Find(socket);
  if (own == nullptr) {
    return {0, kNotASocket};
  }
  sockaddr_in system{};
  socklen_t size = sizeof system;
  const auto received = recvfrom(own->Descriptor(), buffer.data(), buffer.size(), 0,
                                 reinterpret_cast<sockaddr*>(&system), &size);
  const int error = received < 0 ? SocketErrorOf(errno) : 0;
  own->AwaitRead();
  if (error == 0 && peer != nullptr && own->Role() == SocketRole::kDatagram) {
    *peer = FromSystem(system);
  }
  return {error == 0 ? static_cast<std::int32_t>(received) : 0, error};
}

SocketResult<SocketProperties> PosixSockets::Properties(SocketHandle socket) {
  WatchedSocket* const own = TheSockets().Find(socket);
  if (own == nullptr) {
    return {{}, kNotASocket};
  }
  const int descriptor = own->Descriptor();
  SocketProperties properties;
  properties.protocol =
      AskOption(descriptor, SO_TYPE) == SOCK_DGRAM ? SocketProtocol::kUdp : SocketProtocol::kTcp;
  properties.sendBytes = AskOption(descriptor, SO_SNDBUF);
  properties.receiveBytes = AskOption(descriptor, SO_RCVBUF);
  properties.local = AskAddress(descriptor, getsockname);
  properties.peer = AskAddress(descriptor, getpeername);
  return {properties, 0};
}

}  // namespace

SocketLayer& SystemSockets() {
  static PosixSockets sockets;
  return sockets;
}

}  // namespace ostrel::platform
