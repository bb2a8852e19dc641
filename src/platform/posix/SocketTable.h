// The process's open sockets by handle, shared by the operations and the notifications. A handle is
// the descriptor's number; one that is not in here is never touched.
#pragma once

#include <memory>
#include <unordered_map>
#include <vector>

#include "platform/EventLoop.h"
#include "platform/posix/WatchedSocket.h"

namespace ostrel::platform {

class SocketTable {
 public:
  SocketTable();

  /// Owns the descriptor. kNoSocket without memory for it; it is closed then.
  SocketHandle Add(int descriptor, SocketRole role);
  /// Null when it is not open.
  WatchedSocket* Find(SocketHandle socket) const;
  bool Close(SocketHandle socket);

  /// The listener's next connection is announced again once there may be a descriptor for it.
  void PauseAccepting(SocketHandle listener);

  SocketSink* Sink() const { return oSink; }
  /// Null: no socket announces anything any more.
  void SetSink(SocketSink* sink);

 private:
  void ResumeAccepting();

  std::unordered_map<SocketHandle, std::shared_ptr<WatchedSocket>> oSockets;
  std::vector<SocketHandle> oPaused;
  SocketSink* oSink = nullptr;
  Timer oResume;
};

SocketTable& TheSockets();

}  // namespace ostrel::platform
