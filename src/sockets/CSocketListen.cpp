#include "sockets/CSocketListen.h"

#include <exception>

#include "platform/EventLoop.h"
#include "sockets/CSocket.h"

namespace ostrel {

std::shared_ptr<CSocketListen> CSocketListen::Create(MSocketSupport& support) {
  return std::shared_ptr<CSocketListen>(new CSocketListen(support));
}

CSocketListen::CSocketListen(MSocketSupport& support)
    : oSupport(support), oListen(CSocket::Create(support)) {
  oListen->Events.OnConnectionRequest = [this](std::int32_t requestID) {
    oListen_OnConnectionRequest(requestID);
  };
  oListen->Events.OnError = [this](std::uint16_t Number, Text& Description, std::int32_t Scode,
                                   TextView Source, TextView, std::int32_t,
                                   bool&) { oListen_OnError(Number, Description, Scode, Source); };
  oListen->Events.OnClose = [this] { oListen_OnClose(); };
}

/// The socket may outlive the listener until its own notification returns.
CSocketListen::~CSocketListen() { oListen->Events = {}; }

bool CSocketListen::StartListen(std::int32_t Port, Text& LocalIP) {
  const auto keep = shared_from_this();
  try {
    Listen(Port, LocalIP);
    AwaitListening();
  } catch (const std::exception&) {  // Kept: StartFailed alone tells; no handler gets the cause
    NotifyStartFailed();
  }
  return bListenning;
}

void CSocketListen::Listen(std::int32_t Port, Text& LocalIP) {
  const Text address = LocalIP;
  if (LocalIP.empty()) LocalIP = oSupport.OwnAddress();
  oListen->CloseSocket();
  oListen->Bind(Port, address);
  oListen->Listen();
}

void CSocketListen::AwaitListening() {
  while (oListen->State() != SocketState::kListening) {
    platform::DoEvents();
    const bool failed = oListen->State() == SocketState::kError;
    if (failed || oListen->State() == SocketState::kClosed) {  // by one of the events
      return NotifyStartFailed();
    }
  }
  sState = u"Listenning";
  bListenning = true;
  if (const auto handler = Events.ServerListening) handler(true);
}

void CSocketListen::NotifyStartFailed() {
  if (const auto handler = Events.StartFailed) handler();
}

bool CSocketListen::StopListen() {
  const auto keep = shared_from_this();
  try {
    oListen->CloseSocket();
  } catch (const std::exception&) {  // a socket that cannot even be closed is no listener either
    bListenning = false;
  }
  sState = u"Closed";
  bListenning = false;
  if (const auto handler = Events.ServerListening) handler(false);
  return false;
}

std::int32_t CSocketListen::ServerPort() const { return oListen->LocalPort(); }

Text CSocketListen::ServerIP() const { return oListen->LocalIP(); }

void CSocketListen::oListen_OnConnectionRequest(std::int32_t requestID) {
  if (const auto handler = Events.ConnectionRequest) {
    const auto socket = oListen;
    handler(requestID, socket->LocalPort(), socket->RemoteHostIP(), socket->RemoteHost());
  }
}

void CSocketListen::oListen_OnError(std::uint16_t Number, Text& Description, std::int32_t Scode,
                                    TextView Source) {
  if (const auto handler = Events.Error) handler(Number, Description, Scode, Source);
}

void CSocketListen::oListen_OnClose() {
  if (const auto handler = Events.OnClose) handler();
}

}  // namespace ostrel
