// The multi-client TCP server: a listener, and a slot for each accepted connection. A connection is
// named by its index, from 1; index 0 is the listener itself. A slot keeps its closed socket, and
// so the peer's address, until a new connection takes it over.
//
// Events are told from inside the event loop's dispatch. A handler may call every member,
// StopServer included, and may destroy the server.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

#include "sockets/ISocketServer.h"
#include "sockets/SocketValue.h"
#include "util/Text.h"

namespace ostrel {

class CSocket;
class CSocketListen;
class MSocketSupport;

struct SocketServerEvents {
  /// Everything that the connection had received; already removed from its socket. bytesTotal is
  /// its length.
  std::function<void(std::int16_t SckIndex, Text Data, std::int32_t bytesTotal, TextView RemoteIP,
                     TextView RemoteHost)>
      DataArrival;
  /// SckIndex 0: the listener failed; every connection is closed right after. Otherwise the
  /// connection's socket is gone and its slot is free.
  std::function<void(std::int16_t SckIndex, std::uint16_t Number, Text& Description,
                     std::int32_t Scode, TextView Source)>
      Error;
  std::function<void(std::int16_t SckIndex, std::int32_t LocalPort, TextView RemoteIP,
                     TextView RemoteHost)>
      SocketOpened;
  /// Closed by the peer; never told of a connection that this side closed.
  std::function<void(std::int16_t SckIndex, std::int32_t LocalPort, TextView RemoteIP,
                     TextView RemoteHost)>
      SocketClosed;
  std::function<void()> ServerStarted;
  /// Told by each StartServer first, and twice by each StopServer.
  std::function<void()> ServerStopped;
  std::function<void()> StartFailed;
};

class CSocketServer final : private ISocketServer {
 public:
  /// On the system's sockets.
  CSocketServer();
  explicit CSocketServer(MSocketSupport& support);
  /// Stops the server, with the events of StopServer.
  ~CSocketServer() override;
  CSocketServer(const CSocketServer&) = delete;
  CSocketServer& operator=(const CSocketServer&) = delete;

  SocketServerEvents Events;

  // No member raises, but for ServerPort and ServerIP. Each that does something clears Err first
  // and leaves in it what a socket or a handler raised (the last, when there were several), error 7
  // for want of memory. With an index that has no socket a member does nothing and returns 0 or an
  // empty text.

  /// Stops a listener that runs and listens anew. An empty LocalIP listens on all interfaces and is
  /// then filled with the machine's own address. Port 0: a free port, see ServerPort. False, after
  /// the event StartFailed, when the port cannot be had.
  bool StartServer(std::int32_t Port, Text& LocalIP);
  /// Closes the listener and every connection. Always false. ServerPort and ServerIP can still be
  /// read from the first ServerStopped.
  bool StopServer();
  /// Closes the listener only, with one ServerStopped; the connections stay.
  void StopListening();

  /// The result of the last StartServer; false after StopServer.
  bool ServerStarted() const { return bServerStarted; }
  /// "Closed" after StopServer, empty before it.
  const Text& State() const { return sState; }
  /// These two raise RunTimeError 91 after StopServer.
  std::int32_t ServerPort() const;
  Text ServerIP() const;

  /// Slots in use or used since numbering last began at 1.
  std::int32_t ConnectionCount() const;
  /// Slots whose socket is neither closed nor failed; one that waits for its peer's close counts.
  std::int32_t OpenConnectionCount() const;

  void SendData(const SocketValue& vData, std::int32_t lIndex);
  void SendString(TextView Data, std::int32_t lIndex);
  void BroadcastData(const SocketValue& vData);
  /// As CSocket::GatherPieces.
  void GatherPieces(std::int16_t Index, bool on);

  /// Ends the sending direction once all that is queued has gone out; the slot is free once the
  /// peer has closed too. Done again, it closes the connection at once.
  void CloseSocket(std::int16_t Index);
  /// Closes every connection without events; numbering begins at 1 again.
  void CloseAllSockets();
  Text GetRemoteHost(std::int16_t Index) const;
  Text GetRemoteIP(std::int16_t Index) const;
  std::int32_t GetBytesReceived(std::int16_t Index) const;
  /// Queued, and not yet taken by the network.
  std::size_t GetBytesToSend(std::int16_t Index) const;
  /// Taken by the network since the connection was accepted.
  std::uint64_t GetBytesSent(std::int16_t Index) const;
  /// The numbers of SocketState.
  std::int16_t GetState(std::int16_t Index) const;

 private:
  void OnClose(std::int16_t Index) override;
  void OnConnect(std::int16_t) override {}
  void OnConnectionRequest(std::int16_t, std::int32_t) override {}
  void OnDataArrival(std::int16_t Index, std::int32_t bytesTotal) override;
  void OnError(std::int16_t Index, std::uint16_t Number, Text& Description, std::int32_t Scode,
               TextView Source, TextView HelpFile, std::int32_t HelpContext,
               bool& CancelDisplay) override;
  void OnSendComplete(std::int16_t) override {}
  void OnSendProgress(std::int16_t, std::int32_t, std::int32_t) override {}

  void oListen_ConnectionRequest(std::int32_t requestID);
  void oListen_Error(std::uint16_t Number, Text& Description, std::int32_t Scode, TextView Source);
  void oListen_ServerListening(bool listening);

  void Subscribe();
  void ReleaseListener();
  bool Start(std::int32_t Port, Text& LocalIP);
  std::shared_ptr<CSocket> SocketAt(std::int32_t index) const;
  static void SendTo(const std::shared_ptr<CSocket>& socket, const SocketValue& vData);
  void CloseEverySocket();
  void SearchFrom(std::int16_t index);
  std::int16_t TakeSlot();

  MSocketSupport& oSupport;
  std::shared_ptr<CSocketListen> oListen;
  std::vector<std::shared_ptr<CSocket>> oConnections;  // element 0 is never used
  std::size_t lSearchFrom = 1;                         // no slot below this index is free
  Text sState;
  bool bServerStarted = false;
  /// Handlers may destroy the server: who tells an event and goes on looks whether this expired.
  std::shared_ptr<void> oLife = std::make_shared<char>();
};

}  // namespace ostrel
