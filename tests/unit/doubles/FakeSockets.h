// A network under a test's control: the operations, the notifications and the names in one. Nothing
// happens by itself; a test tells each notification, and puts in what the operations give.
#pragma once

#include <algorithm>
#include <deque>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "platform/HostNames.h"
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
  /// What the next and all further calls of an operation fail with; 0: they succeed.
  struct Errors {
    int open = 0, close = 0, bind = 0, listen = 0, connect = kWouldBlock, shutdown = 0, send = 0;
    int select = 0, startUp = 0, lookUp = 0;
  };
  /// One receive: bytes, or how it fails.
  struct Incoming {
    std::string bytes;
    int error = 0;
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

  // What was done.
  std::set<SocketHandle> open, selected, shutDown;
  int starts = 0, cleanUps = 0, sends = 0, backlog = 0;
  SocketAddress bound, connectedTo;
  std::string lookedUp;
  platform::LookUpHandle cancelled = 0;
  SocketHandle lastOpened = kNoSocket;

  void Tell(SocketHandle socket, SocketEvent event, int error = 0) {
    sink->OnSocket(socket, event, error);
  }
  void TellLookUp(platform::LookUpHandle lookUp, int error, std::uint32_t ip) {
    sink->OnLookUp(lookUp, error, ip);
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
    return open.erase(socket) == 0 ? 10038 : errors.close;
  }
  int Bind(SocketHandle, SocketAddress address) override {
    bound = address;
    return errors.bind;
  }
  int Listen(SocketHandle socket, int most) override {
    backlog = most;
    return open.contains(socket) ? errors.listen : 10038;
  }
  SocketResult<SocketHandle> Accept(SocketHandle) override {
    if (waiting.empty()) return {kNoSocket, kWouldBlock};
    const auto next = waiting.front();
    waiting.pop_front();
    return next;
  }
  int Connect(SocketHandle, SocketAddress peer) override {
    connectedTo = peer;
    return errors.connect;
  }
  int ShutdownSend(SocketHandle socket) override {
    shutDown.insert(socket);
    return errors.shutdown;
  }
  SocketResult<std::int32_t> Send(SocketHandle socket, std::span<const char> bytes,
                                  const SocketAddress*) override {
    ++sends;
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
                                     SocketAddress*) override {
    auto& queue = incoming[socket];
    if (queue.empty()) return {0, kWouldBlock};
    const Incoming next = queue.front();
    queue.pop_front();
    const std::size_t size = next.bytes.copy(buffer.data(), buffer.size());
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
  platform::SocketSink* sink = nullptr;
  SocketHandle lastHandle = 100;
};

}  // namespace ostrel::doubles
