// A network under a test's control: the operations, the notifications and the names in one. Nothing
// happens by itself; a test tells each notification, and puts in what the operations give.
#pragma once

#include <algorithm>
#include <deque>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "platform/SocketNotifications.h"
#include "platform/Sockets.h"

namespace ostrel::doubles {

using platform::kNoSocket;
using platform::kWouldBlock;
using platform::SocketAddress;
using platform::SocketEvent;
using platform::SocketHandle;
using platform::SocketResult;

class FakeSockets final : public platform::SocketLayer,
                          public platform::SocketNotifications,
                          public platform::HostNames {
 public:
  /// The errors with which the next and all further calls of an operation fail; 0: they succeed.
  struct Errors {
    int open = 0, close = 0, bind = 0, listen = 0, connect = kWouldBlock, shutdown = 0, send = 0;
    int select = 0, startUp = 0, lookUp = 0;
  };
  /// One receive: bytes, or how it fails; the sender, for a datagram socket.
  struct Incoming {
    std::string bytes;
    int error = 0;
    SocketAddress from = {};
  };
  /// One call of Send: what was offered, and to whom.
  struct Offered {
    SocketHandle socket;
    std::string bytes;
    std::optional<SocketAddress> peer;
  };

  Errors errors;
  bool sinkCanBeHad = true;
  std::deque<SocketResult<SocketHandle>> waiting;  // for Accept
  std::map<SocketHandle, std::deque<Incoming>> incoming;
  std::map<SocketHandle, std::string> sent;
  std::deque<std::size_t> room;  // bytes that each send takes; everything when there is none left
  platform::SocketProperties properties = {
      platform::SocketProtocol::kTcp, 8192, 8192, {0x7F000001, 4999}, {0x0A000001, 50000}};
  std::optional<std::uint32_t> hostAddress = 0x0A000002;

  // The calls that were made.
  std::set<SocketHandle> open, selected, shutDown, gathering;
  int starts = 0, cleanUps = 0, sinksConnected = 0, sends = 0, backlog = 0;
  SocketAddress bound, connectedTo;
  SocketHandle boundSocket = kNoSocket, listeningSocket = kNoSocket, acceptedFrom = kNoSocket,
               connectedSocket = kNoSocket;
  std::vector<Offered> offered;
  std::size_t receiveBuffer = 0;  // bytes that the last Receive had room for
  std::string lookedUp;
  platform::LookUpHandle cancelled = 0;
  SocketHandle lastOpened = kNoSocket;

  void Tell(SocketHandle socket, SocketEvent event, int error = 0) {
    if (sink != nullptr) sink->OnSocket(socket, event, error);
  }
  void TellLookUp(platform::LookUpHandle lookUp, int error, std::uint32_t ip) {
    if (sink != nullptr) sink->OnLookUp(lookUp, error, ip);
  }
  void Receives(SocketHandle socket, const std::string& bytes) {
    incoming[socket].push_back({bytes});
    Tell(socket, SocketEvent::kRead);
  }
  void CloseByPeer(SocketHandle socket) {
    incoming[socket].push_back({""});
    Tell(socket, SocketEvent::kClose);
  }
  /// A connection that waits for Accept, and the word of it.
  SocketHandle Arrives(SocketHandle listener) {
    const SocketHandle connection = NewHandle();
    waiting.push_back({connection, 0});
    Tell(listener, SocketEvent::kAccept);
    return connection;
  }
  SocketHandle NewHandle() {
    open.insert(++lastHandle);
    return lastHandle;
  }

  SocketResult<SocketHandle> Open(platform::SocketProtocol protocol) override {
    if (errors.open != 0) return {kNoSocket, errors.open};
    properties.protocol = protocol;
    lastOpened = NewHandle();
    return {lastOpened, 0};
  }
  int Close(SocketHandle socket) override {
    selected.erase(socket);
    return open.erase(socket) == 0 ? kNotASocket : errors.close;
  }
  int Bind(SocketHandle socket, SocketAddress address) override {
    bound = address;
    boundSocket = socket;
    return open.contains(socket) ? errors.bind : kNotASocket;
  }
  int Listen(SocketHandle socket, int most) override {
    backlog = most;
    listeningSocket = socket;
    return open.contains(socket) ? errors.listen : kNotASocket;
  }
  SocketResult<SocketHandle> Accept(SocketHandle listener) override {
    acceptedFrom = listener;
    if (!open.contains(listener)) return {kNoSocket, kNotASocket};
    if (waiting.empty()) return {kNoSocket, kWouldBlock};
    const auto next = waiting.front();
    waiting.pop_front();
    return next;
  }
  int Connect(SocketHandle socket, SocketAddress peer) override {
    connectedTo = peer;
    connectedSocket = socket;
    return open.contains(socket) ? errors.connect : kNotASocket;
  }
  void GatherPieces(SocketHandle socket, bool on) override {
    if (on) {
      gathering.insert(socket);
    } else {
      gathering.erase(socket);
    }
  }
  int ShutdownSend(SocketHandle socket) override {
    shutDown.insert(socket);
    return open.contains(socket) ? errors.shutdown : kNotASocket;
  }
  SocketResult<std::int32_t> Send(SocketHandle socket, std::span<const char> bytes,
                                  const SocketAddress* peer) override {
    ++sends;
    offered.push_back({socket, std::string(bytes.data(), bytes.size()),
                       peer == nullptr ? std::nullopt : std::optional(*peer)});
    if (!open.contains(socket)) return {0, kNotASocket};
    if (errors.send != 0) return {0, errors.send};
    std::size_t taken = bytes.size();
    if (!room.empty()) {
      taken = std::min(taken, room.front());
      room.pop_front();
      if (taken == 0) return {0, kWouldBlock};
    }
    sent[socket].append(bytes.data(), taken);
    return {static_cast<std::int32_t>(taken), 0};
  }
  SocketResult<std::int32_t> Receive(SocketHandle socket, std::span<char> buffer,
                                     SocketAddress* peer) override {
    receiveBuffer = buffer.size();
    if (!open.contains(socket)) return {0, kNotASocket};
    auto& queue = incoming[socket];
    if (queue.empty()) return {0, kWouldBlock};
    Incoming next = std::move(queue.front());
    queue.pop_front();
    const std::size_t size = next.bytes.copy(buffer.data(), buffer.size());
    if (size < next.bytes.size()) queue.push_front({next.bytes.substr(size), next.error});
    if (peer != nullptr && next.from.port != 0) *peer = next.from;
    return {static_cast<std::int32_t>(size), next.error};
  }
  SocketResult<platform::SocketProperties> Properties(SocketHandle socket) override {
    platform::SocketProperties answer = properties;
    if (socket == lastOpened) answer.peer = connectedTo;
    return {answer, 0};
  }

  SocketResult<std::int32_t> StartUp() override {
    ++starts;
    return {65467, errors.startUp};
  }
  void CleanUp() override { ++cleanUps; }
  bool ConnectSink(platform::SocketSink& newSink) override {
    ++sinksConnected;
    sink = &newSink;
    return sinkCanBeHad;
  }
  void DisconnectSink() override { sink = nullptr; }
  int Select(SocketHandle socket) override {
    if (errors.select == 0) selected.insert(socket);
    return errors.select;
  }
  int Unselect(SocketHandle socket) override {
    selected.erase(socket);
    return 0;
  }
  SocketResult<platform::LookUpHandle> StartLookUp(std::string_view host) override {
    lookedUp = host;
    return {errors.lookUp == 0 ? 77 : 0, errors.lookUp};
  }
  void CancelLookUp(platform::LookUpHandle lookUp) override { cancelled = lookUp; }

  std::string OwnName() override { return "OWNNAME"; }
  std::uint32_t OwnAddress() override { return 0xC0A80005; }  // 192.168.0.5
  std::optional<std::uint32_t> AddressOf(std::string_view host) override {
    lookedUp = host;
    return hostAddress;
  }

 private:
  static constexpr int kNotASocket = 10038;

  platform::SocketSink* sink = nullptr;
  SocketHandle lastHandle = 100;
};

}  // namespace ostrel::doubles
