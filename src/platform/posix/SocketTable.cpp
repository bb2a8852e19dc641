#include "platform/posix/SocketTable.h"

#include <unistd.h>

#include <chrono>
#include <new>
#include <utility>

namespace ostrel::platform {

SocketTable& TheSockets() {
  static SocketTable table;
  return table;
}

SocketTable::SocketTable()
    : oResume(std::chrono::milliseconds(100), [this] { ResumeAccepting(); }) {}

SocketHandle SocketTable::Add(int descriptor, SocketRole role) {
  try {
    auto& slot = sockets[descriptor];
    slot = std::make_shared<WatchedSocket>(descriptor, role);
    return descriptor;
  } catch (const std::bad_alloc&) {
    sockets.erase(descriptor);
    close(descriptor);
    return kNoSocket;
  }
}

WatchedSocket* SocketTable::Find(SocketHandle socket) const {
  const auto found = sockets.find(socket);
  return found == sockets.end() ? nullptr : found->second.get();
}

bool SocketTable::Close(SocketHandle socket) {
  const auto found = sockets.find(socket);
  if (found == sockets.end()) return false;
  found->second->Close();
  sockets.erase(found);
  ResumeAccepting();
  return true;
}

void SocketTable::SetSink(SocketSink* sink) {
  oSink = sink;
  if (sink == nullptr) {
    for (const auto& [handle, socket] : sockets) socket->AnnounceTo(nullptr);
  }
}

void SocketTable::PauseAccepting(SocketHandle listener) {
  paused.push_back(listener);
  oResume.SetEnabled(true);
}

void SocketTable::ResumeAccepting() {
  oResume.SetEnabled(false);
  for (const SocketHandle listener : std::exchange(paused, {})) {
    if (WatchedSocket* socket = Find(listener)) socket->AwaitConnection();
  }
}

}  // namespace ostrel::platform
