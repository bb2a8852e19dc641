// The socket operations over Windows Sockets. The system announces events to a hidden window
// (SocketWindow); each operation tells that window what became of the socket, so that it can keep
// to the rules of platform/SocketNotifications.h where Windows' own differ.
#include "platform/Sockets.h"

#include <winsock2.h>
#include <mstcpip.h>

#include <algorithm>
#include <limits>
#include <new>

#include "platform/win32/SocketWindow.h"

namespace ostrel::platform {
namespace {

int LastErrorIf(bool failed) { return failed ? WSAGetLastError() : 0; }

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
SocketAddress AskAddress(SOCKET socket, Query query) {
  sockaddr_in system{};
  int size = sizeof system;
  const int result = query(socket, reinterpret_cast<sockaddr*>(&system), &size);
  return result == 0 ? FromSystem(system) : SocketAddress{};
}

int AskOption(SOCKET socket, int option) {
  int value = 0;
  int size = sizeof value;
  getsockopt(socket, SOL_SOCKET, option, reinterpret_cast<char*>(&value), &size);
  return value;
}

int Length(std::size_t bytes) {
  constexpr std::size_t most = std::numeric_limits<int>::max();
  return static_cast<int>(std::min(bytes, most));
}

/// Without this the end of a response waits, about 200 ms, until the peer has acknowledged the
/// bytes before it.
void SendAtOnce(SOCKET socket) {
  const BOOL on = TRUE;
  setsockopt(socket, IPPROTO_TCP, TCP_NODELAY, reinterpret_cast<const char*>(&on), sizeof on);
}

/// Has an idle connection probed after a minute. Windows gives it up after ten probes.
void ProbeWhenIdle(SOCKET socket) {
  tcp_keepalive values = {.onoff = 1, .keepalivetime = 60'000, .keepaliveinterval = 10'000};
  DWORD returned = 0;
  WSAIoctl(socket, SIO_KEEPALIVE_VALS, &values, sizeof values, nullptr, 0, &returned, nullptr,
           nullptr);
}

class WindowsSockets final : public SocketLayer {
 public:
  WindowsSockets() { TheSocketWindow(); }  // made first, so that it is there until these have gone

  SocketResult<SocketHandle> Open(SocketProtocol protocol) override;
  int Close(SocketHandle socket) override;
  int Bind(SocketHandle socket, SocketAddress address) override;
  int Listen(SocketHandle socket, int backlog) override;
  SocketResult<SocketHandle> Accept(SocketHandle listener) override;
  int Connect(SocketHandle socket, SocketAddress peer) override;
  void GatherPieces(SocketHandle, bool) override {}  // Windows has no such option
  int ShutdownSend(SocketHandle socket) override;
  SocketResult<std::int32_t> Send(SocketHandle socket, std::span<const char> bytes,
                                  const SocketAddress* peer) override;
  SocketResult<std::int32_t> Receive(SocketHandle socket, std::span<char> buffer,
                                     SocketAddress* peer) override;
  SocketResult<SocketProperties> Properties(SocketHandle socket) override;

 private:
  static SocketResult<SocketHandle> Adopt(SOCKET socket, bool awaitsConnection);
};

SocketResult<SocketHandle> WindowsSockets::Adopt(SOCKET socket, bool awaitsConnection) {
  SetHandleInformation(reinterpret_cast<HANDLE>(socket), HANDLE_FLAG_INHERIT, 0);
  u_long on = 1;
  ioctlsocket(socket, static_cast<long>(FIONBIO), &on);
  const auto handle = static_cast<SocketHandle>(socket);
  try {
    TheSocketWindow().Opened(handle, awaitsConnection);
    return {handle, 0};
  } catch (const std::bad_alloc&) {
    closesocket(socket);
    return {kNoSocket, WSAENOBUFS};
  }
}

SocketResult<SocketHandle> WindowsSockets::Open(SocketProtocol protocol) {
  const bool tcp = protocol == SocketProtocol::kTcp;
  const SOCKET opened = socket(AF_INET, tcp ? SOCK_STREAM : SOCK_DGRAM, 0);
  if (opened == INVALID_SOCKET) {
    return {kNoSocket, WSAGetLastError()};
  }
  // No option for the port's use: with the exclusive one a restarted server would wait for the last
  // lingering connection of its port, with the shared one two servers could listen on it.
  if (tcp) SendAtOnce(opened);
  return Adopt(opened, tcp);
}

int WindowsSockets::Close(SocketHandle socket) {
  TheSocketWindow().Closed(socket);
  return LastErrorIf(closesocket(SystemSocket(socket)) != 0);
}

int WindowsSockets::Bind(SocketHandle socket, SocketAddress address) {
  const sockaddr_in system = ToSystem(address);
  return LastErrorIf(
      bind(SystemSocket(socket), reinterpret_cast<const sockaddr*>(&system), sizeof system) != 0);
}

int WindowsSockets::Listen(SocketHandle socket, int backlog) {
  return LastErrorIf(listen(SystemSocket(socket), std::max(backlog, SOMAXCONN)) != 0);
}

SocketResult<SocketHandle> WindowsSockets::Accept(SocketHandle listener) {
  const SOCKET accepted = accept(SystemSocket(listener), nullptr, nullptr);
  if (accepted != INVALID_SOCKET) {
    SendAtOnce(accepted);
    ProbeWhenIdle(accepted);
    return Adopt(accepted, false);
  }
  const int error = WSAGetLastError();
  if (error == WSAEMFILE || error == WSAENOBUFS) TheSocketWindow().PauseAccepting(listener);
  return {kNoSocket, error};
}

int WindowsSockets::Connect(SocketHandle socket, SocketAddress peer) {
  const sockaddr_in system = ToSystem(peer);
  TheSocketWindow().Connecting(socket);
  return LastErrorIf(connect(SystemSocket(socket), reinterpret_cast<const sockaddr*>(&system),
                             sizeof system) != 0);
}

int WindowsSockets::ShutdownSend(SocketHandle socket) {
  return LastErrorIf(shutdown(SystemSocket(socket), SD_SEND) != 0);
}

/// Goes on until everything is sent or it would block: only then does Windows tell of room again.
SocketResult<std::int32_t> WindowsSockets::Send(SocketHandle socket, std::span<const char> bytes,
                                                const SocketAddress* peer) {
  sockaddr_in system{};
  if (peer != nullptr) system = ToSystem(*peer);
  if (TheSocketWindow().AwaitsConnection(socket)) {
    return {0, WSAENOTCONN};
  }
  const auto* const to = peer != nullptr ? reinterpret_cast<const sockaddr*>(&system) : nullptr;
  std::size_t sent = 0;
  int error = 0;
  while (sent < bytes.size() && error == 0) {
    const int taken = sendto(SystemSocket(socket), bytes.data() + sent, Length(bytes.size() - sent),
                             0, to, to != nullptr ? sizeof system : 0);
    error = LastErrorIf(taken < 0);
    sent += taken > 0 ? static_cast<std::size_t>(taken) : 0;
  }
  if (error == 0) TheSocketWindow().Sent(socket);
  return {Length(sent), sent > 0 ? 0 : error};
}

SocketResult<std::int32_t> WindowsSockets::Receive(SocketHandle socket, std::span<char> buffer,
                                                   SocketAddress* peer) {
  sockaddr_in system{};
  int size = sizeof system;
  const int received = recvfrom(SystemSocket(socket), buffer.data(), Length(buffer.size()), 0,
                                reinterpret_cast<sockaddr*>(&system), &size);
  const int error = LastErrorIf(received < 0);
  if (error == 0 && peer != nullptr && system.sin_port != 0) *peer = FromSystem(system);
  TheSocketWindow().Received(socket);
  return {error == 0 ? received : 0, error};
}

SocketResult<SocketProperties> WindowsSockets::Properties(SocketHandle handle) {
  const SOCKET socket = SystemSocket(handle);
  int type = 0;
  int size = sizeof type;
  if (getsockopt(socket, SOL_SOCKET, SO_TYPE, reinterpret_cast<char*>(&type), &size) != 0) {
    return {{}, WSAGetLastError()};
  }
  SocketProperties properties;
  properties.protocol = type == SOCK_DGRAM ? SocketProtocol::kUdp : SocketProtocol::kTcp;
  properties.sendBytes = AskOption(socket, SO_SNDBUF);
  properties.receiveBytes = AskOption(socket, SO_RCVBUF);
  properties.local = AskAddress(socket, getsockname);
  properties.peer = AskAddress(socket, getpeername);
  return {properties, 0};
}

}  // namespace

SocketLayer& SystemSockets() {
  static WindowsSockets sockets;
  return sockets;
}

}  // namespace ostrel::platform
