// The sockets when the thread's message queue is full, and the options that they are given.
#include <winsock2.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <string>
#include <utility>
#include <vector>

#include "platform/EventLoop.h"
#include "platform/SocketNotifications.h"
#include "platform/Sockets.h"
#include "platform/win32/SocketWindow.h"

namespace ostrel::platform {
namespace {

constexpr std::uint32_t kLoopback = 0x7F000001;

class Sink final : public SocketSink {
 public:
  void OnSocket(SocketHandle socket, SocketEvent event, int) noexcept override {
    told.emplace_back(socket, event);
  }
  void OnLookUp(LookUpHandle, int, std::uint32_t) noexcept override {}

  std::vector<std::pair<SocketHandle, SocketEvent>> told;
};

/// The queue takes this many messages fewer.
class FullQueue {
 public:
  explicit FullQueue(int count) {
    refusals = count;
    TheSocketWindow().PostToQueue =
        [](HWND window, UINT message, WPARAM wParam, LPARAM lParam) __attribute__((stdcall))->BOOL {
      return refusals > 0 && refusals-- > 0 ? FALSE : PostMessageA(window, message, wParam, lParam);
    };
  }
  ~FullQueue() { TheSocketWindow().PostToQueue = &PostMessageA; }
  FullQueue(const FullQueue&) = delete;
  FullQueue& operator=(const FullQueue&) = delete;

  static inline int refusals = 0;
};

class SocketsWin32Test : public testing::Test {
 protected:
  SocketsWin32Test() {
    notifier.StartUp();
    notifier.ConnectSink(sink);
    listener = Open();
    sockets.Bind(listener, {kLoopback, 0});
    sockets.Listen(listener, 5);
    client = Open();
    sockets.Connect(client, sockets.Properties(listener).value.local);
    EXPECT_TRUE(Await(listener, SocketEvent::kAccept));
    EXPECT_TRUE(Await(client, SocketEvent::kConnect));
    server = sockets.Accept(listener).value;
    opened.push_back(server);
    notifier.Select(server);
    EXPECT_TRUE(Await(server, SocketEvent::kWrite));
    DoEvents();
    sink.told.clear();
  }
  ~SocketsWin32Test() override {
    for (const SocketHandle socket : opened) sockets.Close(socket);
    notifier.DisconnectSink();
    notifier.CleanUp();
  }

  SocketHandle Open() {
    opened.push_back(sockets.Open(SocketProtocol::kTcp).value);
    notifier.Select(opened.back());
    return opened.back();
  }
  bool Told(SocketHandle socket, SocketEvent event) const {
    return std::find(sink.told.begin(), sink.told.end(), std::pair(socket, event)) !=
           sink.told.end();
  }
  bool Await(SocketHandle socket, SocketEvent event) const {
    const auto limit = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    while (!Told(socket, event) && std::chrono::steady_clock::now() < limit) {
      DoEventsFor(std::chrono::milliseconds(2));
    }
    return Told(socket, event);
  }

  SocketLayer& sockets = SystemSockets();
  SocketNotifications& notifier = SystemSocketNotifications();
  Sink sink;
  std::vector<SocketHandle> opened;
  SocketHandle listener = kNoSocket, client = kNoSocket, server = kNoSocket;
};

TEST_F(SocketsWin32Test, TellsOfRoomAfterAllWhenTheMessageQueueWasFull) {
  const FullQueue full(3);

  sockets.Send(server, std::string("abc"), nullptr);

  EXPECT_TRUE(Await(server, SocketEvent::kWrite));
  EXPECT_EQ(FullQueue::refusals, 0);
}

TEST_F(SocketsWin32Test, TellsNothingOfASocketThatWasClosedMeanwhile) {
  const FullQueue full(1);
  sockets.Send(server, std::string("abc"), nullptr);
  std::erase(opened, server);

  sockets.Close(server);
  DoEventsFor(std::chrono::milliseconds(150));

  EXPECT_FALSE(Told(server, SocketEvent::kWrite));
}

TEST_F(SocketsWin32Test, AsksForNoSpecialUseOfItsPort) {
  for (const int option : {SO_EXCLUSIVEADDRUSE, SO_REUSEADDR}) {
    BOOL on = TRUE;
    int size = sizeof on;
    getsockopt(static_cast<SOCKET>(listener), SOL_SOCKET, option, reinterpret_cast<char*>(&on),
               &size);
    EXPECT_FALSE(on) << option;
  }
}

TEST_F(SocketsWin32Test, ProbesAnIdleConnection) {
  BOOL on = FALSE;
  int size = sizeof on;

  getsockopt(static_cast<SOCKET>(server), SOL_SOCKET, SO_KEEPALIVE, reinterpret_cast<char*>(&on),
             &size);

  EXPECT_TRUE(on);
}

}  // namespace
}  // namespace ostrel::platform
