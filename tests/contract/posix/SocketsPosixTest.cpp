// The POSIX sockets when descriptors run out, and the descriptors that they cost.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <unistd.h>

#include <chrono>
#include <ctime>
#include <string>
#include <vector>

#include "platform/EventLoop.h"
#include "platform/SocketNotifications.h"
#include "platform/Sockets.h"

namespace ostrel::platform {
namespace {

constexpr std::uint32_t kLoopback = 0x7F000001;

class AcceptCounter final : public SocketSink {
 public:
  void OnSocket(SocketHandle, SocketEvent event, int) noexcept override {
    accepts += event == SocketEvent::kAccept ? 1 : 0;
  }
  void OnLookUp(LookUpHandle, int, std::uint32_t) noexcept override {}
  int accepts = 0;
};

/// Uses up every descriptor that the process may have.
class NoDescriptors {
 public:
  NoDescriptors() {
    getrlimit(RLIMIT_NOFILE, &old);
    const rlimit few = {64, old.rlim_max};
    setrlimit(RLIMIT_NOFILE, &few);
    for (int spare = open("/dev/null", O_RDONLY); spare >= 0; spare = open("/dev/null", O_RDONLY)) {
      spares.push_back(spare);
    }
  }
  ~NoDescriptors() {
    setrlimit(RLIMIT_NOFILE, &old);
    for (const int spare : spares) close(spare);
  }
  NoDescriptors(const NoDescriptors&) = delete;
  NoDescriptors& operator=(const NoDescriptors&) = delete;

 private:
  rlimit old{};
  std::vector<int> spares;
};

class SocketsPosixTest : public testing::Test {
 protected:
  SocketsPosixTest() {
    notifier.StartUp();
    notifier.ConnectSink(sink);
    listener = Open();
    sockets.Bind(listener, {kLoopback, 0});
    sockets.Listen(listener, 5);
  }
  ~SocketsPosixTest() override {
    for (const SocketHandle socket : opened) sockets.Close(socket);
    notifier.DisconnectSink();
  }

  template <typename Condition>
  static bool Await(Condition condition) {
    const auto limit = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    while (!condition() && std::chrono::steady_clock::now() < limit) {
      DoEventsFor(std::chrono::milliseconds(2));
    }
    return condition();
  }

  SocketHandle Open() {
    opened.push_back(sockets.Open(SocketProtocol::kTcp).value);
    notifier.Select(opened.back());
    return opened.back();
  }
  void Connect(SocketHandle client) {
    sockets.Connect(client, sockets.Properties(listener).value.local);
  }
  SocketHandle AcceptFrom(SocketHandle client) {
    Connect(client);
    EXPECT_TRUE(AwaitAccept(1));
    opened.push_back(sockets.Accept(listener).value);
    return opened.back();
  }
  bool AwaitAccept(int count) {
    return Await([&] { return sink.accepts >= count; });
  }

  SocketLayer& sockets = SystemSockets();
  SocketNotifications& notifier = SystemSocketNotifications();
  AcceptCounter sink;
  std::vector<SocketHandle> opened;
  SocketHandle listener = kNoSocket;
};

TEST_F(SocketsPosixTest, RaisesTheLimitOfDescriptors) {
  rlimit limit{};

  getrlimit(RLIMIT_NOFILE, &limit);

  EXPECT_EQ(limit.rlim_cur, limit.rlim_max);
}

TEST_F(SocketsPosixTest, AnnouncesAConnectionAgainWhileThereIsNoDescriptorForItButNotInACircle) {
  Connect(Open());
  ASSERT_TRUE(AwaitAccept(1));
  const NoDescriptors none;

  EXPECT_EQ(sockets.Accept(listener).error, 10024);
  DoEventsFor(std::chrono::milliseconds(50));
  const int soon = sink.accepts;

  EXPECT_EQ(soon, 1);
  EXPECT_TRUE(AwaitAccept(2));
}

TEST_F(SocketsPosixTest, AnnouncesAConnectionAgainOnceASocketWasClosed) {
  const SocketHandle spare = Open();
  Connect(Open());
  ASSERT_TRUE(AwaitAccept(1));
  const NoDescriptors none;
  ASSERT_EQ(sockets.Accept(listener).error, 10024);

  std::erase(opened, spare);
  sockets.Close(spare);
  DoEvents();
  EXPECT_EQ(sink.accepts, 2);
  const auto accepted = sockets.Accept(listener);
  opened.push_back(accepted.value);

  EXPECT_EQ(accepted.error, 0);
}

TEST_F(SocketsPosixTest, IsNotInheritedByAChildProcess) {
  Connect(Open());
  ASSERT_TRUE(AwaitAccept(1));
  opened.push_back(sockets.Accept(listener).value);

  for (const SocketHandle socket : opened) EXPECT_NE(fcntl(socket, F_GETFD) & FD_CLOEXEC, 0);
}

TEST_F(SocketsPosixTest, ProbesAnIdleConnectionAfterAMinute) {
  const auto option = [](SocketHandle socket, int level, int name) {
    int value = 0;
    socklen_t size = sizeof value;
    getsockopt(socket, level, name, &value, &size);
    return value;
  };
  Connect(Open());
  ASSERT_TRUE(AwaitAccept(1));

  const SocketHandle accepted = sockets.Accept(listener).value;
  opened.push_back(accepted);

  EXPECT_EQ(option(accepted, SOL_SOCKET, SO_KEEPALIVE), 1);
  EXPECT_EQ(option(accepted, IPPROTO_TCP, TCP_KEEPIDLE), 60);
  EXPECT_EQ(option(accepted, IPPROTO_TCP, TCP_KEEPINTVL), 10);
  EXPECT_EQ(option(accepted, IPPROTO_TCP, TCP_KEEPCNT), 6);
}

TEST_F(SocketsPosixTest, HoldsPiecesBackWhileTheyAreGathered) {
  const SocketHandle client = Open();
  const SocketHandle server = AcceptFrom(client);
  char buffer[10];

  sockets.GatherPieces(server, true);
  sockets.Send(server, std::string_view("piece"), nullptr);
  const int error = sockets.Receive(client, buffer, nullptr).error;
  sockets.GatherPieces(server, false);

  EXPECT_EQ(error, kWouldBlock);
  int received = 0;
  EXPECT_TRUE(Await([&] {
    received += sockets.Receive(client, buffer, nullptr).value;
    return received == 5;
  }));
}

TEST_F(SocketsPosixTest, CostsNothingWhileEndedConnectionsAreNotReceivedFrom) {
  const SocketHandle accepted = AcceptFrom(Open());
  notifier.Select(accepted);
  sockets.Send(accepted, std::string("unread"), nullptr);
  sockets.Close(accepted);
  DoEventsFor(std::chrono::milliseconds(20));

  const std::clock_t before = std::clock();
  DoEventsFor(std::chrono::milliseconds(200));
  const auto busy = std::clock() - before;

  EXPECT_LT(busy, CLOCKS_PER_SEC / 20);
}

}  // namespace
}  // namespace ostrel::platform
