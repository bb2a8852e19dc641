#include "transports/GatewaySocketServer.h"

#include "gateway/Guarded.h"

namespace ostrel {

GatewaySocketServer::GatewaySocketServer(SocketTransport& transport, Trace& trace,
                                         MSocketSupport& support)
    : oTransport(transport), oTrace(trace), oSocketServer(support) {
  SocketServerEvents& events = oSocketServer.Events;
  events.SocketOpened = [this](std::int16_t socket, auto&&...) {
    oSocketServer_SocketOpened(socket);
  };
  events.DataArrival = [this](std::int16_t socket, const Text& data, auto&&...) {
    oSocketServer_DataArrival(socket, data);
  };
  events.Error = [this](std::int16_t socket, std::uint16_t number, const Text& description,
                        auto&&...) { oSocketServer_Error(socket, number, description); };
  events.SocketClosed = [this](std::int16_t socket, auto&&...) {
    oSocketServer_SocketClosed(socket);
  };
}

void GatewaySocketServer::oSocketServer_SocketOpened(std::int16_t socket) {
  Guarded(oTrace, u"oSocketServer_SocketOpened",
          [&] { oTransport.oSocketServer_SocketOpened(socket); });
}

void GatewaySocketServer::oSocketServer_DataArrival(std::int16_t socket, TextView data) {
  Guarded(oTrace, u"oSocketServer_DataArrival",
          [&] { oTransport.oSocketServer_DataArrival(socket, data); });
}

void GatewaySocketServer::oSocketServer_Error(std::int16_t socket, std::uint16_t number,
                                              TextView description) {
  Guarded(oTrace, u"oSocketServer_Error",
          [&] { oTransport.oSocketServer_Error(socket, number, description); });
}

void GatewaySocketServer::oSocketServer_SocketClosed(std::int16_t socket) {
  Guarded(oTrace, u"oSocketServer_SocketClosed",
          [&] { oTransport.oSocketServer_SocketClosed(socket); });
}

bool GatewaySocketServer::StartServer(std::int32_t port) {
  Text allInterfaces;
  return oSocketServer.StartServer(port, allInterfaces);
}

}  // namespace ostrel
