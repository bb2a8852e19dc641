// One open socket and what it still has to announce: WSAAsyncSelect's rules over poll. An event is
// announced once and then only after the operation that answers it (see
// platform/SocketNotifications.h), so that nothing is announced in a circle.
#pragma once

#include <memory>

#include "platform/SocketNotifications.h"
#include "platform/posix/LoopWatch.h"

namespace ostrel::platform {

enum class SocketRole { kNew, kListening, kConnecting, kStream, kDatagram };

class WatchedSocket : public std::enable_shared_from_this<WatchedSocket> {
 public:
  /// Owns the descriptor.
  WatchedSocket(int descriptor, SocketRole role);
  ~WatchedSocket();
  WatchedSocket(const WatchedSocket&) = delete;
  WatchedSocket& operator=(const WatchedSocket&) = delete;

  /// At once, also from inside its own announcement, which is then the last.
  void Close();
  /// -1 once closed.
  int Descriptor() const { return iDescriptor; }
  SocketRole Role() const { return iRole; }

  /// Announces to `sink` from now on; nothing when it is null.
  void AnnounceTo(SocketSink* sink);
  void Became(SocketRole role);
  void AwaitRead();
  void AwaitWrite();
  void AwaitConnection();

  bool bSendingEnded = false;  // by this side

 private:
  short Events() const;
  void Watch();
  void OnPoll(short reported);
  void Connected();
  void StreamReported(short reported);
  void Announce(SocketEvent event, int error = 0);

  int iDescriptor;
  SocketRole iRole;
  bool bAwaitsRead = true;  // on a listener: awaits a connection
  bool bAwaitsWrite = true;
  bool bCloseAnnounced = false;
  SocketSink* oSink = nullptr;
  std::unique_ptr<LoopWatch> oWatch;
};

}  // namespace ostrel::platform
