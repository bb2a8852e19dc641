#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <string>
#include <vector>

#include "platform/EventLoop.h"
#include "platform/SocketNotifications.h"
#include "platform/Sockets.h"
#include "tests/contract/UnderWine.h"

namespace ostrel::platform {
namespace {

using testing::AnyOf;

constexpr std::uint32_t kLoopback = 0x7F000001;

struct Notification {
  SocketHandle socket;
  SocketEvent event;
  int error;
};

/// Keeps what it is told; drains and receives when a test asks for it.
class Sink final : public SocketSink {
 public:
  void OnSocket(SocketHandle socket, SocketEvent event, int error) noexcept override {
    notifications.push_back({socket, event, error});
  }
  void OnLookUp(LookUpHandle lookUp, int error, std::uint32_t ip) noexcept override {
    lookUps.push_back({lookUp, error, ip});
  }

  int Count(SocketHandle socket, SocketEvent event) const {
    return static_cast<int>(std::count_if(
        notifications.begin(), notifications.end(),
        [=](const Notification& n) { return n.socket == socket && n.event == event; }));
  }
  bool Told(SocketHandle socket, SocketEvent event) const { return Count(socket, event) > 0; }
  const Notification* First(SocketHandle socket, SocketEvent event) const {
    const auto found =
        std::find_if(notifications.begin(), notifications.end(),
                     [=](const Notification& n) { return n.socket == socket && n.event == event; });
    return found == notifications.end() ? nullptr : &*found;
  }

  struct LookUp {
    LookUpHandle lookUp;
    int error;
    std::uint32_t ip;
  };
  std::vector<Notification> notifications;
  std::vector<LookUp> lookUps;
};

class SocketsTest : public testing::Test {
 protected:
  SocketsTest() {
    EXPECT_EQ(notifier.StartUp().error, 0);
    connected = notifier.ConnectSink(sink);
  }
  ~SocketsTest() override {
    for (const SocketHandle socket : opened) sockets.Close(socket);
    notifier.DisconnectSink();
    notifier.CleanUp();
  }

  void SetUp() override { ASSERT_TRUE(connected); }

  template <typename Condition>
  static bool Await(Condition condition) {
    const auto limit = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    while (!condition() && std::chrono::steady_clock::now() < limit) {
      DoEventsFor(std::chrono::milliseconds(2));
    }
    return condition();
  }
  bool AwaitCount(SocketHandle socket, SocketEvent event, int count) {
    return Await([&] { return sink.Count(socket, event) >= count; });
  }
  bool AwaitEvent(SocketHandle socket, SocketEvent event) { return AwaitCount(socket, event, 1); }

  SocketHandle Keep(SocketResult<SocketHandle> result) {
    EXPECT_EQ(result.error, 0);
    opened.push_back(result.value);
    return result.value;
  }
  void Close(SocketHandle socket) {
    std::erase(opened, socket);
    EXPECT_EQ(sockets.Close(socket), 0);
  }

  SocketHandle Open() {
    const SocketHandle socket = Keep(sockets.Open(SocketProtocol::kTcp));
    EXPECT_EQ(notifier.Select(socket), 0);
    return socket;
  }
  SocketHandle OpenListener() {
    const SocketHandle listener = Open();
    EXPECT_EQ(sockets.Bind(listener, {kLoopback, 0}), 0);
    EXPECT_EQ(sockets.Listen(listener, 5), 0);
    return listener;
  }
  SocketAddress AddressOf(SocketHandle socket) { return sockets.Properties(socket).value.local; }
  SocketHandle StartConnecting(SocketHandle listener) {
    const SocketHandle client = Open();
    EXPECT_THAT(sockets.Connect(client, AddressOf(listener)), AnyOf(0, kWouldBlock));
    return client;
  }

  struct Pair {
    SocketHandle client, server;
  };
  Pair ConnectedPair() {
    const SocketHandle listener = OpenListener();
    const SocketHandle client = StartConnecting(listener);
    EXPECT_TRUE(AwaitEvent(listener, SocketEvent::kAccept));
    EXPECT_TRUE(AwaitEvent(client, SocketEvent::kConnect));
    const SocketHandle server = Keep(sockets.Accept(listener));
    EXPECT_EQ(notifier.Select(server), 0);
    return {client, server};
  }

  void Send(SocketHandle socket, const std::string& bytes) {
    const auto sent = sockets.Send(socket, bytes, nullptr);
    EXPECT_EQ(sent.error, 0);
    EXPECT_EQ(sent.value, static_cast<std::int32_t>(bytes.size()));
  }
  SocketResult<std::string> Receive(SocketHandle socket, std::size_t most = 65536) {
    std::string bytes(most, '\0');
    const auto received = sockets.Receive(socket, bytes, nullptr);
    bytes.resize(static_cast<std::size_t>(received.value));
    return {bytes, received.error};
  }
  /// Offers bytes until the network takes no more; returns how many it took.
  std::size_t Fill(SocketHandle socket) {
    const std::string block(256 * 1024, 'x');
    std::size_t total = 0;
    for (auto sent = sockets.Send(socket, block, nullptr); sent.error != kWouldBlock;
         sent = sockets.Send(socket, block, nullptr)) {
      EXPECT_EQ(sent.error, 0);
      total += static_cast<std::size_t>(sent.value);
    }
    return total;
  }

  /// Receives until this many bytes have come.
  bool AwaitBytes(SocketHandle socket, std::size_t total) {
    std::size_t count = 0;
    return Await([&] {
      for (auto piece = Receive(socket); piece.error == 0; piece = Receive(socket)) {
        count += piece.value.size();
      }
      return count == total;
    });
  }

  SocketLayer& sockets = SystemSockets();
  SocketNotifications& notifier = SystemSocketNotifications();
  Sink sink;
  bool connected = false;
  std::vector<SocketHandle> opened;
};

TEST_F(SocketsTest, TellsOfAConnectionAtBothEnds) {
  const SocketHandle listener = OpenListener();

  const SocketHandle client = StartConnecting(listener);

  ASSERT_TRUE(AwaitEvent(listener, SocketEvent::kAccept));
  ASSERT_TRUE(AwaitEvent(client, SocketEvent::kConnect));
  EXPECT_EQ(sink.First(client, SocketEvent::kConnect)->error, 0);
}

TEST_F(SocketsTest, TellsOfARefusedConnection) {
  const SocketHandle gone = OpenListener();
  const SocketAddress address = AddressOf(gone);
  Close(gone);
  const SocketHandle client = Open();

  const int result = sockets.Connect(client, address);

  ASSERT_THAT(result, AnyOf(10061, kWouldBlock));
  if (result == kWouldBlock) {
    ASSERT_TRUE(AwaitEvent(client, SocketEvent::kConnect));
    EXPECT_EQ(sink.First(client, SocketEvent::kConnect)->error, 10061);
  }
}

TEST_F(SocketsTest, AnnouncesTheNextConnectionAfterEachAccept) {
  const SocketHandle listener = OpenListener();
  StartConnecting(listener);
  StartConnecting(listener);
  StartConnecting(listener);

  int accepted = 0;
  const bool all = Await([&] {
    if (sink.Count(listener, SocketEvent::kAccept) > accepted) {
      Keep(sockets.Accept(listener));
      ++accepted;
    }
    return accepted == 3;
  });

  EXPECT_TRUE(all);
}

TEST_F(SocketsTest, DoesNotRepeatAnAcceptThatNobodyAnswers) {
  const SocketHandle listener = OpenListener();
  StartConnecting(listener);
  ASSERT_TRUE(AwaitEvent(listener, SocketEvent::kAccept));

  DoEventsFor(std::chrono::milliseconds(50));

  EXPECT_EQ(sink.Count(listener, SocketEvent::kAccept), 1);
}

TEST_F(SocketsTest, AcceptWithoutAConnectionWouldBlock) {
  const SocketHandle listener = OpenListener();

  EXPECT_EQ(sockets.Accept(listener).error, kWouldBlock);
}

TEST_F(SocketsTest, KnowsBothEndsOfAConnection) {
  const auto [client, server] = ConnectedPair();

  const auto ofClient = sockets.Properties(client);
  const auto ofServer = sockets.Properties(server);

  EXPECT_EQ(ofServer.value.protocol, SocketProtocol::kTcp);
  EXPECT_EQ(ofServer.value.peer.ip, kLoopback);
  EXPECT_EQ(ofServer.value.peer.port, ofClient.value.local.port);
  EXPECT_EQ(ofServer.value.local.port, ofClient.value.peer.port);
  EXPECT_GT(ofServer.value.sendBytes, 0);
  EXPECT_GT(ofServer.value.receiveBytes, 0);
}

TEST_F(SocketsTest, CarriesEveryByte) {
  const auto [client, server] = ConnectedPair();
  std::string all;
  for (int byte = 0; byte < 256; ++byte) all.push_back(static_cast<char>(byte));

  Send(client, all);
  ASSERT_TRUE(AwaitEvent(server, SocketEvent::kRead));

  EXPECT_EQ(Receive(server).value, all);
}

TEST_F(SocketsTest, AnnouncesWhatIsLeftAfterAReceive) {
  const auto [client, server] = ConnectedPair();
  Send(client, "abcdef");
  ASSERT_TRUE(AwaitEvent(server, SocketEvent::kRead));
  const int before = sink.Count(server, SocketEvent::kRead);

  const auto first = Receive(server, 3);

  EXPECT_EQ(first.value, "abc");
  EXPECT_TRUE(AwaitCount(server, SocketEvent::kRead, before + 1));
  EXPECT_EQ(Receive(server).value, "def");
}

TEST_F(SocketsTest, DoesNotRepeatAReadThatNobodyAnswers) {
  const auto [client, server] = ConnectedPair();
  Send(client, "abc");
  ASSERT_TRUE(AwaitEvent(server, SocketEvent::kRead));

  DoEventsFor(std::chrono::milliseconds(50));

  EXPECT_EQ(sink.Count(server, SocketEvent::kRead), 1);
}

TEST_F(SocketsTest, ReceiveWithNothingToReceiveWouldBlock) {
  const auto [client, server] = ConnectedPair();

  EXPECT_EQ(Receive(server).error, kWouldBlock);
}

TEST_F(SocketsTest, TellsOfRoomAfterAConnectionWasMade) {
  const auto [client, server] = ConnectedPair();

  EXPECT_TRUE(AwaitEvent(client, SocketEvent::kWrite));
  EXPECT_TRUE(AwaitEvent(server, SocketEvent::kWrite));
}

TEST_F(SocketsTest, DoesNotRepeatRoomThatNobodyUses) {
  const auto [client, server] = ConnectedPair();
  ASSERT_TRUE(AwaitEvent(client, SocketEvent::kWrite));

  DoEventsFor(std::chrono::milliseconds(50));

  EXPECT_EQ(sink.Count(client, SocketEvent::kWrite), 1);
}

TEST_F(SocketsTest, TellsOfRoomAfterEachSend) {
  const auto [client, server] = ConnectedPair();
  ASSERT_TRUE(AwaitEvent(client, SocketEvent::kWrite));

  Send(client, "abc");

  EXPECT_TRUE(AwaitCount(client, SocketEvent::kWrite, 2));
}

TEST_F(SocketsTest, TellsOfRoomOnceAFullConnectionDrains) {
  const auto [client, server] = ConnectedPair();
  ASSERT_TRUE(AwaitEvent(client, SocketEvent::kWrite));
  const std::size_t total = Fill(client);
  DoEventsFor(std::chrono::milliseconds(20));
  const int before = sink.Count(client, SocketEvent::kWrite);

  EXPECT_TRUE(AwaitBytes(server, total));
  EXPECT_TRUE(AwaitCount(client, SocketEvent::kWrite, before + 1));
}

TEST_F(SocketsTest, TellsOfAnOrderlyCloseOnce) {
  const auto [client, server] = ConnectedPair();

  Close(client);
  ASSERT_TRUE(AwaitEvent(server, SocketEvent::kClose));
  Receive(server);
  DoEventsFor(std::chrono::milliseconds(50));

  EXPECT_EQ(sink.Count(server, SocketEvent::kClose), 1);
  EXPECT_EQ(sink.First(server, SocketEvent::kClose)->error, 0);
}

TEST_F(SocketsTest, TellsOfACloseOnlyWhenEverythingWasReceived) {
  const auto [client, server] = ConnectedPair();
  Send(client, "last words");
  Close(client);
  ASSERT_TRUE(AwaitEvent(server, SocketEvent::kRead));
  DoEventsFor(std::chrono::milliseconds(50));
  EXPECT_FALSE(sink.Told(server, SocketEvent::kClose));

  EXPECT_EQ(Receive(server, 4).value, "last");
  EXPECT_TRUE(AwaitCount(server, SocketEvent::kRead, 2));
  EXPECT_FALSE(sink.Told(server, SocketEvent::kClose));
  EXPECT_EQ(Receive(server).value, " words");

  EXPECT_TRUE(AwaitEvent(server, SocketEvent::kClose));
}

TEST_F(SocketsTest, SendsGatheredPiecesOnceTheyAreNoLongerGathered) {
  const auto [client, server] = ConnectedPair();
  sockets.GatherPieces(server, true);
  Send(server, "one ");
  Send(server, "after ");
  Send(server, "another");

  sockets.GatherPieces(server, false);

  std::string received;
  for (int reads = 1; received.size() < 17; ++reads) {
    ASSERT_TRUE(AwaitCount(client, SocketEvent::kRead, reads));
    received += Receive(client).value;
  }
  EXPECT_EQ(received, "one after another");
}

TEST_F(SocketsTest, SendsAtOnceWhileNothingIsGatheredForItsOwnHandle) {
  const auto [client, server] = ConnectedPair();
  sockets.GatherPieces(kNoSocket, true);
  sockets.GatherPieces(client, true);

  Send(server, "piece");

  ASSERT_TRUE(AwaitEvent(client, SocketEvent::kRead));
  EXPECT_EQ(Receive(client).value, "piece");
}

TEST_F(SocketsTest, TellsOfTheEndOfThePeersSendingWhileThisSideStillSends) {
  const auto [client, server] = ConnectedPair();

  EXPECT_EQ(sockets.ShutdownSend(client), 0);
  ASSERT_TRUE(AwaitEvent(server, SocketEvent::kClose));
  Send(server, "still here");

  ASSERT_TRUE(AwaitEvent(client, SocketEvent::kRead));
  EXPECT_EQ(Receive(client).value, "still here");
}

TEST_F(SocketsTest, TellsOfTheCloseAfterThisSideHasEndedSending) {
  const auto [client, server] = ConnectedPair();
  EXPECT_EQ(sockets.ShutdownSend(server), 0);
  ASSERT_TRUE(AwaitEvent(client, SocketEvent::kClose));

  Close(client);

  ASSERT_TRUE(AwaitEvent(server, SocketEvent::kClose));
  EXPECT_EQ(sink.First(server, SocketEvent::kClose)->error, 0);
}

TEST_F(SocketsTest, TellsOfAReset) {
  const auto [client, server] = ConnectedPair();
  Send(server, "never received");
  ASSERT_TRUE(AwaitEvent(client, SocketEvent::kRead));

  Close(client);

  ASSERT_TRUE(AwaitEvent(server, SocketEvent::kClose));
  EXPECT_THAT(sink.First(server, SocketEvent::kClose)->error,
              AnyOf(10054, UnderWine() ? 0 : 10054));
}

TEST_F(SocketsTest, SendAfterItsEndIsAnErrorAndNoSignal) {
  const auto [client, server] = ConnectedPair();
  EXPECT_EQ(sockets.ShutdownSend(client), 0);

  EXPECT_EQ(sockets.Send(client, std::string("x"), nullptr).error, 10058);
}

TEST_F(SocketsTest, IsSilentAboutASocketThatIsNoLongerSelected) {
  const auto [client, server] = ConnectedPair();
  ASSERT_TRUE(AwaitEvent(server, SocketEvent::kWrite));
  EXPECT_EQ(notifier.Unselect(server), 0);

  Send(client, "abc");
  DoEventsFor(std::chrono::milliseconds(50));

  EXPECT_FALSE(sink.Told(server, SocketEvent::kRead));
}

TEST_F(SocketsTest, FindsAPortInUseWhenAnotherSocketListensOnIt) {
  const SocketHandle listener = OpenListener();
  const SocketHandle second = Open();

  EXPECT_EQ(sockets.Bind(second, AddressOf(listener)), 10048);
}

TEST_F(SocketsTest, FindsAPortInUseOnAllInterfacesToo) {
  const SocketHandle listener = Open();
  ASSERT_EQ(sockets.Bind(listener, {0, 0}), 0);
  ASSERT_EQ(sockets.Listen(listener, 5), 0);
  const SocketHandle second = Open();

  EXPECT_EQ(sockets.Bind(second, {0, AddressOf(listener).port}), 10048);
}

TEST_F(SocketsTest, FindsThePortOfAListenerThatHasGoneFree) {
  const SocketHandle listener = OpenListener();
  const SocketAddress address = AddressOf(listener);
  Close(listener);
  const SocketHandle second = Open();

  EXPECT_EQ(sockets.Bind(second, address), 0);
  EXPECT_EQ(sockets.Listen(second, 5), 0);
}

TEST_F(SocketsTest, FindsThePortFreeWhileConnectionsOfTheLastListenerAreOpen) {
  const SocketHandle listener = Open();
  ASSERT_EQ(sockets.Bind(listener, {0, 0}), 0);
  ASSERT_EQ(sockets.Listen(listener, 5), 0);
  const SocketAddress address = AddressOf(listener);
  const SocketHandle client = Open();
  ASSERT_THAT(sockets.Connect(client, {kLoopback, address.port}), AnyOf(0, kWouldBlock));
  ASSERT_TRUE(AwaitEvent(listener, SocketEvent::kAccept));
  const SocketHandle server = Keep(sockets.Accept(listener));
  Close(listener);

  const SocketHandle second = Open();

  EXPECT_EQ(sockets.Bind(second, address), 0);
  EXPECT_EQ(sockets.Listen(second, 5), 0);
  EXPECT_EQ(sockets.Properties(server).value.peer.ip, kLoopback);
}

TEST_F(SocketsTest, FindsThePortFreeWhileConnectionsOfTheLastListenerLinger) {
  const SocketHandle listener = OpenListener();
  const SocketAddress address = AddressOf(listener);
  StartConnecting(listener);
  ASSERT_TRUE(AwaitEvent(listener, SocketEvent::kAccept));
  Close(Keep(sockets.Accept(listener)));  // this side ends it, the client does not
  Close(listener);

  const SocketHandle second = Open();

  EXPECT_EQ(sockets.Bind(second, address), 0);
  EXPECT_EQ(sockets.Listen(second, 5), 0);
}

TEST_F(SocketsTest, DoesNotSendBeforeTheConnectionIsThere) {
  const SocketHandle listener = OpenListener();
  const SocketHandle unconnected = Open();
  const SocketHandle client = StartConnecting(listener);

  EXPECT_EQ(sockets.Send(unconnected, std::string("x"), nullptr).error, 10057);
  EXPECT_EQ(sockets.Send(client, std::string("x"), nullptr).error, 10057);

  ASSERT_TRUE(AwaitEvent(client, SocketEvent::kConnect));
  Send(client, "x");
}

TEST_F(SocketsTest, RefusesAnAddressThatIsNotTheMachines) {
  const SocketHandle socket = Open();

  EXPECT_EQ(sockets.Bind(socket, {0xC0000201 /* 192.0.2.1, documentation only */, 0}), 10049);
}

TEST_F(SocketsTest, KnowsNoOperationOnAHandleThatIsNotOpen) {
  const SocketHandle closed = Open();
  Close(closed);

  EXPECT_EQ(sockets.Bind(closed, {}), 10038);
  EXPECT_EQ(sockets.Listen(closed, 5), 10038);
  EXPECT_EQ(sockets.Accept(closed).error, 10038);
  EXPECT_EQ(sockets.Send(closed, std::string("x"), nullptr).error, 10038);
  EXPECT_EQ(Receive(closed).error, 10038);
  EXPECT_EQ(sockets.Close(closed), 10038);
}

TEST_F(SocketsTest, CarriesDatagrams) {
  const SocketHandle receiver = Keep(sockets.Open(SocketProtocol::kUdp));
  const SocketHandle sender = Keep(sockets.Open(SocketProtocol::kUdp));
  ASSERT_EQ(notifier.Select(receiver), 0);
  ASSERT_EQ(sockets.Bind(receiver, {kLoopback, 0}), 0);
  const SocketAddress to = AddressOf(receiver);

  EXPECT_EQ(sockets.Send(sender, std::string("datagram"), &to).value, 8);
  ASSERT_TRUE(AwaitEvent(receiver, SocketEvent::kRead));
  std::string bytes(100, '\0');
  SocketAddress from;
  const auto received = sockets.Receive(receiver, bytes, &from);

  EXPECT_EQ(bytes.substr(0, static_cast<std::size_t>(received.value)), "datagram");
  EXPECT_EQ(from.ip, kLoopback);
}

TEST_F(SocketsTest, ServesConnectionAfterConnection) {
  const SocketHandle listener = OpenListener();

  for (int i = 0; i < 200; ++i) {
    const SocketHandle client = StartConnecting(listener);
    ASSERT_TRUE(AwaitCount(listener, SocketEvent::kAccept, i + 1));
    const auto accepted = sockets.Accept(listener);
    Close(client);
    Close(Keep(accepted));
  }
}

TEST_F(SocketsTest, LooksUpANameWithoutHoldingUpTheLoop) {
  const auto lookUp = notifier.StartLookUp("localhost");
  ASSERT_EQ(lookUp.error, 0);

  ASSERT_TRUE(Await([&] { return !sink.lookUps.empty(); }));

  EXPECT_EQ(sink.lookUps[0].lookUp, lookUp.value);
  EXPECT_EQ(sink.lookUps[0].error, 0);
  EXPECT_EQ(sink.lookUps[0].ip, kLoopback);
}

TEST_F(SocketsTest, TellsOfANameThatIsNotKnown) {
  const auto lookUp = notifier.StartLookUp("no such host.invalid");
  ASSERT_EQ(lookUp.error, 0);

  ASSERT_TRUE(Await([&] { return !sink.lookUps.empty(); }));

  EXPECT_NE(sink.lookUps[0].error, 0);
}

TEST_F(SocketsTest, TellsNothingOfACancelledLookUp) {
  const auto lookUp = notifier.StartLookUp("localhost");
  notifier.CancelLookUp(lookUp.value);

  const auto next = notifier.StartLookUp("127.0.0.1");
  ASSERT_TRUE(Await([&] { return !sink.lookUps.empty(); }));

  EXPECT_EQ(sink.lookUps[0].lookUp, next.value);
}

TEST_F(SocketsTest, KnowsTheMachinesNameAndAddress) {
  HostNames& names = SystemHostNames();

  EXPECT_FALSE(names.OwnName().empty());
  EXPECT_NE(names.OwnAddress(), 0u);
  EXPECT_EQ(names.AddressOf("localhost"), kLoopback);
}

}  // namespace
}  // namespace ostrel::platform
