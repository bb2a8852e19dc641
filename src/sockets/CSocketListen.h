// The listening socket of a server. Handlers run from the event loop, or from inside StartListen
// and StopListen, and may let go of the listener.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>

#include "util/Text.h"

namespace ostrel {

class CSocket;
class MSocketSupport;

struct SocketListenEvents {
  /// requestID goes to Accept of a fresh socket before the handler returns; else it is closed.
  std::function<void(std::int32_t requestID, std::int32_t LocalPort, TextView RemoteIP,
                     TextView RemoteHost)>
      ConnectionRequest;
  std::function<void(std::uint16_t Number, Text& Description, std::int32_t Scode, TextView Source)>
      Error;
  /// True when listening began, false when it ended; also by a StopListen that had nothing to stop.
  std::function<void(bool listening)> ServerListening;
  std::function<void()> OnClose;
  std::function<void()> StartFailed;
};

class CSocketListen : public std::enable_shared_from_this<CSocketListen> {
 public:
  static std::shared_ptr<CSocketListen> Create(MSocketSupport& support);
  ~CSocketListen();
  CSocketListen(const CSocketListen&) = delete;
  CSocketListen& operator=(const CSocketListen&) = delete;

  SocketListenEvents Events;

  /// Listens anew. An empty LocalIP listens on all interfaces and is then filled with the machine's
  /// own address. False, after the event StartFailed, when the port cannot be had. Raises only what
  /// a handler of StartFailed raises.
  bool StartListen(std::int32_t Port, Text& LocalIP);
  /// Always false. Raises only what a handler of ServerListening raises.
  bool StopListen();

  bool Listenning() const { return bListenning; }
  /// "Listenning" or "Closed", empty before the first start.
  const Text& State() const { return sState; }
  std::int32_t ServerPort() const;
  Text ServerIP() const;

 private:
  explicit CSocketListen(MSocketSupport& support);

  void oListen_OnConnectionRequest(std::int32_t requestID);
  void oListen_OnError(std::uint16_t Number, Text& Description, std::int32_t Scode,
                       TextView Source);
  void oListen_OnClose();

  void Listen(std::int32_t Port, Text& LocalIP);
  void AwaitListening();
  void NotifyStartFailed();

  MSocketSupport& oSupport;
  std::shared_ptr<CSocket> oListen;
  Text sState;
  bool bListenning = false;
};

}  // namespace ostrel
