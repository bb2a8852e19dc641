// poll reports a state (readable, room to send) for as long as it lasts, while the program is to
// get an event once. A socket therefore watches only for the states of which the program has not
// been told, and watches for one again when the operation that changes it has been called.
#include "platform/posix/WatchedSocket.h"

#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <optional>
#include <utility>

#include "platform/posix/ErrorNumbers.h"

namespace ostrel::platform {
namespace {

constexpr short kEnded = POLLRDHUP | POLLHUP | POLLERR;

int PendingError(int descriptor) {
  int error = 0;
  socklen_t size = sizeof error;
  getsockopt(descriptor, SOL_SOCKET, SO_ERROR, &error, &size);
  return error == 0 ? 0 : SocketErrorOf(error);
}

/// The error with which a stream ended, 0 for an orderly end; nothing while there is something left
/// to receive.
std::optional<int> EndOfStream(int descriptor) {
  char next;
  const auto peeked = recv(descriptor, &next, 1, MSG_PEEK | MSG_DONTWAIT);
  if (peeked > 0 || (peeked < 0 && (errno == EAGAIN || errno == EINTR))) return std::nullopt;
  return peeked == 0 ? 0 : SocketErrorOf(errno);
}

}  // namespace

WatchedSocket::WatchedSocket(int ownDescriptor, SocketRole firstRole)
    : iDescriptor(ownDescriptor), iRole(firstRole) {}

WatchedSocket::~WatchedSocket() { Close(); }

void WatchedSocket::Close() {
  oSink = nullptr;
  oWatch.reset();
  if (iDescriptor >= 0) close(std::exchange(iDescriptor, -1));
}

void WatchedSocket::AnnounceTo(SocketSink* sink) {
  oSink = sink;
  oWatch.reset();
  if (sink != nullptr) {
    oWatch = std::make_unique<LoopWatch>(iDescriptor, Events(),
                                         [this](short reported) { OnPoll(reported); });
  }
}

void WatchedSocket::Became(SocketRole newRole) {
  iRole = newRole;
  bAwaitsRead = bAwaitsWrite = true;
  Watch();
}

void WatchedSocket::AwaitRead() {
  bAwaitsRead = true;
  Watch();
}

void WatchedSocket::AwaitWrite() {
  bAwaitsWrite = true;
  Watch();
}

void WatchedSocket::AwaitConnection() { AwaitRead(); }

short WatchedSocket::Events() const {
  const int reading = bAwaitsRead ? POLLIN : 0;
  if (bCloseAnnounced || iRole == SocketRole::kNew) return 0;
  if (iRole == SocketRole::kConnecting) return POLLOUT;
  if (iRole == SocketRole::kListening) return static_cast<short>(reading);
  const int ending = bAwaitsRead && iRole == SocketRole::kStream ? POLLRDHUP : 0;
  return static_cast<short>(reading | ending | (bAwaitsWrite ? POLLOUT : 0));
}

void WatchedSocket::Watch() {
  if (oWatch) oWatch->SetEvents(Events());
}

void WatchedSocket::OnPoll(short reported) {
  const auto keep = shared_from_this();
  switch (iRole) {
    case SocketRole::kNew:
      return;
    case SocketRole::kConnecting:
      return Connected();
    case SocketRole::kListening:
      bAwaitsRead = false;
      Watch();
      return Announce(SocketEvent::kAccept);
    case SocketRole::kStream:
    case SocketRole::kDatagram:
      return StreamReported(reported);
  }
}

void WatchedSocket::Connected() {
  const int error = PendingError(iDescriptor);
  if (error == 0) {
    Became(SocketRole::kStream);
  } else {
    bCloseAnnounced = true;
    Watch();
  }
  Announce(SocketEvent::kConnect, error);
}

void WatchedSocket::StreamReported(short reported) {
  const bool readable = bAwaitsRead && (reported & (POLLIN | kEnded)) != 0;
  const bool mayHaveEnded = iRole == SocketRole::kStream && (reported & kEnded) != 0;
  const auto end = readable && mayHaveEnded ? EndOfStream(iDescriptor) : std::nullopt;
  // Errors count as room: the next Send tells what is wrong, and nothing is reported in a circle.
  const bool writable = bAwaitsWrite && (reported & (POLLOUT | POLLHUP | POLLERR)) != 0;
  bCloseAnnounced = end.has_value();
  bAwaitsRead = bAwaitsRead && !readable;
  bAwaitsWrite = bAwaitsWrite && !writable;
  Watch();
  if (end) return Announce(SocketEvent::kClose, *end);
  if (readable) Announce(SocketEvent::kRead);
  if (writable) Announce(SocketEvent::kWrite);
}

void WatchedSocket::Announce(SocketEvent event, int error) {
  if (oSink != nullptr) oSink->OnSocket(iDescriptor, event, error);
}

}  // namespace ostrel::platform
