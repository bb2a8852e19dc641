// A closed socket stays in its slot until a new connection takes the index, since the owner may ask
// for the address of a peer that has gone. Handlers may stop or destroy the server from inside an
// event; every path that tells an event therefore looks afterwards whether the server, or the
// listener that told it, is still the same.
#include "sockets/CSocketServer.h"

#include <algorithm>
#include <exception>
#include <limits>
#include <utility>

#include "sockets/CSocket.h"
#include "sockets/CSocketListen.h"
#include "sockets/MSocketSupport.h"
#include "util/RunTimeError.h"

namespace ostrel {
namespace {

const CSocketListen& Existing(const std::shared_ptr<CSocketListen>& listener, TextView source) {
  if (!listener) {
    throw RunTimeError(ErrorNumber::kObjectNotSet, Text(source),
                       u"Object variable or With block variable not set");
  }
  return *listener;
}

// Leaves in Err what a socket or a handler raises.
template <typename Operation>
void LeaveInErr(const Operation& operation) noexcept {
  try {
    operation();
  } catch (...) {
    Err.SetFrom(std::current_exception(), u"CSocketServer");
  }
}

bool Reusable(const std::shared_ptr<CSocket>& socket) {
  return !socket || socket->State() == SocketState::kClosed ||
         socket->State() == SocketState::kError;
}

}  // namespace

CSocketServer::CSocketServer() : CSocketServer(SocketSupport()) {}

CSocketServer::CSocketServer(MSocketSupport& support)
    : oSupport(support), oListen(CSocketListen::Create(support)), oConnections(1) {
  Subscribe();
}

CSocketServer::~CSocketServer() { StopServer(); }

void CSocketServer::Subscribe() {
  auto& events = oListen->Events;
  events.ConnectionRequest = [this](std::int32_t requestID, std::int32_t, TextView, TextView) {
    oListen_ConnectionRequest(requestID);
  };
  events.Error = [this](std::uint16_t Number, Text& Description, std::int32_t Scode,
                        TextView Source) { oListen_Error(Number, Description, Scode, Source); };
  events.ServerListening = [this](bool listening) { oListen_ServerListening(listening); };
  events.OnClose = [this] { CloseAllSockets(); };
  events.StartFailed = [this] {
    if (const auto handler = Events.StartFailed) handler();
  };
}

/// The listener may be on the stack, about to raise more: none of that reaches the server.
void CSocketServer::ReleaseListener() {
  if (const auto listener = std::exchange(oListen, nullptr)) {
    listener->Events = {};
  }
}

bool CSocketServer::StartServer(std::int32_t Port, Text& LocalIP) {
  Err.Clear();
  bool started = false;
  LeaveInErr([&] { started = Start(Port, LocalIP); });
  return started;
}

bool CSocketServer::Start(std::int32_t Port, Text& LocalIP) {
  const std::weak_ptr<void> life = oLife;
  bServerStarted = false;
  if (!oListen) {
    oListen = CSocketListen::Create(oSupport);
    Subscribe();
  }
  const auto listener = oListen;
  LeaveInErr(
      [&] { listener->StopListen(); });  // Kept: handlers expect ServerStopped with every start
  if (life.expired() || listener != oListen) return false;
  const bool started = listener->StartListen(Port, LocalIP);
  if (life.expired() || listener != oListen) return false;
  bServerStarted = started;
  return started;
}

bool CSocketServer::StopServer() {
  const std::weak_ptr<void> life = oLife;
  StopListening();
  if (life.expired()) return false;
  ReleaseListener();
  CloseEverySocket();
  sState = u"Closed";
  bServerStarted = false;
  LeaveInErr(
      [this] { oListen_ServerListening(false); });  // Kept: handlers expect it twice for one stop
  return false;
}

void CSocketServer::StopListening() {
  Err.Clear();
  if (const auto listener = oListen) {
    LeaveInErr([&] { listener->StopListen(); });
  }
}

std::int32_t CSocketServer::ServerPort() const {
  return Existing(oListen, u"CSocketServer.ServerPort").ServerPort();
}

Text CSocketServer::ServerIP() const {
  return Existing(oListen, u"CSocketServer.ServerIP").ServerIP();
}

std::int32_t CSocketServer::ConnectionCount() const {
  return static_cast<std::int32_t>(oConnections.size()) - 1;
}

std::int32_t CSocketServer::OpenConnectionCount() const {
  std::int32_t count = 0;
  for (const auto& socket : oConnections) count += Reusable(socket) ? 0 : 1;
  return count;
}

/// Null for an index that has no socket.
std::shared_ptr<CSocket> CSocketServer::SocketAt(std::int32_t index) const {
  return index >= 1 && index <= ConnectionCount() ? oConnections[static_cast<std::size_t>(index)]
                                                  : nullptr;
}

void CSocketServer::SendData(const SocketValue& vData, std::int32_t lIndex) {
  Err.Clear();
  SendTo(SocketAt(lIndex), vData);
}

void CSocketServer::SendTo(const std::shared_ptr<CSocket>& socket, const SocketValue& vData) {
  if (socket) {
    LeaveInErr([&] { socket->SendData(vData); });
  }
}

void CSocketServer::SendString(TextView Data, std::int32_t lIndex) { SendData(Data, lIndex); }

void CSocketServer::BroadcastData(const SocketValue& vData) {
  Err.Clear();
  for (std::int32_t i = 1; i <= ConnectionCount(); ++i) SendTo(SocketAt(i), vData);
}

void CSocketServer::GatherPieces(std::int16_t Index, bool on) {
  if (const auto socket = SocketAt(Index)) socket->GatherPieces(on);
}

void CSocketServer::CloseSocket(std::int16_t Index) {
  Err.Clear();
  if (const auto socket = SocketAt(Index)) {
    SearchFrom(Index);
    LeaveInErr([&] { socket->CloseSocket(); });
  }
}

void CSocketServer::CloseAllSockets() {
  Err.Clear();
  CloseEverySocket();
}

/// No event is told here: the array stays as it is until its end.
void CSocketServer::CloseEverySocket() {
  for (auto& slot : oConnections) {
    if (const auto socket = std::exchange(slot, nullptr)) {
      LeaveInErr([&] { socket->CloseSocket(); });
      socket->SetCallback(0, nullptr);
    }
  }
  oConnections.resize(1);
  lSearchFrom = 1;
}

Text CSocketServer::GetRemoteHost(std::int16_t Index) const {
  const auto socket = SocketAt(Index);
  Text host;
  LeaveInErr([&] { host = socket ? socket->RemoteHost() : Text(); });
  return host;
}

Text CSocketServer::GetRemoteIP(std::int16_t Index) const {
  const auto socket = SocketAt(Index);
  Text address;
  LeaveInErr([&] { address = socket ? socket->RemoteHostIP() : Text(); });
  return address;
}

std::int32_t CSocketServer::GetBytesReceived(std::int16_t Index) const {
  const auto socket = SocketAt(Index);
  return socket ? socket->BytesReceived() : 0;
}

std::size_t CSocketServer::GetBytesToSend(std::int16_t Index) const {
  const auto socket = SocketAt(Index);
  return socket ? socket->BytesToSend() : 0;
}

std::uint64_t CSocketServer::GetBytesSent(std::int16_t Index) const {
  const auto socket = SocketAt(Index);
  return socket ? socket->BytesSent() : 0;
}

std::int16_t CSocketServer::GetState(std::int16_t Index) const {
  const auto socket = SocketAt(Index);
  return static_cast<std::int16_t>(socket ? socket->State() : SocketState::kClosed);
}

void CSocketServer::SearchFrom(std::int16_t index) {
  lSearchFrom = std::min(lSearchFrom, static_cast<std::size_t>(index));
}

/// The lowest free index, with an empty slot for it; 0 when every number is taken.
std::int16_t CSocketServer::TakeSlot() {
  constexpr std::size_t most = std::numeric_limits<std::int16_t>::max();
  std::size_t index = lSearchFrom;
  for (; index < oConnections.size() && !Reusable(oConnections[index]); ++index) {
    // A socket that is closing will be free without a word.
    const bool stays = oConnections[index]->State() != SocketState::kClosing;
    lSearchFrom += index == lSearchFrom && stays ? 1 : 0;
  }
  if (index > most) return 0;
  if (index == oConnections.size()) {
    oConnections.emplace_back();
  } else if (const auto closed = std::move(oConnections[index])) {
    closed->SetCallback(0, nullptr);
  }
  return static_cast<std::int16_t>(index);
}

/// A connection that cannot be served is closed; the listener and all others go on.
void CSocketServer::oListen_ConnectionRequest(std::int32_t requestID) {
  const std::int16_t index = TakeSlot();
  if (index == 0) return;
  const auto socket = CSocket::Create(oSupport);
  oConnections[static_cast<std::size_t>(index)] = socket;
  socket->SetCallback(index, this);
  try {
    socket->Accept(requestID);
    if (const auto handler = Events.SocketOpened) {
      handler(index, socket->LocalPort(), socket->RemoteHostIP(), socket->RemoteHost());
    }
  } catch (...) {
    socket->OnException(std::current_exception());
  }
}

void CSocketServer::oListen_Error(std::uint16_t Number, Text& Description, std::int32_t Scode,
                                  TextView Source) {
  const std::weak_ptr<void> life = oLife;
  Err.Clear();
  LeaveInErr([&] {
    if (const auto handler = Events.Error) handler(0, Number, Description, Scode, Source);
  });
  if (!life.expired()) CloseEverySocket();
}

void CSocketServer::oListen_ServerListening(bool listening) {
  if (const auto handler = listening ? Events.ServerStarted : Events.ServerStopped) handler();
}

void CSocketServer::OnDataArrival(std::int16_t Index, std::int32_t bytesTotal) {
  const auto socket = SocketAt(Index);
  if (!socket) return;
  Text data;
  socket->GetData(data, bytesTotal);
  if (const auto handler = Events.DataArrival) {
    handler(Index, std::move(data), bytesTotal, socket->RemoteHostIP(), socket->RemoteHost());
  }
}

void CSocketServer::OnClose(std::int16_t Index) {
  SearchFrom(Index);
  const auto socket = SocketAt(Index);
  const auto handler = Events.SocketClosed;
  if (socket && handler) {
    handler(Index, socket->LocalPort(), socket->RemoteHostIP(), socket->RemoteHost());
  }
}

void CSocketServer::OnError(std::int16_t Index, std::uint16_t Number, Text& Description,
                            std::int32_t Scode, TextView Source, TextView, std::int32_t, bool&) {
  SearchFrom(Index);
  if (const auto handler = Events.Error) handler(Index, Number, Description, Scode, Source);
}

}  // namespace ostrel
