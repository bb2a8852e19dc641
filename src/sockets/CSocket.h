// One non-blocking TCP (or UDP) socket. It keeps everything received until its owner asks for it,
// and queues everything sent until the network takes it. It reports to its owner through events or,
// once it has a callback, to that.
//
// Handlers run from the event loop and may call every member, or let go of the socket; what is left
// of the notification under way is still reported then, unless Events was emptied. Errors are
// raised as RunTimeError with the number, its text and the source "CSocket." and the member's name.
#pragma once

#include <concepts>
#include <cstdint>
#include <cstring>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "platform/Sockets.h"
#include "sockets/ISocketServer.h"
#include "sockets/MSocketSupport.h"
#include "sockets/SocketBuffers.h"
#include "sockets/SocketValue.h"
#include "util/Text.h"

namespace ostrel {

/// The numbers are part of the server's interface.
enum class SocketState : std::int16_t {
  kClosed = 0,
  kOpen = 1,  // reserved, never entered
  kListening = 2,
  kConnectionPending = 3,  // reserved, never entered
  kResolvingHost = 4,
  kHostResolved = 5,
  kConnecting = 6,
  kConnected = 7,
  kClosing = 8,  // this side has ended sending and waits for the peer's close
  kError = 9,
};

struct SocketEvents {
  /// The peer has closed; not told of a close that this side began.
  std::function<void()> OnClose;
  std::function<void()> OnConnect;
  /// requestID goes to Accept of a fresh socket before the handler returns; else it is closed.
  std::function<void(std::int32_t requestID)> OnConnectionRequest;
  /// bytesTotal: bytes now held in the receive buffer.
  std::function<void(std::int32_t bytesTotal)> OnDataArrival;
  /// The socket is gone. Source: the notification's number, or the member that failed. A number
  /// that 16 bits do not hold is told as 51.
  std::function<void(std::uint16_t Number, Text& Description, std::int32_t Scode, TextView Source,
                     TextView HelpFile, std::int32_t HelpContext, bool& CancelDisplay)>
      OnError;
  std::function<void()> OnSendComplete;
  std::function<void(std::int32_t bytesSent, std::int32_t bytesRemaining)> OnSendProgress;
};

/// A number that GetData hands out in its memory form.
template <typename T>
concept SocketNumber = std::same_as<T, std::uint8_t> || std::same_as<T, std::int16_t> ||
    std::same_as<T, std::int32_t> || std::same_as<T, float> || std::same_as<T, double> ||
    std::same_as<T, Currency> || std::same_as<T, DateValue>;

class CSocket final : public SocketOwner {
 public:
  static std::shared_ptr<CSocket> Create(MSocketSupport& support = SocketSupport());
  ~CSocket();
  CSocket(const CSocket&) = delete;
  CSocket& operator=(const CSocket&) = delete;

  SocketEvents Events;
  /// Without a callback the index is 0, whatever was given. The callback is not owned.
  void SetCallback(std::int16_t Index, ISocketServer* callback);
  std::int16_t CallbackIndex() const { return iIndex; }

  /// An argument that is not given stays as it was. The host is a dotted address or a name.
  /// OnConnect or OnError tells the outcome.
  void Connect(std::optional<TextView> host = {}, std::optional<std::int32_t> port = {});
  /// An empty address binds all interfaces; port 0 a free one, see LocalPort. A port outside 0 to
  /// 65535 is error 10022.
  void Bind(std::optional<std::int32_t> port = {}, std::optional<TextView> address = {});
  void Listen();
  /// Owns the connection from here on, also when it raises.
  void Accept(std::int32_t requestID);
  /// Creates the system's socket and registers it; one that is there already is closed at once.
  void vbSocket();
  /// A connected socket ends its sending direction once the network has taken all that is queued,
  /// and is closed, silently, once the peer has closed too. Any other is closed at once, also one
  /// that is closing already.
  void CloseSocket();

  /// Queues the data and offers it to the network. Error 40006 on a TCP socket that is not there,
  /// 10057 on one that is not connected yet. Data for which it raises is not queued; what was
  /// queued before stays, unless the connection is lost. Raises std::bad_alloc without memory.
  void SendData(const SocketValue& vData);
  void SendString(TextView text) { SendData(text); }
  /// From now on small pieces leave together, or, switched off, what was held back leaves.
  void GatherPieces(bool on) { oSupport.Layer().GatherPieces(lHandle, on); }

  /// Takes what was received out of the buffer: the first maxLen bytes, or all of it when maxLen is
  /// 0 or more than there is. Text has one character a byte. A number takes its first bytes from
  /// the data, zero where there are fewer.
  void GetData(Text& vData, std::int32_t maxLen = 0);
  void GetData(std::vector<std::uint8_t>& vData, std::int32_t maxLen = 0);
  void GetData(bool& vData, std::int32_t maxLen = 0);
  template <SocketNumber T>
  void GetData(T& vData, std::int32_t maxLen = 0) {
    PeekData(vData, maxLen);
    Discard(maxLen);
  }
  /// The same, leaving the buffer as it is.
  void PeekData(Text& vData, std::int32_t maxLen = 0) const;
  void PeekData(std::vector<std::uint8_t>& vData, std::int32_t maxLen = 0) const;
  void PeekData(bool& vData, std::int32_t maxLen = 0) const;
  template <SocketNumber T>
  void PeekData(T& vData, std::int32_t maxLen = 0) const {
    const std::string_view bytes = Asked(maxLen).substr(0, sizeof vData);
    vData = {};
    std::memcpy(&vData, bytes.data(), bytes.size());
  }
  /// In the receive buffer.
  std::int32_t BytesReceived() const;
  /// Queued, and not yet taken by the network.
  std::size_t BytesToSend() const { return oSendQueue.Size(); }
  /// Taken by the network since the system's socket was made; kept after the close.
  std::uint64_t BytesSent() const { return lBytesSent; }

  SocketState State() const { return iState; }
  std::int32_t SocketHandle() const { return lHandle; }
  platform::SocketProtocol protocol() const { return iProtocol; }
  /// Counts from the next system socket on.
  void protocol(platform::SocketProtocol value) { iProtocol = value; }
  /// The name used to identify the remote computer; empty when the peer connected to us.
  const Text& RemoteHost() const { return sRemoteHost; }
  void RemoteHost(TextView host) { sRemoteHost = host; }
  /// The peer's dotted address, kept after the close.
  const Text& RemoteHostIP() const { return sRemoteHostIP; }
  /// The port to be connected to on the remote computer.
  std::int32_t RemotePort() const { return lRemotePort; }
  void RemotePort(std::int32_t port) { lRemotePort = port; }
  /// The port used on the local computer.
  std::int32_t LocalPort() const { return lLocalPort; }
  void LocalPort(std::int32_t port) { lLocalPort = port; }
  /// The address that the socket was bound to, else the machine's own.
  Text LocalIP() const;
  Text LocalHostName() const;

  void OnNotification(platform::SocketEvent event, int error) override;
  void PostGetHostEvent(int error, std::uint32_t ip) override;
  void OnException(const std::exception_ptr& exception) override;

 private:
  explicit CSocket(MSocketSupport& support) : oSupport(support) {}

  void OnReadEvent();
  void OnWriteEvent();
  void OnAcceptEvent();
  void OnConnectEvent();
  void OnCloseEvent();

  platform::SocketResult<std::int32_t> RecvToBuffer();
  bool Drain();
  int PassQueuedData();
  bool PassAllQueuedData();
  void EndSendingWhenQueueIsEmpty();
  void ConnectTo(std::uint32_t ip, TextView source);
  void Register(TextView source);
  void ReadProperties();
  void CancelResolve();
  int LetGo();
  void DestroySocket();
  void Fail(int number, Text description, TextView source);
  std::string_view Asked(std::int32_t maxLen) const;
  void Discard(std::int32_t maxLen);

  void ReportClose();
  void ReportConnect();
  void ReportConnectionRequest(std::int32_t requestID);
  void ReportDataArrival();
  void ReportError(int number, Text description, TextView source);
  void ReportSendComplete();
  void ReportSendProgress(std::int32_t bytesSent);

  MSocketSupport& oSupport;
  platform::SocketProtocol iProtocol = platform::SocketProtocol::kTcp;
  SocketState iState = SocketState::kClosed;
  platform::SocketHandle lHandle = platform::kNoSocket;
  std::uint32_t lIncarnation = 0;  // counts the system sockets that this object has had
  platform::LookUpHandle lLookUp = 0;
  SendQueue oSendQueue;
  ReceiveBuffer oReceived;
  std::uint64_t lBytesSent = 0;
  bool bSendPending = false;
  bool bEndsSending = false;    // closed by this side, with data still queued
  std::int32_t lSendChunk = 0;  // recorded; a send is offered everything that is queued
  std::int32_t lReceiveChunk = 0;
  Text sRemoteHost;
  Text sRemoteHostIP;
  std::uint32_t lRemoteAddress = 0;
  std::int32_t lRemotePort = 0;
  std::int32_t lLocalPort = 0;
  Text sLocalIP;
  std::int16_t iIndex = 0;
  ISocketServer* oCallback = nullptr;
};

}  // namespace ostrel
