// Windows posts the events of sockets to this window's message queue, where they may outlive their
// socket: a message can come for a handle that the system has given out anew. Each message is
// therefore checked against what is known of the socket and against the socket itself, which is
// asked whether it has data or has really ended.
//
// Events that Windows does not post, or not again, are posted here: room to send after every send,
// a close that waited until everything was received, and any message for which the queue had no
// room.
#include "platform/win32/SocketWindow.h"

#include <chrono>
#include <cstring>
#include <optional>
#include <string>
#include <utility>

#include "platform/win32/MessageLoop.h"

namespace ostrel::platform {
namespace {

constexpr long kAllEvents = FD_READ | FD_WRITE | FD_ACCEPT | FD_CONNECT | FD_CLOSE;

HANDLE LookUpToSystem(LookUpHandle lookUp) {
  return reinterpret_cast<HANDLE>(static_cast<std::intptr_t>(lookUp));
}

/// The error with which a stream ended, 0 for an orderly end; nothing while it has not.
std::optional<int> EndOfStream(SocketHandle handle) {
  char next;
  const int peeked = recv(SystemSocket(handle), &next, 1, MSG_PEEK);
  const int error = peeked < 0 ? WSAGetLastError() : 0;
  return peeked > 0 || error == WSAEWOULDBLOCK ? std::nullopt : std::optional(error);
}

bool HasData(SocketHandle handle) {
  u_long bytes = 0;
  return ioctlsocket(SystemSocket(handle), FIONREAD, &bytes) == 0 && bytes > 0;
}

std::uint32_t FirstAddress(const char* reply) {
  const auto* const host = reinterpret_cast<const hostent*>(reply);
  std::uint32_t address = 0;
  if (host->h_addrtype == AF_INET && host->h_addr_list[0] != nullptr) {
    std::memcpy(&address, host->h_addr_list[0], sizeof address);
  }
  return ntohl(address);
}

}  // namespace

SocketWindow& TheSocketWindow() {
  static SocketWindow window;
  return window;
}

SocketWindow::SocketWindow()
    : tmrUnposted(std::chrono::milliseconds(100), [this] { PostUnposted(); }) {}

SocketWindow::~SocketWindow() { Destroy(); }

void SocketWindow::RegisterMessages() {
  iResolveMessage = RegisterWindowMessageA("Ostrel.ResolveMessage");
  iSocketMessage = RegisterWindowMessageA("Ostrel.WinsockMessage");
}

bool SocketWindow::Create(SocketSink& sink) {
  oWindow = CreateWindowExA(0, "STATIC", "SOCKET_WINDOW", 0, 0, 0, 0, 0, nullptr, nullptr,
                            GetModuleHandleA(nullptr), nullptr);
  if (oWindow == nullptr) return false;
  const auto own = reinterpret_cast<LONG_PTR>(&SocketWindow::OnMessage);
  oPreviousProcedure = reinterpret_cast<WNDPROC>(SetWindowLongPtrA(oWindow, GWLP_WNDPROC, own));
  oSink = &sink;
  return true;
}

void SocketWindow::Destroy() {
  if (oWindow != nullptr) {
    SetWindowLongPtrA(oWindow, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(oPreviousProcedure));
    DestroyWindow(std::exchange(oWindow, nullptr));
  }
  oSink = nullptr;
  oLookUps.clear();
}

int SocketWindow::Select(SocketHandle socket) {
  const int result = WSAAsyncSelect(SystemSocket(socket), oWindow, iSocketMessage, kAllEvents);
  return result == 0 ? 0 : WSAGetLastError();
}

int SocketWindow::Unselect(SocketHandle socket) {
  return WSAAsyncSelect(SystemSocket(socket), oWindow, 0, 0) == 0 ? 0 : WSAGetLastError();
}

SocketResult<LookUpHandle> SocketWindow::StartLookUp(const std::string& host) {
  auto reply = std::make_unique<LookUpReply>();
  const HANDLE started = WSAAsyncGetHostByName(oWindow, iResolveMessage, host.c_str(),
                                               reply->bytes.data(), MAXGETHOSTSTRUCT);
  if (started == nullptr) {
    return {0, WSAGetLastError()};
  }
  const auto lookUp = static_cast<LookUpHandle>(reinterpret_cast<std::intptr_t>(started));
  oLookUps[lookUp] = std::move(reply);
  return {lookUp, 0};
}

/// A reply that can no longer be called back is kept until it has come.
void SocketWindow::CancelLookUp(LookUpHandle lookUp) {
  if (WSACancelAsyncRequest(LookUpToSystem(lookUp)) == 0) oLookUps.erase(lookUp);
}

void SocketWindow::Opened(SocketHandle socket, bool awaitsConnection) {
  oSockets[socket] = {.awaitsConnection = awaitsConnection};
}

void SocketWindow::Connecting(SocketHandle handle) {
  if (Socket* const socket = Find(handle)) socket->connecting = true;
}

bool SocketWindow::AwaitsConnection(SocketHandle handle) {
  const Socket* const socket = Find(handle);
  return socket != nullptr && socket->awaitsConnection;
}

/// Windows itself tells of room only after a send would have blocked.
void SocketWindow::Sent(SocketHandle handle) {
  Socket* const socket = Find(handle);
  if (socket != nullptr && !socket->writePosted) {
    socket->writePosted = true;
    Post(handle, FD_WRITE);
  }
}

void SocketWindow::Received(SocketHandle handle) {
  Socket* const socket = Find(handle);
  if (socket != nullptr && std::exchange(socket->closeWaits, false)) Post(handle, FD_CLOSE);
}

void SocketWindow::PauseAccepting(SocketHandle listener) {
  oUnposted.emplace_back(listener, FD_ACCEPT);
  tmrUnposted.SetEnabled(true);
}

void SocketWindow::PostUnposted() {
  tmrUnposted.SetEnabled(false);
  for (const auto& [handle, event] : std::exchange(oUnposted, {})) Post(handle, event);
}

void SocketWindow::Closed(SocketHandle socket) {
  oSockets.erase(socket);
  std::erase_if(oUnposted, [=](const auto& one) { return one.first == socket; });
  PostUnposted();
}

SocketWindow::Socket* SocketWindow::Find(SocketHandle handle) {
  const auto found = oSockets.find(handle);
  return found == oSockets.end() ? nullptr : &found->second;
}

/// A message that does not fit into a full queue is kept: nobody would tell of its event again.
void SocketWindow::Post(SocketHandle handle, int event) {
  const auto socket = static_cast<WPARAM>(handle);
  if (!PostToQueue(oWindow, iSocketMessage, socket, MAKELPARAM(event, 0))) {
    oUnposted.emplace_back(handle, event);
    tmrUnposted.SetEnabled(true);
  }
}

void SocketWindow::Announce(SocketHandle handle, SocketEvent event, int error) {
  if (oSink != nullptr) oSink->OnSocket(handle, event, error);
}

LRESULT CALLBACK SocketWindow::OnMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  SocketWindow& own = TheSocketWindow();
  if (message != own.iSocketMessage && message != own.iResolveMessage) {
    return CallWindowProcA(own.oPreviousProcedure, window, message, wParam, lParam);
  }
  RunHandlers(window, message, [&] { own.OnNotification(message, wParam, lParam); });
  return 0;
}

void SocketWindow::OnNotification(UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == iSocketMessage) {
    const auto handle = static_cast<SocketHandle>(wParam);
    OnSocketMessage(handle, WSAGETSELECTEVENT(lParam), WSAGETSELECTERROR(lParam));
  } else {
    OnLookUpMessage(static_cast<LookUpHandle>(wParam), WSAGETASYNCERROR(lParam));
  }
}

void SocketWindow::OnSocketMessage(SocketHandle handle, int event, int error) {
  Socket* const socket = Find(handle);
  if (socket == nullptr || socket->closeAnnounced) return;
  if (event == FD_CONNECT) return OnConnect(handle, *socket, error);
  if (event == FD_CLOSE) return OnClose(handle, *socket, error);
  socket->writePosted = socket->writePosted && event != FD_WRITE;
  Announce(handle, static_cast<SocketEvent>(event), error);
}

/// A message of an earlier socket of the same handle finds none connecting.
void SocketWindow::OnConnect(SocketHandle handle, Socket& socket, int error) {
  if (std::exchange(socket.connecting, false)) {
    socket.closeAnnounced = error != 0;
    socket.awaitsConnection = error != 0;
    Announce(handle, SocketEvent::kConnect, error);
  }
}

/// The stream itself tells whether this is its end, and how it ended: the message may be one of an
/// earlier socket of the same handle, and its error is 0 at some resets.
void SocketWindow::OnClose(SocketHandle handle, Socket& socket, int error) {
  if (HasData(handle)) {
    socket.closeWaits = true;
    return Announce(handle, SocketEvent::kRead);
  }
  if (const auto end = EndOfStream(handle)) {
    socket.closeAnnounced = true;
    Announce(handle, SocketEvent::kClose, *end != 0 ? *end : error);
  }
}

void SocketWindow::OnLookUpMessage(LookUpHandle lookUp, int error) {
  const auto found = oLookUps.find(lookUp);
  if (found == oLookUps.end()) return;
  const auto reply = std::move(found->second);
  oLookUps.erase(found);
  if (oSink != nullptr) {
    oSink->OnLookUp(lookUp, error, error == 0 ? FirstAddress(reply->bytes.data()) : 0);
  }
}

}  // namespace ostrel::platform
