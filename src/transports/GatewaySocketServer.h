// The socket server with its events wired to the socket transport. Nothing that a handler raises
// gets into the server: it becomes a status line.
#pragma once

#include "gateway/Trace.h"
#include "sockets/CSocketServer.h"
#include "sockets/MSocketSupport.h"
#include "transports/SocketService.h"
#include "transports/SocketTransport.h"

namespace ostrel {

class GatewaySocketServer : public SocketService {
 public:
  GatewaySocketServer(SocketTransport& transport, Trace& trace,
                      MSocketSupport& support = SocketSupport());

  bool ServerStarted() const override { return oSocketServer.ServerStarted(); }
  bool StartServer(std::int32_t port) override;
  void StopListening() override { oSocketServer.StopListening(); }
  void StopServer() override { oSocketServer.StopServer(); }
  void SendData(std::string_view bytes, std::int16_t socket) override {
    oSocketServer.SendData(AsBytes(bytes), socket);
  }
  void GatherPieces(std::int16_t socket, bool on) override {
    oSocketServer.GatherPieces(socket, on);
  }
  void CloseSocket(std::int16_t socket) override { oSocketServer.CloseSocket(socket); }
  std::size_t BytesToSend(std::int16_t socket) const override {
    return oSocketServer.GetBytesToSend(socket);
  }
  std::uint64_t BytesSent(std::int16_t socket) const override {
    return oSocketServer.GetBytesSent(socket);
  }

 private:
  void oSocketServer_SocketOpened(std::int16_t socket);
  void oSocketServer_DataArrival(std::int16_t socket, TextView data);
  void oSocketServer_Error(std::int16_t socket, std::uint16_t number, TextView description);
  void oSocketServer_SocketClosed(std::int16_t socket);

  SocketTransport& oTransport;
  Trace& oTrace;
  CSocketServer oSocketServer;
};

}  // namespace ostrel
