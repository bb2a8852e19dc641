// A socket is driven from two sides: its owner's calls, and notifications of the system that arrive
// through the event loop. A handler of an event may close or release the socket, so the state is
// looked at again after each event. What the network does not take at once stays in the queue until
// it can be written again.
#include "sockets/CSocket.h"

#include <algorithm>
#include <array>
#include <bit>
#include <limits>
#include <utility>

#include "sockets/DottedAddress.h"
#include "sockets/SocketErrorText.h"
#include "util/CodePage.h"
#include "util/RunTimeError.h"

namespace ostrel {
namespace {

using platform::kNoSocket;
using platform::kWouldBlock;
using platform::SocketEvent;
using platform::SocketProtocol;

static_assert(std::endian::native == std::endian::little, "numbers travel in their memory form");

constexpr int kBacklog = 5;
constexpr int kInvalidArgument = 10022;
constexpr int kShutDown = 10058;
constexpr int kWrongState = 40006;
constexpr std::int32_t kLargestChunk = 1024 * 1024;

[[noreturn]] void Raise(int number, TextView source) {
  throw RunTimeError(number, Text(source), Text(SocketErrorText(number)));
}

void RaiseIf(int error, TextView source) {
  if (error != 0) Raise(error, source);
}

std::uint16_t CheckedPort(std::int32_t port, TextView source) {
  RaiseIf(port < 0 || port > 65535 ? kInvalidArgument : 0, source);
  return static_cast<std::uint16_t>(port);
}

std::int32_t Count(std::size_t bytes) {
  constexpr std::size_t most = std::numeric_limits<std::int32_t>::max();
  return static_cast<std::int32_t>(std::min(bytes, most));
}

/// Errors of a send after which nothing more gets through. All others pass, want of memory in the
/// system and a connection that is not there yet among them.
bool IsLost(int error) {
  constexpr int lost[] = {10038 /* no socket */, 10052 /* reset */, 10053 /* aborted */,
                          10054 /* reset */,     kShutDown,         10060 /* timed out */};
  return std::find(std::begin(lost), std::end(lost), error) != std::end(lost);
}

/// Queues a value in the form in which it travels.
struct Enqueue {
  SendQueue& queue;

  void operator()(TextView text) const { queue.AddText(text); }
  void operator()(std::span<const std::uint8_t> bytes) const {
    queue.AddBytes({reinterpret_cast<const char*>(bytes.data()), bytes.size()});
  }
  void operator()(bool value) const { (*this)(static_cast<std::int16_t>(value ? -1 : 0)); }
  template <SocketNumber T>
  void operator()(T value) const {
    queue.AddBytes(std::bit_cast<std::array<char, sizeof value>>(value));
  }
};

/// Closes an offered connection that no socket has taken over.
class Offered {
 public:
  Offered(MSocketSupport& support, platform::SocketHandle connection)
      : oSupport(support), lConnection(connection) {
    oSupport.Offer(connection);
  }
  ~Offered() { oSupport.Disown(lConnection); }
  Offered(const Offered&) = delete;
  Offered& operator=(const Offered&) = delete;

 private:
  MSocketSupport& oSupport;
  platform::SocketHandle lConnection;
};

}  // namespace

std::shared_ptr<CSocket> CSocket::Create(MSocketSupport& support) {
  return std::shared_ptr<CSocket>(new CSocket(support));
}

CSocket::~CSocket() { LetGo(); }

void CSocket::SetCallback(std::int16_t Index, ISocketServer* callback) {
  oCallback = callback;
  iIndex = callback != nullptr ? Index : std::int16_t{0};
}

void CSocket::Connect(std::optional<TextView> host, std::optional<std::int32_t> port) {
  constexpr TextView source = u"CSocket.Connect";
  sRemoteHost = host.value_or(sRemoteHost);
  lRemotePort = port.value_or(lRemotePort);
  CheckedPort(lRemotePort, source);
  CancelResolve();
  if (lHandle == kNoSocket) vbSocket();
  if (const auto ip = ParseDottedAddress(sRemoteHost)) return ConnectTo(*ip, source);
  iState = SocketState::kResolvingHost;
  lLookUp = oSupport.ResolveHost(sRemoteHost, *this);
  if (lLookUp == 0) {
    iState = SocketState::kError;
    Raise(Err.Number, source);
  }
}

void CSocket::ConnectTo(std::uint32_t ip, TextView source) {
  lRemoteAddress = ip;
  sRemoteHostIP = DottedAddress(ip);
  iState = SocketState::kConnecting;
  const auto port = CheckedPort(lRemotePort, source);
  const int error = oSupport.Layer().Connect(lHandle, {ip, port});
  if (error != 0 && error != kWouldBlock) {
    iState = SocketState::kError;
    Raise(error, source);
  }
  if (iProtocol == SocketProtocol::kUdp) iState = SocketState::kConnected;
}

void CSocket::Bind(std::optional<std::int32_t> port, std::optional<TextView> address) {
  constexpr TextView source = u"CSocket.Bind";
  const auto checkedPort = CheckedPort(port.value_or(lLocalPort), source);
  lLocalPort = checkedPort;
  sLocalIP = address.value_or(sLocalIP);
  if (lHandle == kNoSocket) vbSocket();
  const std::uint32_t ip = sLocalIP.empty() ? 0 : oSupport.AddressOf(sLocalIP);
  RaiseIf(oSupport.Layer().Bind(lHandle, {ip, checkedPort}), source);
  lLocalPort = oSupport.Layer().Properties(lHandle).value.local.port;
}

void CSocket::Listen() {
  const int error = oSupport.Layer().Listen(lHandle, kBacklog);
  iState = error == 0 ? SocketState::kListening : SocketState::kError;
  RaiseIf(error, u"CSocket.Listen");
}

void CSocket::Accept(std::int32_t requestID) {
  LetGo();
  oReceived.Clear();
  oSupport.TakeOver(requestID);
  lHandle = requestID;
  ++lIncarnation;
  lBytesSent = 0;
  ReadProperties();
  Register(u"CSocket.Accept");
  iState = SocketState::kConnected;
}

void CSocket::vbSocket() {
  constexpr TextView source = u"CSocket.vbSocket";
  oSupport.InitWinsockService();
  const auto opened = oSupport.Layer().Open(iProtocol);
  RaiseIf(opened.error, source);
  if (lHandle != kNoSocket) {
    LetGo();
    iState = SocketState::kClosed;
  }
  oReceived.Clear();
  lHandle = opened.value;
  ++lIncarnation;
  lBytesSent = 0;
  ReadProperties();
  Register(source);
}

void CSocket::Register(TextView source) {
  if (!oSupport.RegisterSocket(lHandle, *this)) {
    const int error = Err.Number;
    LetGo();
    iState = SocketState::kError;
    Raise(error, source);
  }
}

void CSocket::ReadProperties() {
  const auto properties = oSupport.Layer().Properties(lHandle).value;
  iProtocol = properties.protocol;
  const bool udp = iProtocol == SocketProtocol::kUdp;
  const std::int32_t datagram = oSupport.LargestDatagram();
  lSendChunk = udp ? datagram : properties.sendBytes;
  lReceiveChunk = std::clamp(udp ? datagram : properties.receiveBytes, 1, kLargestChunk);
  if (properties.peer.port != 0) {
    lRemoteAddress = properties.peer.ip;
    sRemoteHostIP = DottedAddress(properties.peer.ip);
    lRemotePort = properties.peer.port;
    lLocalPort = properties.local.port;
  }
}

void CSocket::CloseSocket() {
  const bool tcp = iProtocol == SocketProtocol::kTcp;
  if (tcp && lHandle != kNoSocket && iState == SocketState::kConnected) {
    iState = SocketState::kClosing;
    bEndsSending = true;
    return EndSendingWhenQueueIsEmpty();
  }
  DestroySocket();
  iState = SocketState::kClosed;
}

void CSocket::EndSendingWhenQueueIsEmpty() {
  if (bEndsSending && oSendQueue.Empty()) {
    bEndsSending = bSendPending = false;
    RaiseIf(oSupport.Layer().ShutdownSend(lHandle), u"CSocket.CloseSocket");
  }
}

void CSocket::CancelResolve() {
  if (lLookUp != 0) oSupport.CancelResolve(std::exchange(lLookUp, 0));
}

/// 0, or the error number of closing the system's socket. What was received stays.
int CSocket::LetGo() {
  CancelResolve();
  if (lHandle == kNoSocket) return 0;
  oSupport.UnregisterSocket(lHandle);
  ++lIncarnation;
  oSendQueue.Clear();
  bSendPending = bEndsSending = false;
  return oSupport.Layer().Close(std::exchange(lHandle, kNoSocket));
}

void CSocket::DestroySocket() { RaiseIf(LetGo(), u"CSocket.DestroySocket"); }

void CSocket::SendData(const SocketValue& vData) {
  if (lHandle == kNoSocket && iProtocol == SocketProtocol::kTcp) {
    throw RunTimeError(kWrongState, u"CSocket.SendData",
                       u"Wrong protocol or connection state for the requested transaction or "
                       u"request.");
  }
  if (lHandle == kNoSocket) vbSocket();
  RaiseIf(bEndsSending ? kShutDown : 0, u"CSocket.SendData");
  const std::size_t before = oSendQueue.Size();
  std::visit(Enqueue{oSendQueue}, vData);
  const bool pendingBefore = std::exchange(bSendPending, true);
  const int error = PassQueuedData();
  if (error != 0 && !oSendQueue.Empty()) {
    oSendQueue.RemoveLast(oSendQueue.Size() - before);
    bSendPending = pendingBefore;
  }
  RaiseIf(error, u"CSocket.SendData");
}

/// One attempt. 0, or the error number; what cannot be sent on a lost connection is dropped.
int CSocket::PassQueuedData() {
  if (oSendQueue.Empty()) return 0;
  const platform::SocketAddress peer = {lRemoteAddress, static_cast<std::uint16_t>(lRemotePort)};
  const bool udp = iProtocol == SocketProtocol::kUdp;
  const auto sent = oSupport.Layer().Send(lHandle, oSendQueue.Front(), udp ? &peer : nullptr);
  if (sent.error == 0) {
    oSendQueue.Remove(static_cast<std::size_t>(sent.value));
    lBytesSent += static_cast<std::uint64_t>(sent.value);
    ReportSendProgress(sent.value);
    return 0;
  }
  if (sent.error == kWouldBlock) return 0;
  if (IsLost(sent.error)) {
    oSendQueue.Clear();
    bSendPending = false;
  }
  return sent.error;
}

void CSocket::OnNotification(SocketEvent event, int error) {
  if (error != 0) {
    return Fail(error, Text(SocketErrorText(error)), ToText(static_cast<std::int64_t>(event)));
  }
  switch (event) {
    case SocketEvent::kRead:
      return OnReadEvent();
    case SocketEvent::kWrite:
      return OnWriteEvent();
    case SocketEvent::kAccept:
      return OnAcceptEvent();
    case SocketEvent::kConnect:
      return OnConnectEvent();
    case SocketEvent::kClose:
      return OnCloseEvent();
  }
}

/// Bytes received; 0 when the peer has finished or there is nothing to receive.
platform::SocketResult<std::int32_t> CSocket::RecvToBuffer() {
  const auto buffer = oSupport.ReceiveBuffer(lReceiveChunk);
  platform::SocketAddress peer = {lRemoteAddress, static_cast<std::uint16_t>(lRemotePort)};
  const auto received = oSupport.Layer().Receive(lHandle, buffer, &peer);
  if (received.error != 0) {
    return {0, received.error == kWouldBlock ? 0 : received.error};
  }
  if (iProtocol == SocketProtocol::kUdp) {
    lRemoteAddress = peer.ip;
    sRemoteHostIP = DottedAddress(peer.ip);
    lRemotePort = peer.port;
  }
  oReceived.Append(buffer.first(static_cast<std::size_t>(received.value)));
  return received;
}

void CSocket::OnReadEvent() {
  const auto received = RecvToBuffer();
  RaiseIf(received.error, u"CSocket.RecvToBuffer");
  if (received.value > 0) ReportDataArrival();
}

void CSocket::OnWriteEvent() {
  if (!oSendQueue.Empty()) {
    RaiseIf(PassQueuedData(), u"CSocket.SendData");
  } else if (bSendPending) {
    bSendPending = false;
    ReportSendComplete();
  }
  EndSendingWhenQueueIsEmpty();
}

void CSocket::OnAcceptEvent() {
  const auto accepted = oSupport.Layer().Accept(lHandle);
  if (accepted.error != 0) {
    return;  // gone again, or no descriptor left for it: not the listener's failure
  }
  const Offered offered(oSupport, accepted.value);
  ReportConnectionRequest(accepted.value);
}

void CSocket::OnConnectEvent() {
  if (iState == SocketState::kConnecting) {
    ReadProperties();
    iState = SocketState::kConnected;
    ReportConnect();
  }
}

/// Reports everything that is left to receive; a receive that fails is the end as well. False when
/// a handler has meanwhile closed the socket.
bool CSocket::Drain() {
  const auto own = lIncarnation;
  while (lIncarnation == own && RecvToBuffer().value > 0) ReportDataArrival();
  return lIncarnation == own;
}

/// Passes on what the network takes of the queue; whether the peer still wants it or not, the close
/// is reported. False when a handler has meanwhile closed the socket.
bool CSocket::PassAllQueuedData() {
  const auto own = lIncarnation;
  std::size_t before;
  do {
    before = oSendQueue.Size();
    if (PassQueuedData() != 0) break;
  } while (lIncarnation == own && oSendQueue.Size() < before);
  return lIncarnation == own;
}

void CSocket::OnCloseEvent() {
  if (!Drain()) return;
  const bool silently = iState == SocketState::kClosing;
  iState = SocketState::kClosing;
  if (!PassAllQueuedData()) return;
  DestroySocket();
  iState = SocketState::kClosed;
  if (!silently) ReportClose();
}

void CSocket::PostGetHostEvent(int error, std::uint32_t ip) {
  constexpr TextView source = u"CSocket.PostGetHostEvent";
  lLookUp = 0;
  if (error != 0) return Fail(error, Text(SocketErrorText(error)), source);
  iState = SocketState::kHostResolved;
  ConnectTo(ip, source);
}

/// The connection that a listener's handler failed for is closed already; the listener goes on.
void CSocket::OnException(const std::exception_ptr& exception) {
  if (iState != SocketState::kListening) {
    const RunTimeError error = AsRunTimeError(exception, u"CSocket");
    Fail(error.Number, error.Description, error.Source);
  }
}

void CSocket::Fail(int number, Text description, TextView source) {
  iState = SocketState::kError;
  LetGo();
  ReportError(number, std::move(description), source);
}

std::int32_t CSocket::BytesReceived() const { return Count(oReceived.Size()); }

std::string_view CSocket::Asked(std::int32_t maxLen) const {
  return oReceived.Front(maxLen > 0 ? static_cast<std::size_t>(maxLen) : oReceived.Size());
}

void CSocket::Discard(std::int32_t maxLen) { oReceived.Remove(Asked(maxLen).size()); }

void CSocket::PeekData(Text& vData, std::int32_t maxLen) const {
  vData = BytesToText(Asked(maxLen));
}

void CSocket::PeekData(std::vector<std::uint8_t>& vData, std::int32_t maxLen) const {
  const std::string_view bytes = Asked(maxLen);
  vData.assign(bytes.begin(), bytes.end());
}

void CSocket::PeekData(bool& vData, std::int32_t maxLen) const {
  std::int16_t value = 0;
  PeekData(value, maxLen);
  vData = value != 0;
}

void CSocket::GetData(Text& vData, std::int32_t maxLen) {
  PeekData(vData, maxLen);
  Discard(maxLen);
}

void CSocket::GetData(std::vector<std::uint8_t>& vData, std::int32_t maxLen) {
  PeekData(vData, maxLen);
  Discard(maxLen);
}

void CSocket::GetData(bool& vData, std::int32_t maxLen) {
  PeekData(vData, maxLen);
  Discard(maxLen);
}

Text CSocket::LocalIP() const { return sLocalIP.empty() ? oSupport.OwnAddress() : sLocalIP; }

Text CSocket::LocalHostName() const { return oSupport.OwnName(); }

// Handlers are copied before the call: one may replace itself, or let go of its owner.

void CSocket::ReportClose() {
  if (oCallback != nullptr) {
    oCallback->OnClose(iIndex);
  } else if (const auto handler = Events.OnClose) {
    handler();
  }
}

void CSocket::ReportConnect() {
  if (oCallback != nullptr) {
    oCallback->OnConnect(iIndex);
  } else if (const auto handler = Events.OnConnect) {
    handler();
  }
}

void CSocket::ReportConnectionRequest(std::int32_t requestID) {
  if (oCallback != nullptr) {
    oCallback->OnConnectionRequest(iIndex, requestID);
  } else if (const auto handler = Events.OnConnectionRequest) {
    handler(requestID);
  }
}

void CSocket::ReportDataArrival() {
  const std::int32_t bytesTotal = BytesReceived();
  if (oCallback != nullptr) {
    oCallback->OnDataArrival(iIndex, bytesTotal);
  } else if (const auto handler = Events.OnDataArrival) {
    handler(bytesTotal);
  }
}

void CSocket::ReportError(int number, Text description, TextView source) {
  const bool fits = std::in_range<std::uint16_t>(number);
  const auto Number = static_cast<std::uint16_t>(fits ? number : ErrorNumber::kInternalError);
  bool cancelDisplay = false;
  if (oCallback != nullptr) {
    oCallback->OnError(iIndex, Number, description, 0, source, {}, 0, cancelDisplay);
  } else if (const auto handler = Events.OnError) {
    handler(Number, description, 0, source, {}, 0, cancelDisplay);
  }
}

void CSocket::ReportSendComplete() {
  if (oCallback != nullptr) {
    oCallback->OnSendComplete(iIndex);
  } else if (const auto handler = Events.OnSendComplete) {
    handler();
  }
}

void CSocket::ReportSendProgress(std::int32_t bytesSent) {
  const std::int32_t bytesRemaining = Count(oSendQueue.Size());
  if (oCallback != nullptr) {
    oCallback->OnSendProgress(iIndex, bytesSent, bytesRemaining);
  } else if (const auto handler = Events.OnSendProgress) {
    handler(bytesSent, bytesRemaining);
  }
}

}  // namespace ostrel
