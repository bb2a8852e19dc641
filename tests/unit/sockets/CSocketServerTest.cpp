#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <new>
#include <stdexcept>
#include <utility>

#include "sockets/CSocketListen.h"
#include "sockets/CSocketServer.h"
#include "sockets/MSocketSupport.h"
#include "tests/support/TextBudgetLimit.h"
#include "tests/unit/doubles/FakeSockets.h"
#include "util/RunTimeError.h"

namespace ostrel {
namespace {

using doubles::FakeSockets;
using doubles::SocketEvent;
using testing::ElementsAre;

class CSocketServerTest : public testing::Test {
 protected:
  CSocketServerTest() {
    Err.Clear();
    auto& events = server->Events;
    events.DataArrival = [this](std::int16_t index, const Text& data, std::int32_t bytesTotal,
                                TextView remoteIP, TextView) {
      Log("data " + std::to_string(index) + " " + ToUtf8(data) + " " + std::to_string(bytesTotal) +
          " " + ToUtf8(remoteIP));
    };
    events.Error = [this](std::int16_t index, std::uint16_t number, Text& description,
                          std::int32_t scode, TextView source) {
      Log("error " + std::to_string(index) + " " + std::to_string(number) + " " +
          ToUtf8(description) + " " + std::to_string(scode) + " " + ToUtf8(source));
    };
    events.SocketOpened = [this](std::int16_t index, std::int32_t port, TextView ip, TextView) {
      Log("opened " + std::to_string(index) + " " + std::to_string(port) + " " + ToUtf8(ip));
    };
    events.SocketClosed = [this](std::int16_t index, std::int32_t port, TextView ip, TextView) {
      Log("closed " + std::to_string(index) + " " + std::to_string(port) + " " + ToUtf8(ip));
    };
    events.ServerStarted = [this] { Log("started"); };
    events.ServerStopped = [this] { Log("stopped"); };
    events.StartFailed = [this] { Log("failed"); };
  }
  ~CSocketServerTest() override {
    if (server) {
      server->Events = {};
    }
  }

  void Log(const std::string& line) { log.push_back(line); }

  bool Start() {
    Text ip = u"127.0.0.1";
    const bool started = server->StartServer(4999, ip);
    listener = network.lastOpened;
    log.clear();
    return started;
  }
  platform::SocketHandle Arrives() { return network.Arrives(listener); }

  FakeSockets network;
  MSocketSupport support{network, network, network};
  std::vector<std::string> log;
  std::unique_ptr<CSocketServer> server = std::make_unique<CSocketServer>(support);
  platform::SocketHandle listener = platform::kNoSocket;
};

TEST_F(CSocketServerTest, IsStoppedAndWithoutAStateWhenItIsMade) {
  EXPECT_FALSE(server->ServerStarted());
  EXPECT_EQ(server->State(), u"");
  EXPECT_EQ(server->ConnectionCount(), 0);
}

TEST_F(CSocketServerTest, SaysThatItStoppedWheneverItStarts) {  // Kept: handlers expect it
  Text ip = u"127.0.0.1";

  EXPECT_TRUE(server->StartServer(4999, ip));

  EXPECT_THAT(log, ElementsAre("stopped", "started"));
  EXPECT_TRUE(server->ServerStarted());
  EXPECT_EQ(server->ServerPort(), 4999);
  EXPECT_EQ(server->ServerIP(), u"127.0.0.1");
  EXPECT_EQ(server->State(), u"");
}

TEST_F(CSocketServerTest, ListensOnAllInterfacesAndTellsTheMachinesAddress) {
  Text ip;

  EXPECT_TRUE(server->StartServer(4999, ip));

  EXPECT_EQ(network.bound.ip, 0u);
  EXPECT_EQ(network.bound.port, 4999);
  EXPECT_EQ(ip, u"192.168.0.5");
}

TEST_F(CSocketServerTest, ListensOnAllInterfacesAgainAfterOneAlone) {
  ASSERT_TRUE(Start());
  Text ip;

  server->StartServer(4999, ip);

  EXPECT_EQ(network.bound.ip, 0u);
  EXPECT_EQ(ip, u"192.168.0.5");
}

TEST_F(CSocketServerTest, FailsToStartOnAPortInUse) {
  network.errors.bind = 10048;
  Text ip;

  EXPECT_FALSE(server->StartServer(4999, ip));

  EXPECT_THAT(log, ElementsAre("stopped", "failed"));
  EXPECT_FALSE(server->ServerStarted());
}

TEST_F(CSocketServerTest, FailsToStartWhenItCannotListen) {
  network.errors.listen = 10048;
  Text ip;

  EXPECT_FALSE(server->StartServer(4999, ip));

  EXPECT_THAT(log, ElementsAre("stopped", "failed"));
}

TEST_F(CSocketServerTest, FailsToStartOnAPortThatIsNone) {
  Text ip;

  EXPECT_FALSE(server->StartServer(65536 + 4999, ip));

  EXPECT_THAT(log, ElementsAre("stopped", "failed"));
}

TEST_F(CSocketServerTest, StartsAfterAFailedStart) {
  network.errors.bind = 10048;
  EXPECT_FALSE(Start());
  network.errors.bind = 0;

  EXPECT_TRUE(Start());
}

TEST_F(CSocketServerTest, SaysTwiceThatItStopped) {  // Kept: handlers expect it
  ASSERT_TRUE(Start());
  Arrives();
  log.clear();

  EXPECT_FALSE(server->StopServer());

  EXPECT_THAT(log, ElementsAre("stopped", "stopped"));
  EXPECT_EQ(server->State(), u"Closed");
  EXPECT_FALSE(server->ServerStarted());
  EXPECT_EQ(server->ConnectionCount(), 0);
  EXPECT_TRUE(network.open.empty());
}

TEST_F(CSocketServerTest, StartsAgainAfterItStopped) {
  ASSERT_TRUE(Start());
  server->StopServer();

  EXPECT_TRUE(Start());
  Arrives();

  EXPECT_THAT(log, ElementsAre("opened 1 4999 10.0.0.1"));
}

TEST_F(CSocketServerTest, HasNoPortAndNoAddressAfterItStopped) {
  server->StopServer();

  EXPECT_THROW(server->ServerPort(), RunTimeError);
  EXPECT_THROW(server->ServerIP(), RunTimeError);
}

TEST_F(CSocketServerTest, StopsWhenItGoes) {
  ASSERT_TRUE(Start());
  Arrives();
  log.clear();

  server.reset();

  EXPECT_THAT(log, ElementsAre("stopped", "stopped"));
  EXPECT_TRUE(network.open.empty());
}

TEST_F(CSocketServerTest, NumbersConnectionsFromOne) {
  ASSERT_TRUE(Start());

  Arrives();
  Arrives();

  EXPECT_THAT(log, ElementsAre("opened 1 4999 10.0.0.1", "opened 2 4999 10.0.0.1"));
  EXPECT_EQ(server->ConnectionCount(), 2);
  EXPECT_EQ(server->GetState(0), 0);
  EXPECT_EQ(server->GetState(1), 7);
}

TEST_F(CSocketServerTest, NumbersFromOneAgainAfterAllWereClosed) {
  ASSERT_TRUE(Start());
  Arrives();
  Arrives();
  log.clear();

  server->CloseAllSockets();
  Arrives();

  EXPECT_THAT(log, ElementsAre("opened 1 4999 10.0.0.1"));
  EXPECT_EQ(server->ConnectionCount(), 1);
}

TEST_F(CSocketServerTest, TakesTheLowestClosedSlotFirst) {
  ASSERT_TRUE(Start());
  Arrives();
  const auto second = Arrives();
  Arrives();
  network.CloseByPeer(second);
  log.clear();

  Arrives();

  EXPECT_THAT(log, ElementsAre("opened 2 4999 10.0.0.1"));
  EXPECT_EQ(server->ConnectionCount(), 3);
}

TEST_F(CSocketServerTest, TakesASlotInErrorLikeAClosedOne) {
  ASSERT_TRUE(Start());
  const auto first = Arrives();
  network.Tell(first, SocketEvent::kClose, 10054);
  EXPECT_EQ(server->GetState(1), 9);
  log.clear();

  Arrives();

  EXPECT_THAT(log, ElementsAre("opened 1 4999 10.0.0.1"));
}

TEST_F(CSocketServerTest, DoesNotTakeASlotThatWaitsForItsPeersClose) {
  ASSERT_TRUE(Start());
  const auto first = Arrives();
  server->CloseSocket(1);
  EXPECT_EQ(server->GetState(1), 8);
  log.clear();

  Arrives();
  network.CloseByPeer(first);
  Arrives();

  EXPECT_THAT(log, ElementsAre("opened 2 4999 10.0.0.1", "opened 1 4999 10.0.0.1"));
}

TEST_F(CSocketServerTest, CountsOpenConnectionsAndSlots) {
  ASSERT_TRUE(Start());
  const auto closed = Arrives();
  const auto failed = Arrives();
  Arrives();
  Arrives();

  network.CloseByPeer(closed);
  network.Tell(failed, SocketEvent::kClose, 10054);
  server->CloseSocket(3);

  EXPECT_EQ(server->OpenConnectionCount(), 2);
  EXPECT_EQ(server->ConnectionCount(), 4);
}

TEST_F(CSocketServerTest, HandsOutEverythingReceived) {
  ASSERT_TRUE(Start());
  const auto first = Arrives();
  log.clear();

  network.Receives(first, "abc");
  network.Receives(first, "de");

  EXPECT_THAT(log, ElementsAre("data 1 abc 3 10.0.0.1", "data 1 de 2 10.0.0.1"));
  EXPECT_EQ(server->GetBytesReceived(1), 0);
}

TEST_F(CSocketServerTest, HandsOutTheLastDataBeforeTheClose) {
  ASSERT_TRUE(Start());
  const auto first = Arrives();
  log.clear();
  network.incoming[first] = {{"abc"}};

  network.CloseByPeer(first);

  EXPECT_THAT(log, ElementsAre("data 1 abc 3 10.0.0.1", "closed 1 4999 10.0.0.1"));
  EXPECT_EQ(server->GetRemoteIP(1), u"10.0.0.1");
}

TEST_F(CSocketServerTest, SaysNothingOfAConnectionThatItClosedItself) {
  ASSERT_TRUE(Start());
  const auto first = Arrives();
  log.clear();

  server->CloseSocket(1);
  network.CloseByPeer(first);

  EXPECT_TRUE(log.empty());
  EXPECT_EQ(server->GetState(1), 0);
}

TEST_F(CSocketServerTest, ReportsTheErrorOfAConnection) {
  ASSERT_TRUE(Start());
  const auto first = Arrives();
  Arrives();
  log.clear();

  network.Tell(first, SocketEvent::kRead, 10053);

  EXPECT_THAT(log, ElementsAre("error 1 10053 Software caused connection abort. 0 1"));
  EXPECT_EQ(server->OpenConnectionCount(), 1);
}

TEST_F(CSocketServerTest, ClosesEveryConnectionWhenTheListenerFails) {
  ASSERT_TRUE(Start());
  Arrives();
  log.clear();

  network.Tell(listener, SocketEvent::kAccept, 10050);

  EXPECT_THAT(log, ElementsAre("error 0 10050 Network is down. 0 8"));
  EXPECT_EQ(server->ConnectionCount(), 0);
}

TEST_F(CSocketServerTest, ClosesEveryConnectionWhenTheListenerIsClosed) {
  ASSERT_TRUE(Start());
  Arrives();
  log.clear();

  network.CloseByPeer(listener);

  EXPECT_TRUE(log.empty());
  EXPECT_EQ(server->ConnectionCount(), 0);
}

TEST_F(CSocketServerTest, SendsToOneConnectionOrAll) {
  ASSERT_TRUE(Start());
  const auto first = Arrives();
  const auto second = Arrives();

  server->SendData(u"abc", 1);
  server->SendString(u"def", 2);
  server->BroadcastData(std::int16_t{0x4142});

  EXPECT_EQ(network.sent[first], "abcBA");
  EXPECT_EQ(network.sent[second], "defBA");
}

TEST_F(CSocketServerTest, DoesNothingForAnIndexWithoutASocket) {
  ASSERT_TRUE(Start());
  for (int i = 0; i < 3; ++i) Arrives();

  for (const int number : {-1, 0, 4, 7, 32767}) {
    const auto index = static_cast<std::int16_t>(number);
    server->SendData(u"x", index);
    server->SendString(u"x", index);
    server->CloseSocket(index);
    EXPECT_EQ(server->GetState(index), 0);
    EXPECT_EQ(server->GetRemoteHost(index), u"");
    EXPECT_EQ(server->GetRemoteIP(index), u"");
    EXPECT_EQ(server->GetBytesReceived(index), 0);
  }
  server->SendData(u"x", 65537);

  EXPECT_EQ(network.sends, 0);
  EXPECT_EQ(Err.Number, 0);
}

TEST_F(CSocketServerTest, LeavesWhatASocketRaisedInThePendingError) {
  ASSERT_TRUE(Start());
  network.CloseByPeer(Arrives());

  server->SendData(u"x", 1);

  EXPECT_EQ(Err.Number, 40006);
  EXPECT_EQ(Err.Source, u"CSocket.SendData");
}

TEST_F(CSocketServerTest, LeavesWantOfMemoryInThePendingError) {
  ASSERT_TRUE(Start());
  Arrives();
  const TextBudgetLimit limit(ProcessTextBudget().Held());

  server->SendData(u"x", 1);

  EXPECT_EQ(Err.Number, 7);
  EXPECT_EQ(Err.Source, u"CSocketServer");
  EXPECT_EQ(Err.Description, u"Out of memory");
}

TEST_F(CSocketServerTest, LeavesTheErrorOfOneConnectionAfterItHasSentToAll) {
  ASSERT_TRUE(Start());
  const auto first = Arrives();
  Arrives();
  network.CloseByPeer(first);

  server->BroadcastData(u"x");

  EXPECT_EQ(Err.Number, 40006);
}

TEST_F(CSocketServerTest, ClearsThePendingErrorBeforeItSendsToAll) {
  ASSERT_TRUE(Start());
  Arrives();
  Err.Set(10054, u"before", u"before");

  server->BroadcastData(u"x");

  EXPECT_EQ(Err.Number, 0);
}

TEST_F(CSocketServerTest, LeavesTheErrorOfACloseInThePendingError) {
  ASSERT_TRUE(Start());
  Arrives();
  network.errors.shutdown = 10057;

  server->CloseSocket(1);
  EXPECT_EQ(Err.Number, 10057);
  EXPECT_EQ(Err.Source, u"CSocket.CloseSocket");

  server->CloseSocket(7);
  EXPECT_EQ(Err.Number, 0);
}

TEST_F(CSocketServerTest, ClearsThePendingErrorBeforeItClosesAll) {
  ASSERT_TRUE(Start());
  Err.Set(10054, u"before", u"before");
  server->CloseAllSockets();
  EXPECT_EQ(Err.Number, 0);

  Arrives();
  network.errors.shutdown = 10057;
  server->CloseAllSockets();
  EXPECT_EQ(Err.Number, 10057);
}

TEST_F(CSocketServerTest, TellsWhatIsQueuedAndWhatWasTaken) {
  ASSERT_TRUE(Start());
  Arrives();
  network.room = {3};

  server->SendData(u"abcdefgh", 1);

  EXPECT_EQ(server->GetBytesToSend(1), 5u);
  EXPECT_EQ(server->GetBytesSent(1), 3u);
  EXPECT_EQ(server->GetBytesToSend(2), 0u);
  EXPECT_EQ(server->GetBytesSent(2), 0u);
}

TEST_F(CSocketServerTest, SendsWhatIsQueuedBeforeAConnectionIsClosed) {
  ASSERT_TRUE(Start());
  const auto first = Arrives();
  network.room = {0};
  server->SendData(u"abc", 1);

  server->CloseSocket(1);
  network.Tell(first, SocketEvent::kWrite);

  EXPECT_EQ(network.sent[first], "abc");
  EXPECT_TRUE(network.shutDown.contains(first));
}

TEST_F(CSocketServerTest, EndsTheListenerAlone) {
  ASSERT_TRUE(Start());
  const auto first = Arrives();
  log.clear();

  server->StopListening();
  network.Receives(first, "abc");

  EXPECT_THAT(log, ElementsAre("stopped", "data 1 abc 3 10.0.0.1"));
  EXPECT_FALSE(network.open.contains(listener));
  EXPECT_TRUE(network.open.contains(first));
}

TEST_F(CSocketServerTest, HasItsPortUntilItHasToldThatItStopped) {
  ASSERT_TRUE(Start());
  server->Events.ServerStopped = [this] {
    try {
      Log("port " + std::to_string(server->ServerPort()) + " " + ToUtf8(server->ServerIP()));
    } catch (const RunTimeError& error) {
      Log("error " + std::to_string(error.Number));
    }
  };

  server->StopServer();

  EXPECT_THAT(log, ElementsAre("port 4999 127.0.0.1", "error 91"));
}

TEST_F(CSocketServerTest, StopsWhateverItsHandlerRaises) {
  ASSERT_TRUE(Start());
  Arrives();
  server->Events.ServerStopped = [] { throw RunTimeError(9, u"Handler", u"Oops"); };

  EXPECT_FALSE(server->StopServer());

  EXPECT_EQ(Err.Number, 9);
  EXPECT_EQ(server->State(), u"Closed");
  EXPECT_TRUE(network.open.empty());
}

TEST_F(CSocketServerTest, StartsWhateverTheHandlerOfItsStopRaises) {
  server->Events.ServerStopped = [] { throw std::bad_alloc(); };
  Text ip = u"127.0.0.1";

  EXPECT_TRUE(server->StartServer(4999, ip));

  EXPECT_EQ(Err.Number, 7);
}

TEST_F(CSocketServerTest, RaisesNothingOfTheHandlerOfItsFailure) {
  ASSERT_TRUE(Start());
  network.errors.bind = 10048;
  server->Events.StartFailed = [] { throw RunTimeError(9, u"Handler", u"Oops"); };
  Text ip;

  EXPECT_FALSE(server->StartServer(4999, ip));

  EXPECT_EQ(Err.Number, 9);
  EXPECT_FALSE(server->ServerStarted());
}

TEST_F(CSocketServerTest, GoesWhateverItsHandlersRaise) {
  ASSERT_TRUE(Start());
  Arrives();
  server->Events.ServerStopped = [] { throw 1; };

  server.reset();

  EXPECT_TRUE(network.open.empty());
}

TEST_F(CSocketServerTest, ClosesEveryConnectionEvenIfTheHandlerOfTheListenersErrorFails) {
  ASSERT_TRUE(Start());
  Arrives();
  server->Events.Error = [](std::int16_t, std::uint16_t, Text&, std::int32_t, TextView) {
    throw std::runtime_error("handler");
  };

  network.Tell(listener, SocketEvent::kAccept, 10050);

  EXPECT_EQ(server->ConnectionCount(), 0);
}

TEST_F(CSocketServerTest, MayBeDestroyedByTheHandlerOfItsStartThatThenFails) {
  int failures = 0;
  server->Events = {};
  server->Events.StartFailed = [&] { ++failures; };
  server->Events.ServerStarted = [this] {
    server.reset();
    throw std::runtime_error("handler");
  };
  Text ip = u"127.0.0.1";

  EXPECT_FALSE(server->StartServer(4999, ip));

  EXPECT_EQ(failures, 0);
  EXPECT_TRUE(network.open.empty());
}

TEST_F(CSocketServerTest, MayBeStoppedByTheHandlerOfItsStart) {
  server->Events = {};
  server->Events.ServerStarted = [this] { server->StopServer(); };
  Text ip = u"127.0.0.1";

  EXPECT_FALSE(server->StartServer(4999, ip));

  EXPECT_FALSE(server->ServerStarted());
  EXPECT_TRUE(network.open.empty());
}

TEST_F(CSocketServerTest, StaysStoppedWhenTheHandlerOfItsStopStartsIt) {
  ASSERT_TRUE(Start());
  bool again = false;
  server->Events.ServerStopped = [&] {
    Text ip = u"127.0.0.1";
    if (!std::exchange(again, true)) server->StartServer(4999, ip);
  };

  server->StopServer();

  EXPECT_FALSE(server->ServerStarted());
  EXPECT_TRUE(network.open.empty());
}

TEST_F(CSocketServerTest, ClearsThePendingErrorBeforeItSends) {
  ASSERT_TRUE(Start());
  Arrives();
  Err.Set(10054, u"before", u"before");

  server->SendData(u"x", 1);

  EXPECT_EQ(Err.Number, 0);
}

TEST_F(CSocketServerTest, MayBeStoppedByAHandler) {
  ASSERT_TRUE(Start());
  const auto first = Arrives();
  Arrives();
  log.clear();
  server->Events.DataArrival = [&](std::int16_t, const Text& data, std::int32_t, TextView ip,
                                   TextView) {
    server->StopServer();
    Log("data " + ToUtf8(data) + " from " + ToUtf8(ip));
  };
  network.incoming[first] = {{"abc"}, {"de"}};

  network.CloseByPeer(first);

  EXPECT_THAT(log, ElementsAre("stopped", "stopped", "data abc from 10.0.0.1"));
  EXPECT_TRUE(network.open.empty());
}

TEST_F(CSocketServerTest, MayBeDestroyedByAHandlerOfAConnection) {
  ASSERT_TRUE(Start());
  const auto first = Arrives();
  server->Events = {};
  server->Events.DataArrival = [&](std::int16_t, const Text&, std::int32_t, TextView, TextView) {
    server.reset();
  };
  network.incoming[first] = {{"abc"}, {"de"}};

  network.CloseByPeer(first);

  EXPECT_FALSE(server);
  EXPECT_TRUE(network.open.empty());
}

TEST_F(CSocketServerTest, MayBeDestroyedByAHandlerOfTheListener) {
  ASSERT_TRUE(Start());
  server->Events = {};
  server->Events.Error = [&](std::int16_t, std::uint16_t, Text&, std::int32_t, TextView) {
    server.reset();
  };

  network.Tell(listener, SocketEvent::kAccept, 10050);

  EXPECT_FALSE(server);
  EXPECT_TRUE(network.open.empty());
}

TEST_F(CSocketServerTest, MayBeDestroyedByAHandlerThatThenFails) {
  ASSERT_TRUE(Start());
  server->Events = {};
  server->Events.Error = [&](std::int16_t, std::uint16_t, Text&, std::int32_t, TextView) {
    server.reset();
    throw std::runtime_error("handler");
  };

  network.Tell(listener, SocketEvent::kAccept, 10050);

  EXPECT_FALSE(server);
}

TEST_F(CSocketServerTest, MayBeDestroyedWhileItStarts) {
  server->Events = {};
  server->Events.ServerStopped = [&] {
    if (server) const auto going = std::move(server);
  };
  Text ip;

  EXPECT_FALSE(server->StartServer(4999, ip));

  EXPECT_FALSE(server);
  EXPECT_TRUE(network.open.empty());
}

TEST_F(CSocketServerTest, MayBeStoppedWhileAConnectionOpens) {
  ASSERT_TRUE(Start());
  server->Events.SocketOpened = [&](std::int16_t, std::int32_t, TextView, TextView) {
    server->StopServer();
  };

  Arrives();

  EXPECT_TRUE(network.open.empty());
  EXPECT_EQ(server->ConnectionCount(), 0);
}

TEST_F(CSocketServerTest, MakesTheExceptionOfAHandlerAnErrorOfThatConnection) {
  ASSERT_TRUE(Start());
  const auto first = Arrives();
  const auto second = Arrives();
  log.clear();
  server->Events.DataArrival = [&](std::int16_t index, const Text&, std::int32_t, TextView,
                                   TextView) {
    if (index == 1) throw std::bad_alloc();
    Log("data " + std::to_string(index));
  };

  network.Receives(first, "abc");
  network.Receives(second, "abc");

  EXPECT_THAT(log, ElementsAre("error 1 7 Out of memory 0 CSocket", "data 2"));
  EXPECT_EQ(server->GetState(1), 9);
}

TEST_F(CSocketServerTest, GoesOnListeningWhenTheHandlerOfANewConnectionFails) {
  ASSERT_TRUE(Start());
  server->Events.SocketOpened = [&](std::int16_t, std::int32_t, TextView, TextView) {
    throw std::runtime_error("handler");
  };

  Arrives();
  server->Events.SocketOpened = nullptr;
  Arrives();

  EXPECT_THAT(log, ElementsAre("error 1 51 Internal error 0 CSocket"));
  EXPECT_EQ(server->GetState(1), 7);
}

TEST_F(CSocketServerTest, GoesOnListeningWhenAConnectionCannotBeRegistered) {
  ASSERT_TRUE(Start());
  network.errors.select = 10055;

  const auto refused = Arrives();
  network.errors.select = 0;
  Arrives();

  EXPECT_FALSE(network.open.contains(refused));
  EXPECT_THAT(log, ElementsAre("error 1 10055 No buffer space available. 0 CSocket.Accept",
                               "opened 1 4999 10.0.0.1"));
}

TEST_F(CSocketServerTest, RefusesAConnectionWhenEveryNumberIsTaken) {
  ASSERT_TRUE(Start());
  for (int i = 0; i < std::numeric_limits<std::int16_t>::max(); ++i) {
    network.waiting.push_back({network.NewHandle(), 0});
  }
  server->Events.SocketOpened = nullptr;
  while (!network.waiting.empty()) network.Tell(listener, SocketEvent::kAccept);

  const auto refused = Arrives();

  EXPECT_EQ(server->ConnectionCount(), 32767);
  EXPECT_FALSE(network.open.contains(refused));
}

TEST(CSocketListen, SaysWhatItDoes) {
  FakeSockets network;
  MSocketSupport support(network, network, network);
  const auto listener = CSocketListen::Create(support);
  Text ip = u"127.0.0.1";
  EXPECT_EQ(listener->State(), u"");
  EXPECT_FALSE(listener->Listenning());

  listener->StartListen(4999, ip);
  EXPECT_EQ(listener->State(), u"Listenning");
  EXPECT_TRUE(listener->Listenning());

  EXPECT_FALSE(listener->StopListen());
  EXPECT_EQ(listener->State(), u"Closed");
  EXPECT_FALSE(listener->Listenning());
}

TEST(CSocketListen, TellsOfAConnectionWithItsPort) {
  FakeSockets network;
  MSocketSupport support(network, network, network);
  const auto listener = CSocketListen::Create(support);
  std::int32_t request = 0, port = 0;
  listener->Events.ConnectionRequest = [&](std::int32_t requestID, std::int32_t localPort, TextView,
                                           TextView) {
    request = requestID;
    port = localPort;
  };
  Text ip = u"127.0.0.1";
  listener->StartListen(4999, ip);

  const auto connection = network.Arrives(network.lastOpened);

  EXPECT_EQ(request, connection);
  EXPECT_EQ(port, 4999);
}

}  // namespace
}  // namespace ostrel
