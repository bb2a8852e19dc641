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
    auto& slot = oSockets[descriptor];
    slot = std::make_shared<WatchedSocket>(descriptor, role);
    return descriptor;
  } catch (const std::bad_alloc&) {
    oSockets.erase(descriptor);
    close(descriptor);
    return kNoSocket;
  }
}

WatchedSocket* SocketTable::Find(SocketHandle socket) const {
  const auto found = oSockets.find(socket);
  return found == oSockets.end() ? nullptr : found->second.get();
}

bool SocketTable::Close(SocketHandle socket) {
  const auto found = oSockets.find(socket);
  if (found == oSockets.end()) return false;
  found->second->Close();
  oSockets.erase(found);
  ResumeAccepting();
  return true;
}

void SocketTable::SetSink(SocketSink* sink) {
  oSink = sink;
  if (sink == nullptr) {
    for (const auto& [handle, socket] : oSockets) socket->AnnounceTo(nullptr);
  }
}

void SocketTable::PauseAccepting(SocketHandle listener) {
  oPaused.push_back(listener);
  oResume.SetEnabled(true);
}

void SocketTable::ResumeAccepting() {
  oResume.SetEnabled(false);
  for (const SocketHandle listener : std::exchange(oPaused, {})) {
    if (WatchedSocket* socket = Find(listener)) socket->AwaitConnection();
  }
}

}  // namespace ostrel::platform
