// A socket server that only remembers what it was told.
#pragma once

#include <functional>
#include <map>
#include <vector>

#include "transports/SocketService.h"
#include "util/CodePage.h"

namespace ostrel::doubles {

/// The fate of the servers that the program creates; outlives them.
struct FakeNetwork {
  struct Sent {
    std::int16_t iSocket;
    Text sData;
  };

  std::vector<std::int32_t> PortsAsked;
  std::vector<Sent> Replies;
  bool bPortTaken = false;
  int iServersCreated = 0;
  int iServersAlive = 0;
  int iStops = 0;
  int iListenersStopped = 0;
  std::map<std::int16_t, std::size_t> ToSend;  // what clients have not taken yet, by socket
  std::map<std::int16_t, std::uint64_t> Taken;
  /// Runs while a server starts.
  std::function<void()> DuringStart;

  Text SentTo(std::int16_t socket) const {
    Text all;
    for (const Sent& one : Replies) {
      if (one.iSocket == socket) all.append(one.sData);
    }
    return all;
  }
};

class FakeSocketService : public SocketService {
 public:
  explicit FakeSocketService(FakeNetwork& network) : oNetwork(network) {
    ++oNetwork.iServersCreated;
    ++oNetwork.iServersAlive;
  }
  ~FakeSocketService() override { --oNetwork.iServersAlive; }
  FakeSocketService(const FakeSocketService&) = delete;
  FakeSocketService& operator=(const FakeSocketService&) = delete;

  bool ServerStarted() const override { return bStarted; }
  bool StartServer(std::int32_t port) override {
    oNetwork.PortsAsked.push_back(port);
    if (oNetwork.DuringStart) oNetwork.DuringStart();
    return bStarted = !oNetwork.bPortTaken;
  }
  void StopListening() override { ++oNetwork.iListenersStopped; }
  void StopServer() override {
    ++oNetwork.iStops;
    bStarted = false;
  }
  void SendData(std::string_view bytes, std::int16_t socket) override {
    oNetwork.Replies.push_back({socket, BytesToText(bytes)});
  }
  void GatherPieces(std::int16_t, bool) override {}
  void CloseSocket(std::int16_t) override {}
  std::size_t BytesToSend(std::int16_t socket) const override {
    const auto found = oNetwork.ToSend.find(socket);
    return found == oNetwork.ToSend.end() ? 0 : found->second;
  }
  std::uint64_t BytesSent(std::int16_t socket) const override {
    const auto found = oNetwork.Taken.find(socket);
    return found == oNetwork.Taken.end() ? 0 : found->second;
  }

 private:
  FakeNetwork& oNetwork;
  bool bStarted = false;
};

}  // namespace ostrel::doubles
