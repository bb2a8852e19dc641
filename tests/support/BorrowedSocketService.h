// A socket server that the test owns, in the place of one that the transport creates.
#pragma once

#include <memory>

#include "transports/SocketService.h"

namespace ostrel {

class BorrowedSocketService : public SocketService {
 public:
  explicit BorrowedSocketService(SocketService& server) : oServer(server) {}

  /// The server outlives the transport.
  static SocketServiceFactory Factory(SocketService& server) {
    return
        [&](SocketTransport&, Trace&) { return std::make_unique<BorrowedSocketService>(server); };
  }

  bool ServerStarted() const override { return oServer.ServerStarted(); }
  bool StartServer(std::int32_t port) override { return oServer.StartServer(port); }
  void StopListening() override { oServer.StopListening(); }
  void StopServer() override { oServer.StopServer(); }
  void SendData(std::string_view bytes, std::int16_t socket) override {
    oServer.SendData(bytes, socket);
  }
  void GatherPieces(std::int16_t socket, bool on) override { oServer.GatherPieces(socket, on); }
  void CloseSocket(std::int16_t socket) override { oServer.CloseSocket(socket); }
  std::size_t BytesToSend(std::int16_t socket) const override {
    return oServer.BytesToSend(socket);
  }
  std::uint64_t BytesSent(std::int16_t socket) const override { return oServer.BytesSent(socket); }

 private:
  SocketService& oServer;
};

}  // namespace ostrel
