#include "transports/GatewaySocketServer.h"

#include "gateway/Guarded.h"

namespace ostrel {

GatewaySocketServer::GatewaySocketServer(SocketTransport& transport, Trace& trace,
                                         MSocketSupport& support)
    : oSocketServer(support) {
  SocketServerEvents& events = oSocketServer.Events;
  events.SocketOpened = [&](std::int16_t socket, std::int32_t, TextView, TextView) {
    Guarded(trace, u"oSocketServer_SocketOpened",
            [&] { transport.oSocketServer_SocketOpened(socket); });
  };
  events.DataArrival = [&](std::int16_t socket, const Text& data, std::int32_t, TextView,
                           TextView) {
    Guarded(trace, u"oSocketServer_DataArrival",
            [&] { transport.oSocketServer_DataArrival(socket, data); });
  };
  events.Error = [&](std::int16_t socket, std::uint16_t number, const Text& description,
                     std::int32_t, TextView) {
    Guarded(trace, u"oSocketServer_Error",
            [&] { transport.oSocketServer_Error(socket, number, description); });
  };
  events.SocketClosed = [&](std::int16_t socket, std::int32_t, TextView, TextView) {
    Guarded(trace, u"oSocketServer_SocketClosed",
            [&] { transport.oSocketServer_SocketClosed(socket); });
  };
}

bool GatewaySocketServer::StartServer(std::int32_t port) {
  Text allInterfaces;
  return oSocketServer.StartServer(port, allInterfaces);
}

}  // namespace ostrel
