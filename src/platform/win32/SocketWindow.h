// The hidden window through which Windows tells of sockets and finished look-ups, and the state
// that it keeps of each socket to keep to the rules of platform/SocketNotifications.h. Windows' own
// differ: it may tell of a close twice or before everything was received, tells of room to send
// only after a send would have blocked, and goes on telling of a handle that has been given out
// anew.
#pragma once

#include <winsock2.h>

#include <array>
#include <deque>
#include <map>
#include <memory>
#include <unordered_map>
#include <utility>

#include "platform/EventLoop.h"
#include "platform/SocketNotifications.h"

namespace ostrel::platform {

inline SOCKET SystemSocket(SocketHandle handle) { return static_cast<SOCKET>(handle); }

class SocketWindow {
 public:
  SocketWindow();
  ~SocketWindow();
  SocketWindow(const SocketWindow&) = delete;
  SocketWindow& operator=(const SocketWindow&) = delete;

  void RegisterMessages();
  bool Create(SocketSink& sink);
  void Destroy();

  int Select(SocketHandle socket);
  int Unselect(SocketHandle socket);
  SocketResult<LookUpHandle> StartLookUp(const std::string& host);
  void CancelLookUp(LookUpHandle lookUp);

  /// For the operations to say what became of a socket.
  void Opened(SocketHandle socket, bool awaitsConnection);
  void Connecting(SocketHandle socket);
  /// True from the opening of a stream to its connect notification.
  bool AwaitsConnection(SocketHandle socket);
  void Sent(SocketHandle socket);
  void Received(SocketHandle socket);
  void PauseAccepting(SocketHandle listener);
  void Closed(SocketHandle socket);

  /// Puts a notification into the thread's message queue; tests let it fail.
  decltype(&PostMessageA) PostToQueue = &PostMessageA;

 private:
  struct Socket {
    bool awaitsConnection = false;
    bool connecting = false;
    bool writePosted = false;
    bool closeWaits = false;  // until everything is received
    bool closeAnnounced = false;
  };
  /// The size that the system's manual gives for one host entry.
  struct alignas(8) LookUpReply {
    std::array<char, MAXGETHOSTSTRUCT> bytes;
  };

  static LRESULT CALLBACK OnMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
  void OnNotification(UINT message, WPARAM wParam, LPARAM lParam);
  void OnSocketMessage(SocketHandle handle, int event, int error);
  void OnConnect(SocketHandle handle, Socket& socket, int error);
  void OnClose(SocketHandle handle, Socket& socket, int error);
  void OnLookUpMessage(LookUpHandle lookUp, int error);
  Socket* Find(SocketHandle handle);
  void Post(SocketHandle handle, int event);
  void Announce(SocketHandle handle, SocketEvent event, int error = 0);
  void PostUnposted();

  HWND oWindow = nullptr;
  WNDPROC oPreviousProcedure = nullptr;
  UINT iResolveMessage = 0;
  UINT iSocketMessage = 0;
  SocketSink* oSink = nullptr;
  std::unordered_map<SocketHandle, Socket> oSockets;
  std::map<LookUpHandle, std::unique_ptr<LookUpReply>> oLookUps;
  /// Events for which the queue had no room, and listeners for whose connection there was no
  /// handle.
  std::deque<std::pair<SocketHandle, int>> oUnposted;
  Timer tmrUnposted;
};

SocketWindow& TheSocketWindow();

}  // namespace ostrel::platform
